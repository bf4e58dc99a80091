// Commands that write the sounding's data.
#include <optional>
#include <string>

#include "core/data_checks.h"
#include "core/error_report.h"
#include "core/files.h"
#include "program/commands.h"
#include "program/export_batch.h"

namespace vexa::commands {

std::optional<std::filesystem::path> ChooseDumpFile(Program& program, const std::string& proposedBy,
                                                    output::DumpKind kind) {
  const bool isSheet = kind == output::DumpKind::Spreadsheet;
  const std::optional<std::string> name = program.Current.Ask->ChooseFile(
      {.Title = std::string(kExportTitle),
       .Folder = TextFromPath(program.Where.Export /
                              PathFromText(output::ProposedDumpName(proposedBy, kind))),
       .Filter = std::string(isSheet ? output::kDumpSheetFilter : output::kDumpTextFilter),
       .Saving = true});
  if (!name) {
    program.Doc.SetStatus("cancel");
    return std::nullopt;
  }
  std::filesystem::path path = PathFromText(*name);
  if (path.extension().empty()) path += isSheet ? ".csv" : ".txt";
  return path;
}

Changes ExportAs(Program& program, output::DumpKind kind) {
  if (program.Current.Record.NumTempLevels() == 0) return {};
  if (const QcFinding& found = program.Doc.Finding(); found.Number != 0) {
    program.Doc.Report({kFaultUnusable, "BadSounding", FindingText(found)});
    return {};
  }
  const std::optional<std::filesystem::path> chosen =
      ChooseDumpFile(program, program.Current.FileName, kind);
  if (!chosen) return {};
  const std::filesystem::path& path = *chosen;
  // A name that says spreadsheet makes one.
  const bool isSheet = output::DumpKindOf(TextFromPath(path)) == output::DumpKind::Spreadsheet;
  if (const auto fault = ExportSounding(program.Current.Record, program.Set, path,
                                        isSheet ? output::DumpKind::Spreadsheet : kind)) {
    program.Doc.Report(*fault);
    return {};
  }
  program.Current.Ask->Ask(ExportSummary({.Written = 1, .Output = path}));
  return {};
}

}  // namespace vexa::commands
