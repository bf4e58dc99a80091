// The painter of pictures: puts item after item on the surface of a QPainter. Lines are painted in
// painter_lines.cpp, texts in painter_letters.cpp.
#pragma once

#include <deque>
#include <optional>
#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QLineF>
#include <QList>
#include <QPen>
#include <QPointF>
#include <QPolygonF>
#include <QRawFont>
#include <QRectF>
#include <QString>
#include <QTransform>
#include <span>
#include <string_view>
#include <vector>

#include "picture/picture.h"

class QPainter;

namespace vexa::paint {

inline constexpr double kAboutOnePixel = 1.5;

inline QColor ToColor(Color ink) {
  return {ink.Red, ink.Green, ink.Blue, ink.Alpha};
}

// A face at a size, ready for the surface, with what its labels are placed by.
struct SizedFont {
  Face Kind = Face::Sans;
  bool Bold = false;
  double Size = 0;
  int Dpi = 0;  // of the surface
  QFont Font;
  QFontMetricsF Metrics;
  double CapHeight = 0;
  QRawFont Letters{};  // on a screen: the letters one by one
};

/// The fonts of a painter that paints again and again: a face of which another size is there
/// already is enlarged from it, since to look a face up takes as long as its letters.
struct KeptFonts {
  std::deque<SizedFont> Fonts{};  // entries keep their place
};

/// A text ready to be put anywhere: its letters side by side where the font has all of them.
struct SetText {
  QString Text;
  std::optional<QGlyphRun> Letters{};
  double Width = 0;
};

class Painter {
 public:
  /// fonts  those of the painter before, which this one adds to; null for those of its own
  explicit Painter(QPainter& painter, KeptFonts* fonts = nullptr);
  Painter(const Painter&) = delete;
  Painter& operator=(const Painter&) = delete;

  /// The page, or without its ground where that is painted already, or that alone.
  enum class Part { All, Ground, Rest };

  bool IsRaster() const { return isRaster_; }
  void Page(const Picture& picture, const QRectF& target, Part part = Part::All);

 private:
  // Where the page in work stands; one within another is scaled on its own.
  struct Placed {
    double Scale = 1;  // logical units per drawing unit
    double Left = 0;
    double Top = 0;
    Point Page{};  // right lower corner, drawing units
  };

  QPointF At(Point at) const {
    return {page_.Left + at.X * page_.Scale, page_.Top + at.Y * page_.Scale};
  }

  void ForgetState();
  bool SetPen(const Pen& pen);
  double DrawnWidth(const Pen& pen) const;
  QPen ToPen(const Pen& pen) const;
  void SetBrush(Color ink);
  void Antialias(bool on);

  void Draw(const Polyline& line);
  void Draw(const Area& area);
  void Draw(const Circle& circle);
  void Draw(const Label& label);
  void Draw(const Inset& inset);
  void Hatch(const Area& area);

  struct Strokes {
    QList<QLineF> Lines{};
    std::vector<QPointF> Corners{};
  };
  QPolygonF ToPolygon(const std::vector<Point>& points) const;
  QPointF FromDevice(QPointF place) const;
  bool DrawAlongGrid(const Polyline& line);
  void FillAlongGrid(std::span<const QPointF> places, int width, QColor ink);
  void StrokeAlongGrid(std::span<const QPointF> places, int width, const Pen& stroke);
  void AddSegments(const QPolygonF& points, double width, double over, Strokes& into) const;
  void PutStrokes(const Strokes& strokes, double width);
  bool StaysNear(const std::vector<Point>& line) const;

  const SizedFont& FontFor(const Label& label);
  // A path takes its letters at the screen's resolution; the surface may have another.
  QFont DeviceFont(const QFont& font) const;
  QRawFont AloneOnScreen(QFont font) const;
  QRawFont OfKeptFace(const SizedFont& wanted) const;
  SetText Set(const SizedFont& font, std::string_view utf8) const;
  void SetFont(const SizedFont& font);
  void Put(const SetText& text, QPointF at);
  void DrawHalo(const Label& label, const SizedFont& font, QPointF at, const SetText& text);
  void Letters(const Label& label, const SizedFont& font, QPointF at, const SetText& text);

  QPainter& painter_;
  QTransform device_{};
  bool isRaster_ = false;
  bool snaps_ = false;
  double toDevice_ = 1;  // device pixels per logical unit
  int dpi_ = 96;
  double hairline_ = 1;  // logical units

  Placed page_{};
  std::optional<Pen> pen_{};
  std::optional<Color> brush_{};
  const SizedFont* font_ = nullptr;
  KeptFonts own_{};
  KeptFonts& fonts_;
  bool keepsFonts_ = false;
};

}  // namespace vexa::paint
