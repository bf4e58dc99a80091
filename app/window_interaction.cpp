#include "app/window_interaction.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFileDialog>
#include <QMessageBox>
#include <QString>
#include <QStringList>
#include <QWidget>
#include <utility>

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

}  // namespace

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

Answer WindowInteraction::Ask(const Box& box) {
  if (unattended_) {
    kept_.push_back(box);
    return box.WhenSilent;
  }
  QMessageBox shown(ToIcon(box.Icon), QString::fromStdString(box.Title),
                    QString::fromStdString(box.Text), ToButtons(box.Buttons), parent_);
  shown.setTextFormat(Qt::PlainText);
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
  const QString title = QString::fromStdString(question.Title);
  const QString folder = QString::fromStdString(question.Folder);
  const QString filter = QString::fromStdString(DialogFilter(question.Filter));
  const QString chosen = question.Saving
                             ? QFileDialog::getSaveFileName(parent_, title, folder, filter)
                             : QFileDialog::getOpenFileName(parent_, title, folder, filter);
  if (chosen.isEmpty()) return std::nullopt;
  return chosen.toStdString();
}

std::vector<std::string> WindowInteraction::ChooseFiles(const FileQuestion& question) {
  std::vector<std::string> names;
  if (unattended_) return names;
  const QString filter = QString::fromStdString(DialogFilter(question.Filter));
  QString first =
      filter.section(QStringLiteral(";;"), question.FilterIndex - 1, question.FilterIndex - 1);
  const QStringList chosen = QFileDialog::getOpenFileNames(
      parent_, QString::fromStdString(question.Title), QString::fromStdString(question.Folder),
      filter, first.isEmpty() ? nullptr : &first);
  for (const QString& name : chosen) names.push_back(name.toStdString());
  return names;
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
