#include "app/window_interaction.h"

#include <algorithm>
#include <filesystem>
#include <QApplication>
#include <QCursor>
#include <QEventLoop>
#include <QFileDialog>
#include <QMessageBox>
#include <QString>
#include <QStringList>
#include <QWidget>
#include <system_error>
#include <utility>

#include "app/open_file_dialog.h"
#include "app/qt_text.h"
#include "core/files.h"
#include "core/letter_case.h"

namespace vexa {
namespace {

constexpr qint64 kYieldEveryMs = 50;

QMessageBox::Icon ToIcon(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::None:
      return QMessageBox::NoIcon;
    case BoxIcon::Exclamation:
      return QMessageBox::Warning;
    case BoxIcon::Stop:
      return QMessageBox::Critical;
    case BoxIcon::Question:
      return QMessageBox::Question;
    case BoxIcon::Information:
      return QMessageBox::Information;
  }
  return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons ToButtons(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::Ok:
      return QMessageBox::Ok;
    case BoxButtons::OkCancel:
      return QMessageBox::Ok | QMessageBox::Cancel;
    case BoxButtons::YesNo:
      return QMessageBox::Yes | QMessageBox::No;
    case BoxButtons::YesNoCancel:
      return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
  }
  return QMessageBox::Ok;
}

// The patterns of each entry of a filter: "*.JPG", "*.TXT *.txt", "*".
std::vector<std::string_view> PatternsOf(std::string_view filter) {
  std::vector<std::string_view> parts;
  while (!filter.empty()) {
    const std::size_t bar = std::min(filter.find('|'), filter.size());
    parts.push_back(filter.substr(0, bar));
    filter.remove_prefix(std::min(bar + 1, filter.size()));
  }
  std::vector<std::string_view> patterns;
  for (std::size_t i = 1; i < parts.size(); i += 2) patterns.push_back(parts[i]);
  return patterns;
}

// ".JPG" of "*.JPG *.jpg"; empty where any ending will do.
std::string_view EndingOf(std::string_view patterns) {
  const std::string_view first = patterns.substr(0, patterns.find(' '));
  return first.starts_with("*.") && first != "*.*" ? first.substr(1) : std::string_view();
}

}  // namespace

std::string WithEnding(const std::string& name, std::string_view filter, std::size_t entry) {
  const std::vector<std::string_view> patterns = PatternsOf(filter);
  const std::string_view wanted =
      entry < patterns.size() ? EndingOf(patterns[entry]) : std::string_view();
  const std::string ending = TextFromPath(PathFromText(name).extension());
  const bool isKnown = std::ranges::any_of(patterns, [&](std::string_view of) {
    return EndingOf(of).empty() || SameText(EndingOf(of), ending);
  });
  return wanted.empty() || (!ending.empty() && isKnown) ? name : name + std::string(wanted);
}

std::string DialogFilter(std::string_view filter) {
  std::string entries;
  bool isName = true;
  while (!filter.empty()) {
    const std::size_t bar = filter.find('|');
    const std::string_view part = filter.substr(0, bar);
    filter.remove_prefix(bar == std::string_view::npos ? filter.size() : bar + 1);
    if (isName) {
      const std::size_t patterns = part.rfind('(');
      if (!entries.empty()) entries += ";;";
      entries += part.substr(0, patterns);
    } else {
      entries += "(" + std::string(part) + ")";
    }
    isName = !isName;
  }
  return entries;
}

void WindowInteraction::Attach(QWidget* parent, std::function<void(std::string_view)> showStatus,
                               std::function<void(double)> showShare) {
  parent_ = parent;
  showStatus_ = std::move(showStatus);
  showShare_ = std::move(showShare);
}

// The window at which the user works: a box over another one would bring that to the front. Where
// no window manager says which it is, the pointer does.
QWidget* WindowInteraction::Over() const {
  QWidget* active = QApplication::activeModalWidget();
  if (active == nullptr) active = QApplication::activeWindow();
  if (active == nullptr) active = QApplication::topLevelAt(QCursor::pos());
  return active != nullptr ? active : parent_;
}

Answer WindowInteraction::Ask(const Box& box) {
  if (unattended_) {
    kept_.push_back(box);
    return box.WhenSilent;
  }
  QMessageBox shown(ToIcon(box.Icon), QString::fromStdString(box.Title),
                    QString::fromStdString(box.Text), ToButtons(box.Buttons), Over());
  shown.setTextFormat(Qt::PlainText);
  // Enter takes the answer that loses nothing.
  if (box.Buttons == BoxButtons::YesNo && box.WhenSilent == Answer::No) {
    shown.setDefaultButton(QMessageBox::No);
  }
  switch (shown.exec()) {
    case QMessageBox::Ok:
      return Answer::Ok;
    case QMessageBox::Yes:
      return Answer::Yes;
    case QMessageBox::No:
      return Answer::No;
    default:  // Escape on a box without a Cancel button gives its only way out
      return box.Buttons == BoxButtons::Ok ? Answer::Ok : Answer::Cancel;
  }
}

std::optional<std::string> WindowInteraction::ChooseFile(const FileQuestion& question) {
  if (unattended_) return std::nullopt;
  if (question.Saving) {
    const std::string chosen = ChooseSaveFile(question);
    if (chosen.empty()) return std::nullopt;
    return chosen;
  }
  const std::vector<std::string> chosen = ChooseOpenFiles(question, false);
  if (chosen.empty()) return std::nullopt;
  return chosen.front();
}

std::vector<std::string> WindowInteraction::ChooseOpenFiles(const FileQuestion& question,
                                                            bool several) {
  const QStringList filters = QString::fromStdString(DialogFilter(question.Filter))
                                  .split(QStringLiteral(";;"), Qt::SkipEmptyParts);
  OpenFileDialog dialog(Over(), ToQString(question.Title), ToQString(question.Folder), filters,
                        several ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
  if (question.FilterIndex >= 1 && question.FilterIndex <= filters.size()) {
    dialog.selectNameFilter(filters[question.FilterIndex - 1]);
  }
  return dialog.exec() == QDialog::Accepted ? dialog.Chosen() : std::vector<std::string>{};
}

// The dialog asks before a file is replaced, but knows the name only as it was typed.
std::string WindowInteraction::ChooseSaveFile(const FileQuestion& question) {
  const QString filter = QString::fromStdString(DialogFilter(question.Filter));
  const QStringList entries = filter.split(QStringLiteral(";;"));
  QString entry = entries.value(question.FilterIndex - 1);
  std::string at = question.Folder;
  while (true) {
    at = QFileDialog::getSaveFileName(Over(), QString::fromStdString(question.Title),
                                      QString::fromStdString(at), filter, &entry)
             .toStdString();
    if (at.empty()) return at;
    const auto index = static_cast<std::size_t>(std::max<qsizetype>(entries.indexOf(entry), 0));
    const std::string named = WithEnding(at, question.Filter, index);
    if (named == at || !IsThere(PathFromText(named))) return named;
    const std::string name = TextFromPath(PathFromText(named).filename());
    if (Ask({.Title = question.Title,
             .Text = name + " already exists.\nReplace existing file?",
             .Buttons = BoxButtons::YesNo,
             .WhenSilent = Answer::No}) == Answer::Yes) {
      return named;
    }
  }
}

std::vector<std::string> WindowInteraction::ChooseFiles(const FileQuestion& question) {
  if (unattended_) return {};
  return ChooseOpenFiles(question, true);
}

void WindowInteraction::Status(std::string_view text) {
  if (showStatus_) showStatus_(text);
}

void WindowInteraction::Share(double done) {
  if (showShare_) showShare_(done);
}

bool WindowInteraction::Yield() {
  // A drawing of a few milliseconds is not to be slowed down by its own progress display.
  if (!sinceYield_.isValid()) sinceYield_.start();
  if (sinceYield_.elapsed() >= kYieldEveryMs) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, static_cast<int>(kYieldEveryMs));
    sinceYield_.restart();
  }
  return !gate_.Stopped();
}

}  // namespace vexa
