// Dates that can be typed from the first figure on, with or without what stands between their parts.
#pragma once

#include <QDateTimeEdit>
#include <QKeyEvent>
#include <QLineEdit>
#include <QString>

namespace vexa {

/// A date field as one types: with all of its text selected the first figure is the first of the
/// year, in a format that begins with it, and a hyphen leads to the next part unless the figures
/// before it have done so already.
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
  }

 private:
  int figures_ = 0;  // typed in the current part
};

}  // namespace vexa
