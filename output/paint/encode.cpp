#include <algorithm>
#include <cctype>
#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QImageWriter>
#include <QMarginsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <string>
#include <string_view>

#include "output/paint/paint.h"

namespace vexa::paint {
namespace {

constexpr int kJpegQuality = 92;
constexpr int kPdfDpi = 1200;
constexpr double kPixelsPerInch = 96;  // what a pixel measures on paper
constexpr double kPointsPerInch = 72;
constexpr double kMetersPerInch = 0.0254;

Fault Failed(const std::string& reason) {
  return {kFaultDiskFull, "EncodePicture", reason};
}

Outcome<std::string> EncodeImage(const Picture& picture, const char* format, int widthPx,
                                 int heightPx) {
  QImage image = ToImage(picture, widthPx, heightPx);
  if (image.isNull()) return Failed("no memory for an image of this size");
  const int dotsPerMeter = static_cast<int>(kPixelsPerInch / kMetersPerInch);
  image.setDotsPerMeterX(dotsPerMeter);
  image.setDotsPerMeterY(dotsPerMeter);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QImageWriter writer(&buffer, format);
  if (std::string_view(format) == "jpg") writer.setQuality(kJpegQuality);
  if (!writer.write(image)) return Failed(writer.errorString().toStdString());
  return bytes.toStdString();
}

Outcome<std::string> EncodePdf(const Picture& picture, int widthPx, int heightPx) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  writer.setCreator(QStringLiteral("VEXA"));
  writer.setResolution(kPdfDpi);
  const QSizeF sizePt(widthPx * kPointsPerInch / kPixelsPerInch,
                      heightPx * kPointsPerInch / kPixelsPerInch);
  writer.setPageLayout(QPageLayout(QPageSize(sizePt, QPageSize::Point, {}, QPageSize::ExactMatch),
                                   QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)));
  QPainter painter;
  if (!painter.begin(&writer)) return Failed("the document cannot be made");
  const QRectF page(0, 0, writer.width(), writer.height());
  const Color paper = picture.Paper();
  painter.fillRect(page, QColor(paper.Red, paper.Green, paper.Blue));
  Paint(picture, painter, page);
  if (!painter.end()) return Failed("the document cannot be made");
  return bytes.toStdString();
}

}  // namespace

Outcome<std::string> EncodePicture(const Picture& picture, const std::string& extension,
                                   int widthPx, int heightPx) {
  std::string kind = extension;
  std::ranges::transform(kind, kind.begin(), [](unsigned char letter) {
    return static_cast<char>(std::tolower(letter));
  });
  if (kind == "jpeg") kind = "jpg";
  if (kind == "svg") return ToSvg(picture, widthPx, heightPx);
  if (kind == "pdf") return EncodePdf(picture, widthPx, heightPx);
  if (kind == "png" || kind == "jpg" || kind == "bmp") {
    return EncodeImage(picture, kind.c_str(), widthPx, heightPx);
  }
  return Fault{kFaultBadFileName, "EncodePicture",
               "\"" + extension + "\" is none of png, jpg, bmp, svg, pdf"};
}

}  // namespace vexa::paint
