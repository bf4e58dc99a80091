#include "sounding/document.h"

#include <algorithm>
#include <cmath>
#include <system_error>
#include <utility>

#include "core/files.h"
#include "core/path_forms.h"
#include "core/raw_file.h"

namespace vexa {
namespace {

bool DifferInStormAlone(AnalysisSettings before, const AnalysisSettings& now) {
  static_cast<StormSettings&>(before) = now;
  return before == now;
}

}  // namespace

bool Document::IsAltered() const {
  return history_.IsChanged() && !(onDisk_ && *onDisk_ == current_.Record);
}

bool Document::ChangedOnDisk() const {
  return onDisk_ && onDiskStamp_ != StampOf(current_.FilePath());
}

std::optional<Document::Leave> Document::LeaveUnaltered() const {
  if (IsAltered()) return std::nullopt;
  return Leave{};
}

Status Document::Load(Leave leave, const Source& from, const LoadPolicy& policy, bool checks) {
  const ProcedureScope here(current_, "LoadSounding");
  Loading loading = LoadSounding(from, policy);
  if (loading.Failed) {
    ErrorReport(current_, *loading.Failed);
    if (!loading.Sounding) return Status::Error;
    Take(leave, *std::move(loading.Sounding));
    loaded_.reset();
    onDisk_.reset();
    return Status::Ok;
  }
  CurrentSounding asked = Beside();
  asked.Record = loading.Sounding->Record;
  asked.TolerateOrderOnce = std::exchange(current_.TolerateOrderOnce, false);
  const Status status = DataQC(asked, !checks);
  if (status == Status::QcCancel) {
    current_.StatusText = asked.StatusText;
    return status;
  }
  Take(leave, *std::move(loading.Sounding));
  if (status == Status::QcError && !asked.Ask->Unattended()) correction_ = Finding();
  current_.QcFault = asked.QcFault;
  current_.StatusText = Text(status);
  return Status::Ok;
}

void Document::Take(Leave, LoadedSounding loaded) {
  const std::filesystem::path whole = WholePath(loaded.From.File);
  Unlock();
  Exchange(std::move(loaded.Record));
  current_.FileName = TextFromPath(whole.filename());
  current_.DataFolder = whole.parent_path();
  current_.LoadNotes = std::move(loaded.Notes);
  finding_ = loaded.Finding;
  current_.QcFault = finding_.Number;
  current_.LastFault.reset();
  index_ = loaded.From.Index;
  history_.Clear();
  loaded_ = current_.Record;
  onDisk_ = current_.Record;
  onDiskStamp_ = loaded.From.Stamp;
  results_ = {};
  before_.reset();
  correction_.reset();
}

void Document::Enter(Leave leave, SoundingRecord entered, const std::filesystem::path& path) {
  Take(leave, {.From = {.File = path}});
  loaded_.reset();
  onDisk_.reset();
  SoundingRecord empty;
  ClearData(empty);
  Exchange(std::move(empty));
  Adopt(std::move(entered), "enter sounding");
}

bool Document::ForgetEdits(Leave) {
  TakeBack();
  history_.Clear();
  if (!onDisk_ || *onDisk_ == current_.Record) return false;
  Exchange(*onDisk_);
  Check();
  return true;
}

// The only way in which the record becomes another one; gives the one before.
SoundingRecord Document::Exchange(SoundingRecord record) {
  SoundingRecord before = std::exchange(current_.Record, std::move(record));
  FollowChange(before);
  return before;
}

// The results are stale, and a locked cursor stays at its pressure.
void Document::FollowChange(const SoundingRecord& before) {
  under_.reset();
  if (lockedLevel_) LockNear(before.Press(*lockedLevel_));
}

void Document::Lock(int level) {
  if (level >= 1 && level <= current_.Record.NumTempLevels()) lockedLevel_ = level;
}

void Document::LockNear(double press) {
  const std::vector<double>& levels = current_.Record.Press.Values();
  const auto nearest = std::ranges::min_element(
      levels, {}, [press](double level) { return std::fabs(level - press); });
  lockedLevel_.reset();
  if (nearest != levels.end()) lockedLevel_ = static_cast<int>(nearest - levels.begin()) + 1;
}

// The indicator follows each edit: an edit may mend what the check found.
void Document::Check() {
  finding_ = CheckRecord(current_.Record);
  current_.QcFault = finding_.Number;
}

bool Document::Adopt(SoundingRecord edited, std::string_view step) {
  TakeBack();
  if (edited == current_.Record) return false;
  SoundingRecord before = Exchange(std::move(edited));
  history_.Remember(step, std::move(before), current_.Record);
  Check();
  return true;
}

bool Document::Undo() {
  TakeBack();
  const SoundingRecord before = current_.Record;
  if (!history_.Undo(current_.Record)) return false;
  FollowChange(before);
  Check();
  return true;
}

bool Document::Redo() {
  TakeBack();
  const SoundingRecord before = current_.Record;
  if (!history_.Redo(current_.Record)) return false;
  FollowChange(before);
  Check();
  return true;
}

bool Document::Restore() {
  return CanRestore() && Adopt(*loaded_, "restore");
}

bool Document::Try(SoundingRecord tried) {
  if (tried == current_.Record) return false;
  SoundingRecord shown = Exchange(std::move(tried));
  if (!before_) before_ = std::move(shown);
  return true;
}

bool Document::Keep(std::string_view step) {
  if (!before_) return false;
  SoundingRecord kept = Exchange(*std::exchange(before_, std::nullopt));
  return Adopt(std::move(kept), step);
}

bool Document::TakeBack() {
  if (!before_) return false;
  Exchange(*std::exchange(before_, std::nullopt));
  return true;
}

Status Document::Save(const std::filesystem::path& path) {
  const std::filesystem::path folder = std::exchange(current_.DataFolder, path.parent_path());
  const std::string name = std::exchange(current_.FileName, TextFromPath(path.filename()));
  if (const Status status = SaveRAW(current_); status != Status::Ok) {
    current_.DataFolder = folder;
    current_.FileName = name;
    return status;
  }
  current_.Record.DataFormat = kRawTag;
  index_ = 0;
  MarkOnDisk();
  if (!loaded_) loaded_ = current_.Record;
  return Status::Ok;
}

void Document::Rewritten(SoundingRecord edited, std::string_view step) {
  loaded_ = edited;
  Adopt(std::move(edited), step);
  MarkOnDisk();
}

void Document::MarkOnDisk() {
  history_.MarkSaved();
  onDisk_ = current_.Record;
  onDiskStamp_ = StampOf(current_.FilePath());
}

Document::Computed Document::Analyse(const AnalysisSettings& set, analysis::AdiabatTable& table,
                                     Progress progress) {
  if (under_ == set) return Computed::Nothing;
  const bool stormAlone = under_ && DifferInStormAlone(*under_, set);
  if (stormAlone) {
    analysis::FollowStormMotion(current_.Record, set, results_);
  } else {
    results_ = analysis::Analyse(current_.Record, set, table, progress);
  }
  under_ = set;
  return stormAlone ? Computed::StormMotion : Computed::Everything;
}

CurrentSounding Document::Beside() const {
  CurrentSounding beside;
  beside.DataFolder = current_.DataFolder;
  beside.QuickFolder = current_.QuickFolder;
  beside.AutoLoading = current_.AutoLoading;
  beside.Ask = current_.Ask;
  return beside;
}

std::optional<QcFinding> Document::TakeCorrection() {
  return std::exchange(correction_, std::nullopt);
}

}  // namespace vexa
