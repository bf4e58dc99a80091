// A text in a fixed-width face that can be copied, saved and printed: the listings, the sounding's
// data in print, the names of rejected files.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <QDialog>
#include <string>
#include <vector>

#include "core/fault.h"
#include "output/listings.h"
#include "picture/picture.h"
#include "program/program.h"

class QPlainTextEdit;

namespace vexa {

struct ShownText {
  std::string Name{};      // of the window
  std::string Title{};     // of the window
  std::string FileName{};  // proposed for saving
  output::ListingLines Lines{};
  output::ListingLines Header{};  // above each printed page
};

class TextWindow : public QDialog {
 public:
  TextWindow(Program& program, ShownText text, QWidget* parent);

  /// Shows another text in the same window.
  void Show(ShownText text);
  /// The text on pages of the paper that is printed on.
  std::vector<Picture> Pages() const;
  [[nodiscard]] std::optional<Fault> SaveAs(const std::filesystem::path& path) const;

 private:
  void Save();
  void Print();

  Program& program_;
  ShownText text_{};
  QPlainTextEdit* view_ = nullptr;
};

}  // namespace vexa
