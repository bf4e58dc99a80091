#include "app/svg_icon.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>
#include <QStringList>
#include <QXmlStreamReader>

namespace vexa {
namespace {

struct IconRow {
  std::string_view Name;
  std::string_view Drawing;
};

constexpr IconRow kIcons[] = {
#include <icons.inc>
};

constexpr double kSide = 24;  // of the square in which icons are drawn
constexpr double kStroke = 1.8;

// The commands M, L, C and Z with absolute places, apart from one another by blanks.
std::optional<QPainterPath> PathOf(const QString& data) {
  const QStringList words = data.split(QLatin1Char(' '), Qt::SkipEmptyParts);
  QPainterPath path;
  qsizetype next = 0;
  bool isWhole = true;
  const auto point = [&]() -> QPointF {
    double xy[2] = {};
    for (double& number : xy) {
      bool isNumber = next < words.size();
      if (isNumber) number = words[next++].toDouble(&isNumber);
      isWhole = isWhole && isNumber;
    }
    return {xy[0], xy[1]};
  };
  while (isWhole && next < words.size()) {
    const QString command = words[next++];
    if (command == QLatin1String("M")) {
      path.moveTo(point());
    } else if (command == QLatin1String("L")) {
      path.lineTo(point());
    } else if (command == QLatin1String("C")) {
      const QPointF first = point(), second = point();
      path.cubicTo(first, second, point());
    } else if (command == QLatin1String("Z")) {
      path.closeSubpath();
    } else {
      return std::nullopt;
    }
  }
  return isWhole ? std::optional(path) : std::nullopt;
}

// Empty when a part of the drawing is not understood.
std::optional<QPainterPath> Outline(std::string_view drawing) {
  QXmlStreamReader reader(QByteArray(drawing.data(), static_cast<qsizetype>(drawing.size())));
  QPainterPath outline;
  while (!reader.atEnd()) {
    reader.readNext();
    if (!reader.isStartElement() || reader.name() == QLatin1String("svg")) continue;
    const QXmlStreamAttributes has = reader.attributes();
    if (reader.name() == QLatin1String("circle")) {
      const double radius = has.value("r").toDouble();
      outline.addEllipse({has.value("cx").toDouble(), has.value("cy").toDouble()}, radius, radius);
    } else if (reader.name() == QLatin1String("path")) {
      const auto path = PathOf(has.value("d").toString());
      if (!path) return std::nullopt;
      outline.addPath(*path);
    } else {
      return std::nullopt;
    }
  }
  return reader.hasError() || outline.isEmpty() ? std::nullopt : std::optional(outline);
}

std::optional<QPainterPath> OutlineOf(std::string_view name) {
  const auto* row = std::ranges::find(kIcons, name, &IconRow::Name);
  return row == std::end(kIcons) ? std::nullopt : Outline(row->Drawing);
}

class OutlineEngine : public QIconEngine {
 public:
  explicit OutlineEngine(QPainterPath outline) : outline_(std::move(outline)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    const double scale = std::min(rect.width(), rect.height()) / kSide;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rect.topLeft());
    painter->scale(scale, scale);
    painter->setPen(QPen(QApplication::palette().color(group, QPalette::ButtonText), kStroke,
                         Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->setBrush(Qt::NoBrush);
    painter->drawPath(outline_);
    painter->restore();
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return pixmap;
  }
  QSize actualSize(const QSize& size, QIcon::Mode, QIcon::State) override { return size; }
  QIconEngine* clone() const override { return new OutlineEngine(outline_); }

 private:
  QPainterPath outline_;
};

}  // namespace

QIcon IconNamed(std::string_view name) {
  return QIcon(new OutlineEngine(OutlineOf(name).value_or(QPainterPath())));
}

}  // namespace vexa
