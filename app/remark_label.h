// A remark below the fields of a window: it takes as many lines as it needs, and however long a word
// in it is the window keeps its width.
#pragma once

#include <QLabel>
#include <QString>

namespace vexa {

class RemarkLabel : public QLabel {
 public:
  explicit RemarkLabel(QWidget* parent) : RemarkLabel({}, parent) {}
  RemarkLabel(const QString& text, QWidget* parent) : QLabel(text, parent) {
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
  }
  QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }
  QSize sizeHint() const override {
    return {qMin(kWidest, QLabel::sizeHint().width()), QLabel::sizeHint().height()};
  }

 private:
  static constexpr int kWidest = 400;  // that a window makes room for by itself
};

}  // namespace vexa
