// The files of a command, loaded one after the other. What fails and whose data are doubtful is
// told on the error output as it comes, by every command in the same way, and makes its exit code.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cli/console.h"
#include "core/data_checks.h"
#include "core/fault.h"
#include "core/station_list.h"
#include "sounding/sounding_reader.h"

namespace vexa::cli {

class Inputs {
 public:
  /// stations  for soundings that name their station by number only
  /// index     of the sounding in each file, from 0
  Inputs(Console& console, const StationList& stations, int index)
      : console_(console), stations_(stations), index_(index) {}

  /// The chosen sounding of a file; none where it failed. Both that and doubtful data are told.
  ///
  /// index  another one than the chosen
  std::optional<LoadedSounding> Load(const std::string& file, std::optional<int> index = {});

  /// "vexa-cli: NAME: reason", of an input or an output.
  void Fail(const std::string& name, const Fault& fault);
  void Fail(const std::string& name, std::string_view reason);
  /// The same of what is no failure.
  void Note(const std::string& name, std::string_view text);
  /// "vexa-cli: FILE: the data are doubtful: ..."; nothing for no finding.
  void Doubt(const std::string& file, const QcFinding& finding);

  /// 1 after any of these.
  int ExitCode() const { return exitCode_; }

 private:
  Console& console_;
  const StationList& stations_;
  int index_;
  SoundingReader reader_{};
  int exitCode_ = kExitOk;
};

}  // namespace vexa::cli
