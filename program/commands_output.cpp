// Commands that write the sounding's data.
#include <optional>
#include <string>

#include "core/data_checks.h"
#include "core/error_report.h"
#include "core/files.h"
#include "program/commands.h"
#include "program/export_batch.h"

namespace vexa::commands {

Changes ExportData(Program& program) {
  if (program.Current.Record.NumTempLevels() == 0) return {};
  if (const QcFinding found = CheckRecord(program.Current.Record); found.Number != 0) {
    ErrorReport(program.Current,
                {kFaultUnusable, "BadSounding", std::string(QcText(found.Number))});
    return {};
  }
  const std::string filter = "*.txt|*.txt|*.csv|*.csv|*.dat|*.dat|*.doc|*.doc|*.*|*.*";
  const std::optional<std::string> name = program.Current.Ask->ChooseFile(
      {.Title = std::string(kExportTitle),
       .Folder = TextFromPath(program.Where.Export /
                              PathFromText(output::ProposedDumpName(program.Current.FileName,
                                                                    output::DumpKind::Textfile))),
       .Filter = filter,
       .Saving = true});
  if (!name) {
    program.Current.StatusText = "cancel";
    return {};
  }
  const std::filesystem::path path = PathFromText(*name);
  if (const auto fault =
          ExportSounding(program.Current.Record, program.Set, path, output::DumpKindOf(*name))) {
    ErrorReport(program.Current, *fault);
    return {};
  }
  program.Current.Ask->Ask(ExportSummary({.Written = 1, .Output = path}));
  return {};
}

}  // namespace vexa::commands
