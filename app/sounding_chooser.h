// The choice among the soundings of one file: one opens, several are stepped through.
#pragma once

#include <QDialog>
#include <string>
#include <vector>

class QListWidget;

namespace vexa {

class SoundingChooser : public QDialog {
 public:
  SoundingChooser(const std::vector<std::string>& titles, QWidget* parent);

  /// Places in the list of those chosen, rising.
  std::vector<int> Chosen() const;

  /// Shows the choice; empty when the user cancels.
  static std::vector<int> Ask(const std::vector<std::string>& titles, QWidget* parent);

 private:
  QListWidget* list_ = nullptr;
};

}  // namespace vexa
