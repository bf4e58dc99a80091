// Dates that can be typed from the first figure on, with or without marks between their parts.
#pragma once

#include <QDateTimeEdit>
#include <QKeyEvent>
#include <QLineEdit>
#include <QString>

namespace vexa {

/// A date field as one types: with all of its text selected the first figure is the first of the
/// year, in a format that begins with it, and with nothing selected it begins the part in which the
/// cursor stands. A hyphen leads to the next part unless the figures before it have done so.
template <class Edit>
class FromTheYear : public Edit {
 public:
  using Edit::Edit;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const QString typed = event->text();
    const bool isFigure = !typed.isEmpty() && typed.front().isDigit();
    if (isFigure && this->lineEdit()->selectedText() == this->text()) {
      this->setSelectedSection(QDateTimeEdit::YearSection);
      figures_ = 0;
    } else if (isFigure && StartsPart()) {
      this->setSelectedSection(this->currentSection());
      figures_ = 0;
    }
    if (!typed.isEmpty() && QStringLiteral("-/. :T").contains(typed.front())) {
      const int next = this->currentSectionIndex() + 1;
      if (figures_ > 0 && next < this->sectionCount()) {
        this->setSelectedSection(this->sectionAt(next));
      }
      figures_ = 0;
      return;
    }
    const int before = this->currentSectionIndex();
    Edit::keyPressEvent(event);
    figures_ = isFigure && this->currentSectionIndex() == before ? figures_ + 1 : 0;
    part_ = this->currentSectionIndex();
  }

 private:
  // A whole part takes no further figure: where the cursor was set into it, by a click or by Home,
  // the next one begins it anew.
  bool StartsPart() const {
    const QDateTimeEdit::Section section = this->currentSection();
    const int width = section == QDateTimeEdit::YearSection ? 4 : 2;
    const bool isTyping = figures_ > 0 && this->currentSectionIndex() == part_;
    return !isTyping && this->sectionText(section).size() >= width;
  }

  int figures_ = 0;  // typed in the current part
  int part_ = 0;
};

}  // namespace vexa
