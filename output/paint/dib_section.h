// The picture as a device-independent bitmap: what image files are written from and what goes to
// the clipboard. Failures carry the texts that users know.
#pragma once

#include <optional>
#include <QImage>
#include <string>

#include "core/fault.h"
#include "picture/image_settings.h"
#include "picture/picture.h"

class QMimeData;

namespace vexa::paint {

using vexa::ImageSettings;
using vexa::kJpegQuality;
using vexa::kScreenDpi;

inline constexpr const char* kImageFilter =
    "JPEG Files (*.JPG)|*.JPG|BMP Files (*.BMP)|*.BMP|PNG Files (*.PNG)|*.PNG|"
    "PDF Files (*.PDF)|*.PDF|SVG Files (*.SVG)|*.SVG";
inline constexpr const char* kBitmapFilter = "*.bmp|*.bmp";
inline constexpr const char* kJpegInitFailed = "Failed to initialise the IJL library: ";
inline constexpr const char* kJpegSaveFailed = "Failed to save to JPG ";
inline constexpr const char* kClipboardDone = "Image has been saved to your ClipBoard";
inline constexpr const char* kNoDibOnClipboard =
    "I don't know how to put a DIB on the clipboard! Copy as bitmap instead!!!";

class cDIBSection {
 public:
  /// Draws the picture at a size in pixels; false when there is no memory for it.
  bool Create(const Picture& picture, int widthPx, int heightPx, double dpi = kScreenDpi);
  const QImage& Image() const { return image_; }

  /// The bytes of an image file. Fault 481 with the text of the failure.
  Outcome<std::string> Jpeg(int quality = kJpegQuality) const;
  Outcome<std::string> Bmp() const;
  Outcome<std::string> Png() const;

  /// Puts the image on the clipboard. As a bitmap it goes; as a device-independent one it does not,
  /// and the answer says so: the caller takes the bitmap instead.
  std::optional<std::string> CopyToClipboard(bool asDib) const;

 private:
  QImage image_{};
};

/// Puts a picture on the clipboard as bitmap, as vector (SVG) and as the text in it. Gives the text
/// that tells the user.
std::string CopyPicture(const Picture& picture, int widthPx, int heightPx);

/// The words of a picture, line by line from above, for the clipboard and for readers without eyes.
std::string TextOf(const Picture& picture);

/// Name and version of what writes JPEG files: the toolkit's plugin over the platform's library.
std::string JpegLibraryVersion();

}  // namespace vexa::paint
