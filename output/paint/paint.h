// Puts a finished picture on a Qt surface: the window, an image, a PDF page, the printer. The only
// painter besides the SVG text; it takes no decision about what is shown.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <QString>
#include <string>

#include "core/fault.h"
#include "output/paint/dib_section.h"
#include "picture/picture.h"

class QPainter;
class QImage;
class QRectF;

namespace vexa::paint {

struct KeptFonts;

inline constexpr double kPointsPerInch = 72;

/// The painted ground of a picture and its fonts, which whoever paints a changing picture keeps:
/// while the ground stays as it was, at one size, only what stands on it is painted. The pixels are
/// the same with and without.
class KeptGround {
 public:
  KeptGround();
  ~KeptGround();
  KeptGround(const KeptGround&) = delete;
  KeptGround& operator=(const KeptGround&) = delete;

 private:
  friend void Paint(const Picture&, QPainter&, const QRectF&, KeptGround*);
  struct Kept;
  std::unique_ptr<Kept> kept_;
  std::unique_ptr<KeptFonts> fonts_;
};

/// Paints the whole page scaled into the rectangle, keeping its proportions.
void Paint(const Picture& picture, QPainter& painter, const QRectF& target,
           KeptGround* ground = nullptr);

/// The picture as an image of the given size in pixels.
QImage ToImage(const Picture& picture, int widthPx, int heightPx);

/// The bytes of a picture file by its extension: png, jpg, jpeg, bmp, svg, pdf. Fault 52 for
/// another extension, 481 when the image cannot be made.
///
/// settings  a PDF page measures the size at the resolution; SVG has none
Outcome<std::string> EncodePicture(const Picture& picture, const std::string& extension,
                                   int widthPx, int heightPx, const ImageSettings& settings = {});

/// Writes the picture file that a path's ending says. Faults as of EncodePicture and SaveFile
/// when it cannot be written, that of a JPEG file with kJpegSaveFailed before the reason; nothing
/// is written then.
[[nodiscard]] std::optional<Fault> SavePicture(const Picture& picture,
                                               const std::filesystem::path& path, int widthPx,
                                               int heightPx, const ImageSettings& settings = {});

}  // namespace vexa::paint
