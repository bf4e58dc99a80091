// Dates that can be typed from the first figure on.
#pragma once

#include <QDateTimeEdit>
#include <QKeyEvent>
#include <QLineEdit>

namespace vexa {

/// With all of its text selected a date field would take the first figure for the day or month that
/// the cursor stood in; here it is the first of the year, in a format that begins with it.
template <class Edit>
class FromTheYear : public Edit {
 public:
  using Edit::Edit;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const QString typed = event->text();
    if (!typed.isEmpty() && typed.front().isDigit() &&
        this->lineEdit()->selectedText() == this->text()) {
      this->setSelectedSection(QDateTimeEdit::YearSection);
    }
    Edit::keyPressEvent(event);
  }
};

}  // namespace vexa
