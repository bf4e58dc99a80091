#include "output/paint/paint.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <deque>
#include <iterator>
#include <optional>
#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QImage>
#include <QLineF>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QPolygonF>
#include <QRawFont>
#include <QString>
#include <QTransform>
#include <QVarLengthArray>
#include <span>
#include <utility>
#include <variant>
#include <vector>

#include "core/numbers.h"
#include "picture/clip.h"
#include "picture/hatch.h"
#include "picture/picture.h"
#include "picture/stroke.h"
#include "picture/thinning.h"

namespace vexa::paint {
namespace {

constexpr double kHairlinePt = 0.24;  // on paper; a screen's hairline is one of its pixels
constexpr double kAboutOnePixel = 1.5;
constexpr double kThinnedPx = 0.35;   // how far a thinned line may lie off the whole one
constexpr double kMostCachedPx = 64;  // higher letters are drawn as outlines on a screen too

QColor ToColor(Color ink) {
  return {ink.Red, ink.Green, ink.Blue, ink.Alpha};
}

// A face at a size, ready for the surface, with what its labels are placed by.
struct SizedFont {
  Face Kind = Face::Sans;
  bool Bold = false;
  double Size = 0;
  QFont Font;
  QFontMetricsF Metrics;
  double CapHeight = 0;
  QRawFont Letters{};  // on a screen: the letters one by one
};

/// A text ready to be put anywhere: its letters side by side where the font has all of them.
struct SetText {
  QString Text;
  std::optional<QGlyphRun> Letters{};
  double Width = 0;
};

// The toolkit leaves the fraction of a pixel at which it last drew a letter with a face, and moves
// the face's outlines by it. A letter drawn at a whole pixel clears it; a font of another size is
// fresh, so that the letter is drawn and not remembered.
void ForgetFraction(const QFont& font) {
  constexpr double kOtherPx = 10;
  QRawFont letters = QRawFont::fromFont(font);
  const QList<quint32> glyphs = letters.glyphIndexesForString(QStringLiteral("x"));
  if (glyphs.isEmpty()) return;
  letters.setPixelSize(letters.pixelSize() == kOtherPx ? kOtherPx + 1 : kOtherPx);
  letters.alphaMapForGlyph(glyphs.front(), QRawFont::PixelAntialiasing);
}

class Painter {
 public:
  explicit Painter(QPainter& painter) : painter_(painter) {
    const QTransform& device = painter.deviceTransform();
    const QPaintEngine* engine = painter.paintEngine();
    isRaster_ = engine != nullptr && engine->type() == QPaintEngine::Raster;
    snaps_ =
        isRaster_ && device.type() <= QTransform::TxScale && device.m11() > 0 && device.m22() > 0;
    device_ = device;
    toDevice_ = std::hypot(device.m11(), device.m12());
    dpi_ = std::max(1, painter.device()->logicalDpiY());
    if (!(toDevice_ > 0)) toDevice_ = 1;
    // Logical units are inches by the logical resolution, device pixels by the transform.
    hairline_ = std::max(1 / toDevice_, kHairlinePt / kPointsPerInch * dpi_);
  }

  /// The page, or without its ground where that is painted already, or that alone.
  enum class Part { All, Ground, Rest };

  bool IsRaster() const { return isRaster_; }

  void Page(const Picture& picture, const QRectF& target, Part part = Part::All) {
    const PageFit fit = FitPage(picture.Width(), picture.Height(),
                                {target.left(), target.top(), target.right(), target.bottom()});
    if (fit.Scale <= 0) return;
    const double outerScale = scale_;
    const double outerLeft = left_;
    const double outerTop = top_;
    const Point outerPage = page_;
    page_ = {picture.Width(), picture.Height()};
    scale_ = fit.Scale;
    left_ = fit.Left;
    top_ = fit.Top;
    const QRectF page(left_, top_, picture.Width() * scale_, picture.Height() * scale_);
    painter_.save();
    painter_.setClipRect(page, Qt::IntersectClip);
    if (part != Part::Rest) painter_.fillRect(page, ToColor(picture.Paper()));
    ForgetState();
    const std::span<const Item> ground = picture.Ground();
    std::span<const Item> items = picture.Items();
    if (part == Part::Ground) items = ground;
    if (part == Part::Rest) items = items.subspan(ground.size());
    for (const Item& item : items) {
      std::visit([this](const auto& shape) { Draw(shape); }, item.Shape);
    }
    painter_.restore();
    ForgetState();
    scale_ = outerScale;
    left_ = outerLeft;
    top_ = outerTop;
    page_ = outerPage;
  }

 private:
  QPointF At(Point at) const { return {left_ + at.X * scale_, top_ + at.Y * scale_}; }

  void ForgetState() {
    pen_.reset();
    brush_.reset();
    font_ = nullptr;
  }

  // Pens and brushes are set only where they differ from the item's before.
  bool SetPen(const Pen& pen) {
    const bool draws = pen.Width > 0 && pen.Ink.Alpha != 0;
    const Pen wanted = draws ? pen : Pen{};
    if (pen_ != wanted) {
      pen_ = wanted;
      painter_.setPen(draws ? ToPen(pen) : QPen(Qt::NoPen));
    }
    return draws;
  }

  // On a screen a line of about a pixel is a line of one: those are drawn ten times faster.
  double DrawnWidth(const Pen& pen) const {
    const double width = std::max(pen.Width * scale_, hairline_);
    return snaps_ && width * toDevice_ < kAboutOnePixel ? 1 / toDevice_ : width;
  }

  QPen ToPen(const Pen& pen) const {
    const double width = DrawnWidth(pen);
    QPen made(ToColor(pen.Ink), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    const DashPattern dashes(pen.Style, width / scale_);
    if (!dashes.Lengths().empty()) {
      QList<qreal> pattern;
      for (const double length : dashes.Lengths()) pattern.append(length * scale_ / width);
      made.setDashPattern(pattern);
      made.setCapStyle(Qt::FlatCap);
    } else if (width * toDevice_ < kAboutOnePixel) {
      made.setCapStyle(Qt::FlatCap);  // too thin to show its ends
      made.setJoinStyle(Qt::BevelJoin);
    }
    return made;
  }

  void SetBrush(Color ink) {
    if (brush_ == ink) return;
    brush_ = ink;
    if (ink.Alpha == 0) {
      painter_.setBrush(Qt::NoBrush);
    } else {
      painter_.setBrush(ToColor(ink));
    }
  }

  void Antialias(bool on) {
    if (painter_.testRenderHint(QPainter::Antialiasing) != on) {
      painter_.setRenderHint(QPainter::Antialiasing, on);
    }
  }

  // Points that a screen cannot show are left out.
  QPolygonF ToPolygon(const std::vector<Point>& points) const {
    std::vector<Point> kept;
    kept.reserve(points.size());
    std::ranges::copy_if(points, std::back_inserter(kept), IsFinite);
    if (snaps_) kept = Thinned(std::move(kept), kThinnedPx / (scale_ * toDevice_));
    QPolygonF polygon;
    polygon.reserve(static_cast<qsizetype>(kept.size()));
    for (const Point& point : kept) polygon.append(At(point));
    return polygon;
  }

  QPointF FromDevice(QPointF place) const {
    return {(place.x() - device_.dx()) / device_.m11(), (place.y() - device_.dy()) / device_.m22()};
  }

  // Lines of whole pixels are rectangles. The places are device pixels.
  void FillAlongGrid(std::span<const QPointF> places, int width, QColor ink) {
    const QPointF half(width / 2.0, width / 2.0);
    Antialias(false);
    for (std::size_t i = 1; i < places.size(); ++i) {
      const QRectF span = QRectF(places[i - 1], places[i]).normalized();
      painter_.fillRect(
          QRectF(FromDevice(span.topLeft() - half), FromDevice(span.bottomRight() + half)), ink);
    }
  }

  // A line along the pixel grid would be smeared over two rows; it moves onto one. Its width, in
  // device pixels, becomes whole for the purpose.
  bool DrawAlongGrid(const Polyline& line) {
    if (!snaps_ || line.Points.size() < 2 || line.Points.size() > 5) return false;
    for (std::size_t i = 1; i < line.Points.size(); ++i) {
      const Point& a = line.Points[i - 1];
      const Point& b = line.Points[i];
      if ((a.X == b.X) == (a.Y == b.Y)) return false;
    }
    const int width = std::max(1, ToWhole(DrawnWidth(line.Stroke) * toDevice_));
    const double centre = width % 2 == 0 ? 0 : 0.5;
    const auto snap = [centre](double place) {
      return std::floor(place + (centre == 0 ? 0.5 : 0)) + centre;
    };
    QVarLengthArray<QPointF, 5> places;
    for (const Point& at : line.Points) {
      const QPointF place = device_.map(At(at));
      places.append({snap(place.x()), snap(place.y())});
    }
    if (line.Stroke.Style == LineStyle::Solid && line.Stroke.Ink.Alpha == 255) {
      FillAlongGrid(places, width, ToColor(line.Stroke.Ink));
      return true;
    }
    QVarLengthArray<QPointF, 5> points;
    for (const QPointF& place : places) points.append(FromDevice(place));
    QPen pen = ToPen(line.Stroke);
    const double before = pen.widthF();
    pen.setWidthF(width / toDevice_);
    if (pen.style() == Qt::CustomDashLine) {  // lengths stay, in units of the new width
      QList<qreal> pattern = pen.dashPattern();
      for (qreal& length : pattern) length *= before / pen.widthF();
      pen.setDashPattern(pattern);
    } else {
      pen.setCapStyle(Qt::SquareCap);
      pen.setJoinStyle(Qt::MiterJoin);
    }
    pen_.reset();
    painter_.setPen(pen);
    painter_.drawPolyline(points.data(), static_cast<int>(points.size()));
    return true;
  }

  struct Strokes {
    QList<QLineF> Lines{};
    std::vector<QPointF> Corners{};
  };

  // An outline with joins costs a screen four times as much as its segments one by one. Each is
  // longer by what closes the gap on the outer side of a bend; sharp bends get a disc. The ends of
  // the line reach `over` further.
  void AddSegments(const QPolygonF& points, double width, double over, Strokes& into) const {
    constexpr double kSharp = 1;           // tangent of half the bend
    const double seam = 0.75 / toDevice_;  // two half covered pixels would let the paper through
    bool isFirst = true;
    QPointF before;
    for (qsizetype i = 1; i < points.size(); ++i) {
      const QPointF way = points[i] - points[i - 1];
      const double length = std::sqrt(QPointF::dotProduct(way, way));
      if (!(length > 0)) continue;
      const QPointF along = way / length;
      double more = over;
      if (!isFirst) {
        // tan(a/2) = sin a / (1 + cos a)
        const double sine = std::abs(before.x() * along.y() - before.y() * along.x());
        const double bend = sine / std::max(1 + QPointF::dotProduct(before, along), 1e-9);
        if (bend > kSharp) into.Corners.push_back(points[i - 1]);
        more = bend > kSharp ? 0 : std::max(seam, bend * width / 2);
        into.Lines.back().setP2(into.Lines.back().p2() + more * before);
      }
      into.Lines.append(QLineF(points[i - 1] - more * along, points[i]));
      before = along;
      isFirst = false;
    }
    if (!isFirst) into.Lines.back().setP2(into.Lines.back().p2() + over * before);
  }

  void PutStrokes(const Strokes& strokes, double width) {
    QPen pen = painter_.pen();
    pen.setStyle(Qt::SolidLine);
    pen.setCapStyle(Qt::FlatCap);
    painter_.setPen(pen);
    painter_.drawLines(strokes.Lines);
    if (!strokes.Corners.empty()) {
      const QColor ink = pen.color();
      painter_.setPen(Qt::NoPen);
      painter_.setBrush(ink);
      for (const QPointF& at : strokes.Corners) painter_.drawEllipse(at, width / 2, width / 2);
      brush_.reset();
    }
    pen_.reset();
  }

  // A line that leads far off the page has more dashes than can be counted.
  bool StaysNear(const std::vector<Point>& line) const {
    return std::ranges::all_of(line, [this](Point at) {
      return IsFinite(at) && std::abs(at.X) < 3 * page_.X && std::abs(at.Y) < 3 * page_.Y;
    });
  }

  void Draw(const Polyline& line) {
    if (line.Stroke.Width <= 0 || line.Stroke.Ink.Alpha == 0) return;
    Antialias(true);
    if (DrawAlongGrid(line)) return;
    SetPen(line.Stroke);
    const double width = DrawnWidth(line.Stroke);
    const bool isSolid = line.Stroke.Style == LineStyle::Solid;
    const bool piecewise = snaps_ && line.Stroke.Ink.Alpha == 255 &&
                           width * toDevice_ >= kAboutOnePixel &&
                           (isSolid || StaysNear(line.Points));
    if (!piecewise) {
      const QPolygonF polygon = ToPolygon(line.Points);
      if (polygon.size() > 1) painter_.drawPolyline(polygon);
      return;
    }
    Strokes strokes;
    if (isSolid) {
      AddSegments(ToPolygon(line.Points), width, width / 2, strokes);
    } else {
      const DashPattern pattern(line.Stroke.Style, width / scale_);
      for (const std::vector<Point>& dash : Dashes(line.Points, pattern)) {
        AddSegments(ToPolygon(dash), width, 0, strokes);
      }
    }
    if (!strokes.Lines.isEmpty()) PutStrokes(strokes, width);
  }

  void Draw(const Area& area) {
    const bool isPlain = area.Fill.Style == FillStyle::Plain;
    const Color fill = isPlain ? area.Fill.Ink : Color{0, 0, 0, 0};
    const bool strokes = SetPen(area.Stroke);
    Antialias(true);
    if (strokes || fill.Alpha != 0) {
      SetBrush(fill);
      if (area.Rings.size() == 1) {
        painter_.drawPolygon(ToPolygon(area.Rings.front()), Qt::OddEvenFill);
      } else {
        QPainterPath path;
        path.setFillRule(Qt::OddEvenFill);
        for (const std::vector<Point>& ring : area.Rings) {
          path.addPolygon(ToPolygon(ring));
          path.closeSubpath();
        }
        painter_.drawPath(path);
      }
    }
    if (!isPlain && area.Fill.Ink.Alpha != 0) Hatch(area);
  }

  void Hatch(const Area& area) {
    const std::vector<HatchLine> lines = HatchLines(area.Rings, area.Fill.Style);
    QList<QLineF> drawn;
    drawn.reserve(static_cast<qsizetype>(lines.size()));
    for (const HatchLine& line : lines) drawn.append(QLineF(At(line.From), At(line.To)));
    if (SetPen({area.Fill.Ink, kHatchWidth, LineStyle::Solid})) painter_.drawLines(drawn);
  }

  void Draw(const Circle& circle) {
    if (!IsFinite(circle.Center) || !(circle.Radius > 0) || !std::isfinite(circle.Radius)) return;
    const bool strokes = SetPen(circle.Stroke);
    if (!strokes && circle.Fill.Ink.Alpha == 0) return;
    SetBrush(circle.Fill.Ink);
    Antialias(true);
    const double radius = circle.Radius * scale_;
    painter_.drawEllipse(At(circle.Center), radius, radius);
  }

  const SizedFont& FontFor(const Label& label) {
    const double size = label.Size * scale_;
    for (const SizedFont& font : fonts_) {
      if (font.Kind == label.Font && font.Bold == label.Bold && font.Size == size) return font;
    }
    QFont font;
    if (label.Font == Face::Mono) {
      font.setFamilies({QStringLiteral("Courier New"), QStringLiteral("Liberation Mono"),
                        QStringLiteral("monospace")});
      font.setStyleHint(QFont::Monospace);
    } else {
      font.setFamilies({QStringLiteral("Arial"), QStringLiteral("Liberation Sans"),
                        QStringLiteral("sans-serif")});
      font.setStyleHint(QFont::SansSerif);
    }
    // Points can be fractions where pixels cannot.
    font.setPointSizeF(std::max(0.5, size * kPointsPerInch / dpi_));
    font.setBold(label.Bold);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setKerning(false);  // as texts are measured (picture/text_width.h)
    const QFontMetricsF metrics(font, painter_.device());
    SizedFont made{label.Font, label.Bold, size, font, metrics, metrics.capHeight()};
    if (isRaster_) made.Letters = QRawFont::fromFont(DeviceFont(font));
    const bool asOutlines = !isRaster_ || size * toDevice_ > kMostCachedPx;
    if (asOutlines) ForgetFraction(DeviceFont(font));
    return fonts_.emplace_back(std::move(made));
  }

  // What a text engine works out for every script is half the time of a page; plain letters need
  // none of it.
  SetText Set(const SizedFont& font, std::string_view utf8) const {
    SetText set{.Text = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()))};
    const bool isPlain = std::ranges::all_of(
        set.Text, [](QChar letter) { return letter.script() <= QChar::Script_Latin; });
    const QList<quint32> glyphs = font.Letters.isValid() && isPlain
                                      ? font.Letters.glyphIndexesForString(set.Text)
                                      : QList<quint32>();
    if (glyphs.isEmpty() || glyphs.contains(0)) {
      set.Width = font.Metrics.horizontalAdvance(set.Text);
      return set;
    }
    QList<QPointF> places;
    places.reserve(glyphs.size());
    for (const QPointF& advance : font.Letters.advancesForGlyphIndexes(glyphs)) {
      places.append({set.Width, 0});
      set.Width += advance.x();
    }
    set.Letters.emplace();
    set.Letters->setRawFont(font.Letters);
    set.Letters->setGlyphIndexes(glyphs);
    set.Letters->setPositions(places);
    return set;
  }

  void Put(const SetText& text, QPointF at) {
    if (text.Letters) {
      painter_.drawGlyphRun(at, *text.Letters);
    } else {
      painter_.drawText(at, text.Text);
    }
  }

  void Draw(const Label& label) {
    if (label.Text.empty() || !IsFinite(label.At) || !(label.Size > 0)) return;
    const SizedFont& font = FontFor(label);
    const SetText text = Set(font, label.Text);
    QPointF offset(0, 0);
    if (label.Across != AnchorX::Left) {
      offset.setX(label.Across == AnchorX::Center ? -text.Width / 2 : -text.Width);
    }
    if (label.Down != AnchorY::Base) {
      offset.setY(label.Down == AnchorY::Middle ? font.CapHeight / 2 : font.CapHeight);
    }
    Antialias(true);
    if (label.Angle == 0) {
      Letters(label, font, At(label.At) + offset, text);
      return;
    }
    painter_.save();
    painter_.translate(At(label.At));
    painter_.rotate(-label.Angle);
    Letters(label, font, offset, text);
    painter_.restore();
    ForgetState();
  }

  // Around the letters on paper, as one outline. A screen repeats its cached letters instead, ten
  // times as fast.
  void DrawHalo(const Label& label, const SizedFont& font, QPointF at, const SetText& text) {
    const double radius = kHaloShare * font.Size;
    if (!isRaster_) {
      QPainterPath outline;
      outline.addText(at, DeviceFont(font.Font), text.Text);
      painter_.strokePath(outline, QPen(ToColor(label.Halo), 2 * radius, Qt::SolidLine,
                                        Qt::RoundCap, Qt::RoundJoin));
      return;
    }
    if (!SetPen({label.Halo, 1, LineStyle::Solid})) return;
    SetFont(font);
    const double aslant = radius * std::sqrt(0.5);
    const QPointF around[] = {{radius, 0},       {-radius, 0},      {0, radius},
                              {0, -radius},      {aslant, aslant},  {-aslant, aslant},
                              {aslant, -aslant}, {-aslant, -aslant}};
    for (const QPointF& offset : around) Put(text, at + offset);
  }

  void SetFont(const SizedFont& font) {
    if (font_ == &font) return;
    painter_.setFont(font.Font);
    font_ = &font;
  }

  void Letters(const Label& label, const SizedFont& font, QPointF at, const SetText& text) {
    if (label.Halo.Alpha != 0) DrawHalo(label, font, at, text);
    const Pen ink{label.Ink, 1, LineStyle::Solid};
    if (!SetPen(ink)) return;
    SetFont(font);
    Put(text, at);
  }

  // A path takes its letters at the screen's resolution; the surface may have another.
  QFont DeviceFont(const QFont& font) const { return QFont(font, painter_.device()); }

  void Draw(const Inset& inset) {
    if (inset.Content.Get() == nullptr) return;
    Page(*inset.Content.Get(), QRectF(At({inset.Place.Left, inset.Place.Top}),
                                      At({inset.Place.Right, inset.Place.Bottom})));
  }

  QPainter& painter_;
  QTransform device_{};
  bool isRaster_ = false;
  bool snaps_ = false;
  double toDevice_ = 1;  // device pixels per logical unit
  int dpi_ = 96;
  double hairline_ = 1;  // logical units

  double scale_ = 1;  // logical units per drawing unit
  double left_ = 0;
  double top_ = 0;
  Point page_{};  // right lower corner, drawing units
  std::optional<Pen> pen_{};
  std::optional<Color> brush_{};
  const SizedFont* font_ = nullptr;
  std::deque<SizedFont> fonts_{};  // few; entries keep their place
};

}  // namespace

struct KeptGround::Kept {
  QImage Image{};    // what there is besides paper
  QPointF Left{};    // its left upper corner in the target
  double Ratio = 0;  // device pixels for one of the target
  QSizeF Target{};
  Color Paper{};
  double Width = 0;
  double Height = 0;
  std::vector<Item> Items{};

  bool Is(const Picture& picture, double ratio, const QSizeF& target) const {
    return ratio == Ratio && target == Target && picture.Paper() == Paper &&
           picture.Width() == Width && picture.Height() == Height &&
           std::ranges::equal(picture.Ground(), Items);
  }
};

namespace {

// The part of an image of paper on which something is drawn, in its pixels.
QRect DrawnPart(const QImage& image, QRgb paper) {
  QRect part;
  for (int y = 0; y < image.height(); ++y) {
    const std::span row(reinterpret_cast<const QRgb*>(image.constScanLine(y)),
                        static_cast<std::size_t>(image.width()));
    const auto isDrawn = [paper](QRgb pixel) { return pixel != paper; };
    const auto first = std::ranges::find_if(row, isDrawn);
    if (first == row.end()) continue;
    const auto last = std::find_if(row.rbegin(), row.rend(), isDrawn);
    const auto left = static_cast<int>(first - row.begin());
    const auto right = static_cast<int>(row.rend() - last) - 1;
    part |= QRect(QPoint(left, y), QPoint(right, y));
  }
  return part;
}

}  // namespace

KeptGround::KeptGround() = default;
KeptGround::~KeptGround() = default;

void Paint(const Picture& picture, QPainter& painter, const QRectF& target, KeptGround* ground) {
  painter.save();
  Painter on(painter);
  const QTransform& device = painter.deviceTransform();
  // Kept pixels stand where the painted ones would only without turning, at whole pixels.
  const auto isWhole = [](double place) { return place == std::floor(place); };
  const bool keeps = ground != nullptr && on.IsRaster() && device.type() <= QTransform::TxScale &&
                     device.m11() == device.m22() && device.m11() > 0 &&
                     isWhole(device.dx() + target.left() * device.m11()) &&
                     isWhole(device.dy() + target.top() * device.m11());
  if (!keeps) {
    on.Page(picture, target);
    painter.restore();
    return;
  }
  const double ratio = device.m11();
  if (ground->kept_ == nullptr || !ground->kept_->Is(picture, ratio, target.size())) {
    const QSize size(static_cast<int>(std::ceil(target.width() * ratio)),
                     static_cast<int>(std::ceil(target.height() * ratio)));
    QImage image(size, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    const QColor paper = ToColor(picture.Paper());
    image.fill(paper);
    {
      QPainter fresh(&image);
      Painter(fresh).Page(picture, QRectF(QPointF(0, 0), target.size()), Painter::Part::Ground);
    }
    const QRect drawn = DrawnPart(image, paper.rgb());
    const std::span<const Item> items = picture.Ground();
    ground->kept_ = std::make_unique<KeptGround::Kept>(
        KeptGround::Kept{drawn.isEmpty() ? QImage() : image.copy(drawn),
                         QPointF(drawn.topLeft()) / ratio,
                         ratio,
                         target.size(),
                         picture.Paper(),
                         picture.Width(),
                         picture.Height(),
                         {items.begin(), items.end()}});
  }
  const KeptGround::Kept& kept = *ground->kept_;
  painter.fillRect(target, ToColor(picture.Paper()));
  if (!kept.Image.isNull()) painter.drawImage(target.topLeft() + kept.Left, kept.Image);
  on.Page(picture, target, Painter::Part::Rest);
  painter.restore();
}

QImage ToImage(const Picture& picture, int widthPx, int heightPx) {
  QImage image(widthPx, heightPx, QImage::Format_RGB32);
  if (image.isNull()) return image;
  image.fill(ToColor(picture.Paper()));
  QPainter painter(&image);
  Paint(picture, painter, QRectF(0, 0, widthPx, heightPx));
  return image;
}

}  // namespace vexa::paint
