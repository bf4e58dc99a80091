// The dialog that asks for files to open. Names whose bytes are no UTF-8 stand in a list of their own
// beneath the toolkit's, which leaves them out.
#pragma once

#include <filesystem>
#include <QFileDialog>
#include <string>
#include <vector>

class QLabel;
class QListWidget;

namespace vexa {

class OpenFileDialog : public QFileDialog {
 public:
  /// folder  where it opens, or a file in it
  OpenFileDialog(QWidget* parent, const QString& title, const QString& folder,
                 const QStringList& filters, QFileDialog::FileMode mode);

  /// The chosen names, as their bytes are.
  std::vector<std::string> Chosen() const;

 private:
  void ListOthers();
  void TakeOthers();

  QLabel* caption_ = nullptr;
  QListWidget* others_ = nullptr;
  std::vector<std::filesystem::path> names_{};  // of the rows of others_
  std::vector<std::string> taken_{};
};

/// The files of a folder whose names are no UTF-8, in order.
std::vector<std::filesystem::path> FilesWithOtherNames(const std::filesystem::path& folder);

}  // namespace vexa
