// What commands need the toolkit for: images, PDF documents and downloads. SVG pictures and texts
// do without. A program that was built without the toolkit has none, and its commands say so.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "core/fault.h"
#include "download/fetcher.h"
#include "picture/image_settings.h"
#include "picture/picture.h"

namespace vexa::cli {

class Toolkit {
 public:
  Toolkit() = default;
  virtual ~Toolkit() = default;
  Toolkit(const Toolkit&) = delete;
  Toolkit& operator=(const Toolkit&) = delete;

  /// The bytes of a picture file by its extension: png, jpg, jpeg, bmp, svg, pdf.
  virtual Outcome<std::string> EncodePicture(const Picture& picture, const std::string& extension,
                                             int widthPx, int heightPx) = 0;
  /// Writes the picture file that the path's ending says.
  virtual std::optional<Fault> SavePicture(const Picture& picture,
                                           const std::filesystem::path& path, int widthPx,
                                           int heightPx, const ImageSettings& settings) = 0;
  /// Printed pages as the bytes of a PDF document.
  virtual Outcome<std::string> PagesAsPdf(std::span<const Picture> pages) = 0;
  /// Name and version of what writes JPEG files.
  virtual std::string JpegLibraryVersion() = 0;
  virtual std::unique_ptr<download::Fetcher> MakeFetcher() = 0;
};

/// Null where the program was built without it.
std::unique_ptr<Toolkit> MakeToolkit();

}  // namespace vexa::cli
