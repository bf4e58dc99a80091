#include "cli/inputs.h"

#include <utility>

#include "cli/commands.h"
#include "core/files.h"

namespace vexa::cli {

std::optional<LoadedSounding> Inputs::Load(const std::string& file, std::optional<int> index) {
  Loading loading = reader_.Load({.File = PathFromText(file), .Index = index.value_or(index_)},
                                 {.Stations = &stations_});
  if (loading.Failed) {
    Fail(file, *loading.Failed);
    return std::nullopt;
  }
  Doubt(file, loading.Sounding->Finding);
  return std::move(loading.Sounding);
}

void Inputs::Fail(const std::string& name, const Fault& fault) {
  ReportFault(console_, name, fault);
  exitCode_ = kExitInputFailed;
}

void Inputs::Fail(const std::string& name, std::string_view reason) {
  Note(name, reason);
  exitCode_ = kExitInputFailed;
}

void Inputs::Note(const std::string& name, std::string_view text) {
  console_.Err("vexa-cli: " + name + ": " + std::string(text) + "\n");
}

void Inputs::Doubt(const std::string& file, const QcFinding& finding) {
  if (finding.Number == 0) return;
  Fail(file, DoubtText(finding));
}

}  // namespace vexa::cli
