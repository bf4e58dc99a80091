#include <algorithm>
#include <cctype>
#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QMarginsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <string>

#include "output/paint/paint.h"

namespace vexa::paint {
namespace {

constexpr int kPdfDpi = 1200;
constexpr double kPointsPerInch = 72;

Fault Failed(const std::string& reason) {
  return {kFaultDiskFull, "EncodePicture", reason};
}

Outcome<std::string> EncodeImage(const Picture& picture, const std::string& kind, int widthPx,
                                 int heightPx, const ImageSettings& settings) {
  cDIBSection bitmap;
  if (!bitmap.Create(picture, widthPx, heightPx, settings.Dpi)) {
    return Failed("no memory for an image of this size");
  }
  if (kind == "jpg") return bitmap.Jpeg(settings.JpegQuality);
  return kind == "bmp" ? bitmap.Bmp() : bitmap.Png();
}

Outcome<std::string> EncodePdf(const Picture& picture, int widthPx, int heightPx, double dpi) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  writer.setCreator(QStringLiteral("VEXA"));
  writer.setResolution(kPdfDpi);
  const QSizeF sizePt(widthPx * kPointsPerInch / dpi, heightPx * kPointsPerInch / dpi);
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
                                   int widthPx, int heightPx, const ImageSettings& settings) {
  std::string kind = extension;
  std::ranges::transform(kind, kind.begin(), [](unsigned char letter) {
    return static_cast<char>(std::tolower(letter));
  });
  if (kind == "jpeg") kind = "jpg";
  if (kind == "svg") return ToSvg(picture, widthPx, heightPx);
  if (kind == "pdf") return EncodePdf(picture, widthPx, heightPx, settings.Dpi);
  if (kind == "png" || kind == "jpg" || kind == "bmp") {
    return EncodeImage(picture, kind, widthPx, heightPx, settings);
  }
  return Fault{kFaultBadFileName, "EncodePicture",
               "\"" + extension + "\" is none of png, jpg, bmp, svg, pdf"};
}

}  // namespace vexa::paint
