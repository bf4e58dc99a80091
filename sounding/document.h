// The sounding in work. Everything that belongs to it, its record, where it came from, its history,
// what its file holds, what the checks found and its analysis, is changed together through the
// doors below or not at all; outside it can only be read.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/adiabat_table.h"
#include "analysis/analysis.h"
#include "core/current_sounding.h"
#include "core/data_checks.h"
#include "core/edit_history.h"
#include "core/error_report.h"
#include "core/interaction.h"
#include "sounding/analysed_sounding.h"

namespace vexa {

class Document {
 public:
  /// Leave to give the sounding in work up: there are no unsaved edits, or the user said that they
  /// may go. Every door that replaces the sounding wants one.
  class Leave {
    friend class Document;
    Leave() = default;
  };

  const SoundingRecord& Record() const { return current_.Record; }
  const analysis::AnalysisResults& Results() const { return results_; }
  const CurrentSounding& Current() const { return current_; }
  const EditHistory& History() const { return history_; }
  /// As its file gave it; empty when it has none or the file is damaged.
  const std::optional<SoundingRecord>& AsLoaded() const { return loaded_; }
  int IndexInFile() const { return index_; }
  /// What the check of the data finds in it as it is now, whether it was told or not.
  const QcFinding& Finding() const { return finding_; }
  /// The temperature level on which the cursor is locked, from 1. It stays at its pressure while
  /// the sounding is edited; a sounding that takes its place has none.
  const std::optional<int>& LockedLevel() const { return lockedLevel_; }

  /// Whether it differs from what its file holds.
  bool IsAltered() const;
  /// Whether another program has written its file since it was read or saved.
  bool ChangedOnDisk() const;
  const std::optional<FileStamp>& OnDiskStamp() const { return onDiskStamp_; }
  bool CanRestore() const { return loaded_ && *loaded_ != current_.Record; }

  /// Nothing while there are unsaved edits.
  std::optional<Leave> LeaveUnaltered() const;
  /// For when the user has said that the edits may go.
  static Leave GiveUpEdits() { return {}; }

  // Doors that replace the sounding.

  /// Loads a sounding of a file and checks it, with the boxes that tell what is wrong. Of a damaged
  /// native file what could be read is in work afterwards, without a file to restore it from.
  ///
  /// checks   whether doubtful data are told; what was found is kept in any case
  /// returns  Ok when it is in work; Error when it cannot be read and the one before stays;
  ///          QcCancel when the user, told of doubtful data, does not want it
  Status Load(Leave leave, const Source& from, const LoadPolicy& policy, bool checks = true);

  /// Takes a sounding that was loaded beside.
  void Take(Leave leave, LoadedSounding loaded);

  /// Takes a sounding that was entered by hand under a name in a folder; it has no file yet.
  void Enter(Leave leave, SoundingRecord entered, const std::filesystem::path& path);

  /// Goes back to what its file holds, without edits. True when that is another sounding.
  bool ForgetEdits(Leave leave);

  // Doors that change it, each a step of the history. False when nothing changed.

  bool Adopt(SoundingRecord edited, std::string_view step);
  bool Undo();
  bool Redo();
  bool Restore();

  /// Shows a change that is not decided yet, while something is dragged or tried. Keep makes one
  /// step of all changes since the first, TakeBack forgets them.
  bool Try(SoundingRecord tried);
  bool Keep(std::string_view step);
  bool TakeBack();

  // Doors to the locked cursor.

  void Lock(int level);
  /// On the level nearest to a pressure.
  void LockNear(double press);
  void Unlock() { lockedLevel_.reset(); }

  // Doors to its file.

  /// Writes the native file. On a fault, which has been told, nothing has changed.
  Status Save(const std::filesystem::path& path);

  /// Its file has been written with the text of `edited`.
  void Rewritten(SoundingRecord edited, std::string_view step);

  /// The edits in work were made on the file as it was then, before the program was cut off.
  void EditedSince(const FileStamp& then) { onDiskStamp_ = then; }

  // Its analysis.

  /// What it took to bring the results up to date.
  enum class Computed { Nothing, StormMotion, Everything };

  /// Computes the results that have become stale: all of them after a change of the sounding or of
  /// these settings, those of the storm alone when only its motion is another, else none.
  Computed Analyse(const AnalysisSettings& set, analysis::AdiabatTable& table, Progress progress);

  // Talking to the user about it.

  void AskThrough(Interaction* ask) { current_.Ask = ask; }
  /// While soundings are loaded without the user's doing their faults are told in other words.
  void SetAutoLoading(bool on) { current_.AutoLoading = on; }
  /// The next load is not asked about a fault of order, which edits on the way may have mended.
  void TolerateOrderOnce() { current_.TolerateOrderOnce = true; }
  void SetStatus(std::string_view text) { current_.StatusText = text; }
  Answer Report(const Fault& fault, BoxIcon icon = BoxIcon::Exclamation) {
    return ErrorReport(current_, fault, icon);
  }
  [[nodiscard]] Silenced Quiet() { return Silenced(current_); }
  [[nodiscard]] ProcedureScope In(std::string_view routine) {
    return ProcedureScope(current_, routine);
  }
  /// For what is loaded or asked beside the sounding in work: the same user, no sounding.
  CurrentSounding Beside() const;
  /// What the check found wrong when the user wants to correct it, given away once.
  std::optional<QcFinding> TakeCorrection();
  const std::optional<QcFinding>& Correction() const { return correction_; }

 private:
  SoundingRecord Exchange(SoundingRecord record);
  void FollowChange(const SoundingRecord& before);
  void Check();
  void MarkOnDisk();

  CurrentSounding current_{};
  int index_ = 0;
  std::optional<int> lockedLevel_{};
  QcFinding finding_{};
  EditHistory history_{};
  std::optional<SoundingRecord> loaded_{};
  std::optional<SoundingRecord> onDisk_{};  // as its file holds it now; empty: nowhere yet
  std::optional<FileStamp> onDiskStamp_{};  // of that file then
  std::optional<SoundingRecord> before_{};  // the changes being tried
  std::optional<QcFinding> correction_{};
  analysis::AnalysisResults results_{};
  std::optional<AnalysisSettings> under_{};  // the results' settings; empty: they are of another
};

}  // namespace vexa
