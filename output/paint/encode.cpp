#include <optional>
#include <QColor>
#include <QMarginsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <string>

#include "core/files.h"
#include "core/letter_case.h"
#include "output/paint/paint.h"
#include "output/paint/pdf.h"

namespace vexa::paint {
namespace {

// "jpg" of "JPEG".
std::string KindOf(std::string_view extension) {
  const std::string kind = Lower(extension);
  return kind == "jpeg" ? "jpg" : kind;
}

Fault EncodingFailed(const std::string& reason) {
  return {kFaultPicture, "EncodePicture", reason};
}

Outcome<std::string> EncodeImage(const Picture& picture, const std::string& kind, int widthPx,
                                 int heightPx, const ImageSettings& settings) {
  cDIBSection bitmap;
  if (!bitmap.Create(picture, widthPx, heightPx, settings.Dpi)) {
    return EncodingFailed("no memory for an image of this size");
  }
  if (kind == "jpg") return bitmap.Jpeg(settings.JpegQuality);
  return kind == "bmp" ? bitmap.Bmp() : bitmap.Png();
}

Outcome<std::string> EncodePdf(const Picture& picture, int widthPx, int heightPx, double dpi) {
  return MakePdf([&](QPdfWriter& writer) -> std::optional<Fault> {
    const QSizeF sizePt(widthPx * kPointsPerInch / dpi, heightPx * kPointsPerInch / dpi);
    writer.setPageLayout(QPageLayout(QPageSize(sizePt, QPageSize::Point, {}, QPageSize::ExactMatch),
                                     QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)));
    QPainter painter;
    if (!painter.begin(&writer)) return EncodingFailed("the document cannot be made");
    const QRectF page(0, 0, writer.width(), writer.height());
    const Color paper = picture.Paper();
    painter.fillRect(page, QColor(paper.Red, paper.Green, paper.Blue));
    Paint(picture, painter, page);
    if (!painter.end()) return EncodingFailed("the document cannot be made");
    return std::nullopt;
  });
}

}  // namespace

Outcome<std::string> EncodePicture(const Picture& picture, const std::string& extension,
                                   int widthPx, int heightPx, const ImageSettings& settings) {
  const std::string kind = KindOf(extension);
  if (kind == "svg") return ToSvg(picture, widthPx, heightPx);
  if (kind == "pdf") return EncodePdf(picture, widthPx, heightPx, settings.Dpi);
  if (kind == "png" || kind == "jpg" || kind == "bmp") {
    return EncodeImage(picture, kind, widthPx, heightPx, settings);
  }
  return Fault{kFaultBadFileName, "EncodePicture",
               "\"" + extension + "\" is none of png, jpg, bmp, svg, pdf"};
}

std::optional<Fault> SavePicture(const Picture& picture, const std::filesystem::path& path,
                                 int widthPx, int heightPx, const ImageSettings& settings) {
  std::string extension = TextFromPath(path.extension());
  if (!extension.empty()) extension.erase(0, 1);
  const Outcome<std::string> bytes = EncodePicture(picture, extension, widthPx, heightPx, settings);
  if (!bytes) return bytes.Error();
  std::optional<Fault> fault = SaveFile(path, bytes.Value());
  if (fault && KindOf(extension) == "jpg") {
    fault->Procedure = "SavePicture";
    fault->Detail = kJpegSaveFailed + fault->Detail;
  }
  return fault;
}

}  // namespace vexa::paint
