// Editor of the decoded data: heading, temperature levels and wind levels of a sounding. It works
// on a copy and gives it away when the user accepts and nothing in it is wrong.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "app/editor_dialog.h"
#include "core/data_checks.h"
#include "core/sounding_record.h"

class QLabel;
class QLineEdit;
class QTabWidget;

namespace vexa {

class EditGrid;
enum class LevelKind;

enum class EditorPages { All, Temps, Winds };

class LevelEditor : public EditorDialog {
 public:
  /// accepted  gets the edited sounding
  LevelEditor(const SoundingRecord& record, EditorPages pages,
              std::function<void(SoundingRecord)> accepted, QWidget* parent);

  /// Opens the page and goes to the level that a check found wrong, and says what it is.
  void GoTo(const QcFinding& finding);

  EditGrid* Temps() { return temps_; }  // null when the page is not there
  EditGrid* Winds() { return winds_; }

  /// Gives the sounding away; false, with what is wrong in view, when something is.
  bool Apply();

 protected:
  std::string Typed() const override;

 private:
  QWidget* HeadingPage();
  QWidget* LevelPage(EditGrid* grid, const QString& addCaption);
  bool ApplyHeading(SoundingRecord& record);
  bool ApplyGrid(EditGrid* grid, SoundingRecord& record);
  void ShowProblems();
  void Say(std::string_view text);

  SoundingRecord record_;
  std::function<void(SoundingRecord)> accepted_;
  QTabWidget* pages_ = nullptr;
  EditGrid* temps_ = nullptr;
  EditGrid* winds_ = nullptr;
  std::vector<QLineEdit*> heading_{};
  std::vector<QLineEdit*> adding_{};  // texts of levels that are not added yet
  QLabel* remark_ = nullptr;
};

}  // namespace vexa
