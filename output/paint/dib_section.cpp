#include "output/paint/dib_section.h"

#include <algorithm>
#include <cstddef>
#include <QBuffer>
#include <QByteArray>
#include <QClipboard>
#include <QGuiApplication>
#include <QImageWriter>
#include <QMimeData>
#include <QtGlobal>
#include <variant>
#include <vector>

#include "output/paint/paint.h"

namespace vexa::paint {
namespace {

constexpr double kMetersPerInch = 0.0254;
constexpr const char* kNoMemory = "no memory for an image of this size";

Fault ImageFailed(std::string reason) {
  return {kFaultPicture, "cDIBSection", std::move(reason)};
}

Outcome<std::string> Write(const QImage& image, const char* format, int quality) {
  if (image.isNull()) return ImageFailed(kNoMemory);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QImageWriter writer(&buffer, format);
  if (quality > 0) writer.setQuality(quality);
  if (!writer.write(image)) return ImageFailed(writer.errorString().toStdString());
  return bytes.toStdString();
}

char* Append(std::size_t value, int bytes, char* to) {
  for (int i = 0; i < bytes; ++i) *to++ = static_cast<char>(value >> (8 * i) & 0xFF);
  return to;
}

// Rows of blue, green and red from below, each filled up to whole words. The toolkit would load its
// plugins for all other kinds before it wrote this one, and every first start writes one.
std::string BitmapFile(const QImage& image) {
  constexpr std::size_t kFileHeader = 14, kHeader = 40, kBits = 24, kWordBits = 32;
  constexpr int kWord = 4, kHalf = 2;  // bytes of a field
  const auto width = static_cast<std::size_t>(image.width());
  const auto height = static_cast<std::size_t>(image.height());
  const std::size_t rowBytes = (width * kBits + kWordBits - 1) / kWordBits * kWord;
  const std::size_t before = kFileHeader + kHeader, pixelBytes = rowBytes * height;
  std::string file(before + pixelBytes, '\0');
  file.replace(0, 2, "BM");
  char* to = file.data() + 2;
  for (const std::size_t field : {file.size(), std::size_t{0}, before, kHeader, width, height}) {
    to = Append(field, kWord, to);
  }
  for (const std::size_t field : {std::size_t{1}, kBits}) to = Append(field, kHalf, to);  // planes
  for (const std::size_t field :
       {std::size_t{0}, pixelBytes, static_cast<std::size_t>(image.dotsPerMeterX()),
        static_cast<std::size_t>(image.dotsPerMeterY())}) {
    to = Append(field, kWord, to);
  }
  for (std::size_t row = 0; row < height; ++row) {
    to = file.data() + before + row * rowBytes;
    const auto* pixels =
        reinterpret_cast<const QRgb*>(image.constScanLine(static_cast<int>(height - 1 - row)));
    for (std::size_t x = 0; x < width; ++x) to = Append(pixels[x], 3, to);
  }
  return file;
}

void CollectLabels(const Picture& picture, std::vector<const Label*>& labels) {
  for (const Item& item : picture.Items()) {
    if (const auto* label = std::get_if<Label>(&item.Shape)) labels.push_back(label);
    const auto* inset = std::get_if<Inset>(&item.Shape);
    if (inset != nullptr && inset->Content.Get() != nullptr) {
      CollectLabels(*inset->Content.Get(), labels);
    }
  }
}

}  // namespace

bool cDIBSection::Create(const Picture& picture, int widthPx, int heightPx, double dpi) {
  image_ = ToImage(picture, widthPx, heightPx);
  const int dotsPerMeter = qRound(dpi / kMetersPerInch);
  image_.setDotsPerMeterX(dotsPerMeter);
  image_.setDotsPerMeterY(dotsPerMeter);
  return !image_.isNull();
}

Outcome<std::string> cDIBSection::Jpeg(int quality) const {
  if (!QImageWriter::supportedImageFormats().contains("jpg")) {
    return ImageFailed(std::string(kJpegInitFailed) + "no support for JPEG files is installed");
  }
  Outcome<std::string> bytes = Write(image_, "jpg", std::clamp(quality, 1, 100));
  if (!bytes) return ImageFailed(kJpegSaveFailed + bytes.Error().Detail);
  return bytes;
}

Outcome<std::string> cDIBSection::Bmp() const {
  if (image_.isNull()) return ImageFailed(kNoMemory);
  return BitmapFile(image_);
}
Outcome<std::string> cDIBSection::Png() const {
  return Write(image_, "png", 0);
}

std::optional<std::string> cDIBSection::CopyToClipboard(bool asDib) const {
  if (asDib) return kNoDibOnClipboard;
  if (image_.isNull()) return kNoMemory;
  QGuiApplication::clipboard()->setImage(image_);
  return std::nullopt;
}

std::string CopyPicture(const Picture& picture, int widthPx, int heightPx) {
  cDIBSection bitmap;
  if (!bitmap.Create(picture, widthPx, heightPx)) return kNoMemory;
  auto* data = new QMimeData;  // the clipboard's own from here on
  data->setImageData(bitmap.Image());
  data->setData(QStringLiteral("image/svg+xml"),
                QByteArray::fromStdString(ToSvg(picture, widthPx, heightPx)));
  data->setText(QString::fromStdString(TextOf(picture)));
  QGuiApplication::clipboard()->setMimeData(data);
  return kClipboardDone;
}

std::string TextOf(const Picture& picture) {
  std::vector<const Label*> labels;
  CollectLabels(picture, labels);
  std::ranges::stable_sort(labels, [](const Label* a, const Label* b) {
    return a->At.Y != b->At.Y ? a->At.Y < b->At.Y : a->At.X < b->At.X;
  });
  std::string text;
  for (const Label* label : labels) {
    if (!label->Text.empty()) text += label->Text + "\n";
  }
  return text;
}

std::string JpegLibraryVersion() {
  return std::string("JPEG by ") + VEXA_JPEG_LIBRARY + ", Qt " + qVersion();
}

}  // namespace vexa::paint
