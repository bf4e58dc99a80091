#include "core/edit_history.h"

namespace vexa {
namespace {

template <class T>
std::size_t BytesOfLevels(const Levels<T>& levels) {
  return levels.Values().capacity() * sizeof(T);
}

}  // namespace

std::size_t BytesOf(const SoundingRecord& record) {
  return sizeof(SoundingRecord) + BytesOfLevels(record.Press) + BytesOfLevels(record.Temp) +
         BytesOfLevels(record.Dewpt) + BytesOfLevels(record.WindHgt) +
         BytesOfLevels(record.WindDir) + BytesOfLevels(record.WindSpd) +
         BytesOfLevels(record.Clouds) + BytesOfLevels(record.WorkWindDir) +
         BytesOfLevels(record.WorkWindSpd);
}

void EditHistory::Remember(std::string_view name, SoundingRecord before,
                           const SoundingRecord& after) {
  if (before == after) return;
  for (const Step& step : redo_) bytes_ -= step.Bytes;
  redo_.clear();
  if (saved_ > done_) saved_ = -1;
  ++done_;
  const std::size_t bytes = BytesOf(before);
  undo_.push_back({std::string(name), std::move(before), bytes});
  bytes_ += bytes;
  DropOldest();
}

void EditHistory::DropOldest() {
  while (bytes_ > mostBytes_ && !undo_.empty()) {
    bytes_ -= undo_.front().Bytes;
    undo_.pop_front();
  }
  while (bytes_ > mostBytes_ && !redo_.empty()) {
    bytes_ -= redo_.front().Bytes;
    redo_.erase(redo_.begin());
  }
}

std::string EditHistory::UndoText() const {
  return undo_.empty() ? "Undo" : "Undo " + undo_.back().Name;
}

std::string EditHistory::RedoText() const {
  return redo_.empty() ? "Redo" : "Redo " + redo_.back().Name;
}

bool EditHistory::Undo(SoundingRecord& record) {
  if (undo_.empty()) return false;
  Step step = std::move(undo_.back());
  undo_.pop_back();
  bytes_ -= step.Bytes;
  std::swap(step.Other, record);
  step.Bytes = BytesOf(step.Other);
  bytes_ += step.Bytes;
  redo_.push_back(std::move(step));
  --done_;
  DropOldest();
  return true;
}

bool EditHistory::Redo(SoundingRecord& record) {
  if (redo_.empty()) return false;
  Step step = std::move(redo_.back());
  redo_.pop_back();
  bytes_ -= step.Bytes;
  std::swap(step.Other, record);
  step.Bytes = BytesOf(step.Other);
  bytes_ += step.Bytes;
  undo_.push_back(std::move(step));
  ++done_;
  DropOldest();
  return true;
}

void EditHistory::Clear() {
  *this = EditHistory(mostBytes_);
}

}  // namespace vexa
