// The one sounding in work: its record, where it came from, the last fault and the status text.
// Loaders, savers and checks take this; nothing below the program sees more of the state.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/fault.h"
#include "core/files.h"
#include "core/interaction.h"
#include "core/sounding_record.h"

namespace vexa {

struct CurrentSounding {
  SoundingRecord Record{};
  std::filesystem::path DataFolder{};   // where SaveRAW writes
  std::filesystem::path QuickFolder{};  // second folder, of the quick variant
  std::string FileName{};               // file in work, without its folder
  std::string Procedure{};              // the routine at work, for the error reporter
  std::string StatusText{};             // last message or status word
  std::optional<Fault> LastFault{};
  bool AutoLoading = false;        // a sounding is being loaded without the user's doing
  bool DatasetMode = false;        // loading one of several soundings of a dataset
  bool TolerateOrderOnce = false;  // the next check overlooks a fault of order, once
  int QcFault = 0;  // what the last check found, QcText's number; the indicator is red unless 0
  std::vector<std::string> LoadNotes{};  // what the last load left out or had to work out
  Interaction* Ask = nullptr;            // never null once the program runs

  std::filesystem::path FilePath() const { return DataFolder / PathFromText(FileName); }
};

/// Records a routine's name as the current procedure while it runs.
class ProcedureScope {
 public:
  ProcedureScope(CurrentSounding& current, std::string_view name)
      : current_(current), outer_(std::exchange(current.Procedure, std::string(name))) {}
  ~ProcedureScope() { current_.Procedure = std::move(outer_); }
  ProcedureScope(const ProcedureScope&) = delete;
  ProcedureScope& operator=(const ProcedureScope&) = delete;

 private:
  CurrentSounding& current_;
  std::string outer_;
};

/// Replaces the interaction by another for a scope, an unattended one as a rule.
class Silenced {
 public:
  explicit Silenced(CurrentSounding& current)
      : current_(current), outer_(std::exchange(current.Ask, &quiet_)) {}
  ~Silenced() { current_.Ask = outer_; }
  Silenced(const Silenced&) = delete;
  Silenced& operator=(const Silenced&) = delete;

  const std::vector<Box>& Boxes() const { return quiet_.Boxes; }

 private:
  CurrentSounding& current_;
  SilentInteraction quiet_{};
  Interaction* outer_;
};

}  // namespace vexa
