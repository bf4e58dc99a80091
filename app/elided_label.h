// A line of text that ends in an ellipsis where its place is too short for it.
#pragma once

#include <QLabel>
#include <QPainter>
#include <QStyle>

namespace vexa {

class ElidedLabel : public QLabel {
 public:
  using QLabel::QLabel;
  QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    const QRect place = contentsRect();
    style()->drawItemText(&painter, place, Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                          fontMetrics().elidedText(text(), Qt::ElideRight, place.width()),
                          foregroundRole());
  }
};

}  // namespace vexa
