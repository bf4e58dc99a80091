// The cloud-layer table of a sounding, with the heights in which each type is found.
#pragma once

#include <functional>

#include "app/editor_dialog.h"
#include "core/sounding_record.h"

class QComboBox;
class QLabel;

namespace vexa {

class EditGrid;

class CloudEditor : public EditorDialog {
 public:
  /// accepted  gets the sounding with its new layers; false keeps the window open
  CloudEditor(const SoundingRecord& record, std::function<bool(SoundingRecord)> accepted,
              QWidget* parent);

  EditGrid* Layers() { return layers_; }
  bool Apply();

 protected:
  std::string Typed() const override;

 private:
  void ShowProblems();

  SoundingRecord record_;
  std::function<bool(SoundingRecord)> accepted_;
  EditGrid* layers_ = nullptr;
  QComboBox* mode_ = nullptr;
  QComboBox* option_ = nullptr;
  QLabel* remark_ = nullptr;
};

}  // namespace vexa
