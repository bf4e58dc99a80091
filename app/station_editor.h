// Editor of the station locator file: a search, the stations found and the fields of one of them,
// each checked as it is left. The list is saved when the user accepts.
#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "app/editor_dialog.h"
#include "core/fault.h"
#include "core/station_list.h"

class QLabel;
class QLineEdit;
class QListWidget;

namespace vexa {

class StationEditor : public EditorDialog {
 public:
  /// accepted  saves the edited list, or says why not: the window stays open then
  StationEditor(const StationList& list,
                std::function<std::optional<Fault>(const StationList&)> accepted, QWidget* parent);

  const StationList& List() const { return list_; }
  void Search(const QString& text);
  /// Puts the fields into the list: as a new station, or in place of the chosen one.
  void AddStation();
  void ChangeStation();
  void DeleteStation();
  QLineEdit* Field(StationField field) { return fields_[static_cast<std::size_t>(field)]; }

 protected:
  std::string Typed() const override;

 private:
  void ShowChosen();
  void Do(std::string_view done, std::optional<Fault> fault, const QString& search);
  Outcome<Station> FromFields() const;
  void Say(std::string_view text);

  StationList list_;
  std::function<std::optional<Fault>(const StationList&)> accepted_;
  int chosen_ = -1;  // number of the station in the fields
  int edits_ = 0;    // of the list
  QLineEdit* search_ = nullptr;
  QListWidget* found_ = nullptr;
  std::vector<QLineEdit*> fields_{};
  QLabel* remark_ = nullptr;
};

}  // namespace vexa
