// Undo and redo of the edits of one sounding. Each step keeps the record as it was on its other
// side, so any edit can be undone whatever it does; the oldest steps go when the records together
// grow beyond a limit.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/fault.h"
#include "core/sounding_record.h"

namespace vexa {

class EditHistory {
 public:
  static constexpr std::size_t kMostBytes = std::size_t{64} * 1024 * 1024;

  explicit EditHistory(std::size_t mostBytes = kMostBytes) : mostBytes_(mostBytes) {}

  /// Runs `edit(record)`, which gives a fault or nothing, and remembers it under a name such as
  /// "delete level 17". With a fault the record stays and nothing is remembered; neither is an
  /// edit that changed nothing.
  template <class Edit>
  [[nodiscard]] std::optional<Fault> Do(SoundingRecord& record, std::string_view name, Edit edit) {
    SoundingRecord before = record;
    std::optional<Fault> fault = edit(record);
    if (fault) {
      record = std::move(before);
    } else {
      Remember(name, std::move(before), record);
    }
    return fault;
  }

  /// Remembers an edit that is done already; what was undone before can no longer be redone.
  void Remember(std::string_view name, SoundingRecord before, const SoundingRecord& after);

  bool CanUndo() const { return !undo_.empty(); }
  bool CanRedo() const { return !redo_.empty(); }
  /// "Undo delete level 17", for the menu; "Undo" when there is nothing.
  std::string UndoText() const;
  std::string RedoText() const;

  /// Brings back the record before the last edit, or after the last one undone; false when there
  /// is none.
  bool Undo(SoundingRecord& record);
  bool Redo(SoundingRecord& record);

  /// True when the record differs from the one that was last saved, or from the first.
  bool IsChanged() const { return done_ != saved_; }
  void MarkSaved() { saved_ = done_; }

  /// Forgets everything: another sounding was loaded.
  void Clear();

  /// Memory that the remembered records take, never more than the limit.
  std::size_t Bytes() const { return bytes_; }

 private:
  struct Step {
    std::string Name{};
    SoundingRecord Other{};  // the record on the other side of the edit
    std::size_t Bytes = 0;
  };

  void DropOldest();

  std::size_t mostBytes_;
  std::size_t bytes_ = 0;
  std::deque<Step> undo_{};   // the last edit at the back
  std::vector<Step> redo_{};  // the last one undone at the back
  long done_ = 0;             // edits in force, those forgotten too
  long saved_ = 0;            // of these, when it was saved; -1: no way leads back there
};

/// Memory that a record takes, about.
std::size_t BytesOf(const SoundingRecord& record);

}  // namespace vexa
