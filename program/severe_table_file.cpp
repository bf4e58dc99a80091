#include "program/severe_table_file.h"

#include <system_error>

#include "analysis/severe_table.h"
#include "core/files.h"

namespace vexa {

std::filesystem::path SevereTablePath(const Program& program) {
  return program.Where.Root / "VEXA.TBL";
}

void LoadSevereTable(Program& program) {
  const std::filesystem::path path = SevereTablePath(program);
  if (!IsThere(path)) return;
  const Outcome<analysis::SevereTable> table = analysis::RestoreTable(path);
  if (table) {
    program.Severe = table.Value();
  } else {
    program.Notices.push_back(table.Error().Detail + '.');
  }
}

}  // namespace vexa
