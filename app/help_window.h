// The help: a list of topics beside the one that is read, with a line to search all of them.
#pragma once

#include <QDialog>
#include <string_view>
#include <vector>

#include "program/help_text.h"

class QLineEdit;
class QListWidget;
class QTextBrowser;
class QUrl;

namespace vexa {

class HelpWindow : public QDialog {
 public:
  HelpWindow(const Program& program, QWidget* parent);

  /// Shows a topic, the contents where there is none of this name. With a text the first place of
  /// the topic that has it comes into sight.
  void ShowTopic(std::string_view id, const QString& place = {});
  /// Shows the topic of a widget: its own, or that of the nearest one around it.
  void ShowTopicOf(const QWidget* widget);

 private:
  void Follow(const QUrl& link);
  void Search(const QString& words);

  std::vector<HelpTopic> topics_;
  QLineEdit* search_ = nullptr;
  QListWidget* list_ = nullptr;
  QTextBrowser* text_ = nullptr;
};

/// Opens the help at the topic of a widget, or brings an open one to it. A help window belongs to
/// the dialog that is open, which would shut out any other.
HelpWindow& OpenHelp(const Program& program, QWidget* window);

/// Opens the help on F1, whichever window of the program has the focus.
class HelpKey : public QObject {
 public:
  HelpKey(const Program& program, QWidget* window);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  const Program& program_;
  QWidget* window_;
};

}  // namespace vexa
