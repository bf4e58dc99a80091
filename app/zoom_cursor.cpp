#include "app/zoom_cursor.h"

#include <QPainter>
#include <QPen>
#include <QPixmap>

#include "app/qt_text.h"
#include "core/files.h"

namespace vexa {
namespace {

constexpr const char* kFile = "zoom.cur";
constexpr int kCursorSize = 32;
constexpr std::size_t kSpotAt = 10;  // bytes in a cursor file ahead of its first picture's hot spot

// In black with a light rim, so that it is seen on either screen colour.
QCursor MagnifyingGlass() {
  constexpr int kMiddle = 12;
  constexpr int kRadius = 8;
  QPixmap picture(kCursorSize, kCursorSize);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  for (const QPen& pen : {QPen(Qt::white, 5, Qt::SolidLine, Qt::RoundCap),
                          QPen(Qt::black, 2, Qt::SolidLine, Qt::RoundCap)}) {
    painter.setPen(pen);
    painter.drawEllipse(QPoint(kMiddle, kMiddle), kRadius, kRadius);
    painter.drawLine(kMiddle + 6, kMiddle + 6, kCursorSize - 5, kCursorSize - 5);
    painter.drawLine(kMiddle - 4, kMiddle, kMiddle + 4, kMiddle);
    painter.drawLine(kMiddle, kMiddle - 4, kMiddle, kMiddle + 4);
  }
  painter.end();
  return QCursor(picture, kMiddle, kMiddle);
}

}  // namespace

QCursor ZoomCursor(const std::filesystem::path& root) {
  const Outcome<std::string> bytes = ReadFile(root / kFile);
  if (!bytes || bytes.Value().size() < kSpotAt + 4) return MagnifyingGlass();
  QPixmap picture;
  if (!picture.loadFromData(QByteArray::fromStdString(bytes.Value()))) return MagnifyingGlass();
  const auto word = [&bytes](std::size_t at) {
    return static_cast<unsigned char>(bytes.Value()[at]) +
           256 * static_cast<unsigned char>(bytes.Value()[at + 1]);
  };
  return QCursor(picture, word(kSpotAt), word(kSpotAt + 2));
}

}  // namespace vexa
