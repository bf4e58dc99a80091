#include <algorithm>
#include <cmath>
#include <QPainter>
#include <QPainterPath>
#include <utility>

#include "output/paint/paint.h"
#include "output/paint/painter.h"
#include "picture/clip.h"
#include "picture/stroke.h"

namespace vexa::paint {
namespace {

constexpr double kMostCachedPx = 64;  // higher letters are drawn as outlines on a screen too

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

// The whole pixels that the toolkit makes of points on a screen; one that did otherwise would have
// made another size of the kept font too.
double ScreenPixels(const SizedFont& font) {
  const double pixels = font.Font.pointSizeF() * font.Dpi / kPointsPerInch;
  return qRound(std::floor(pixels * 100 + 0.5) / 100);
}

}  // namespace

QFont Painter::DeviceFont(const QFont& font) const {
  return QFont(font, painter_.device());
}

// Without the fonts that would stand in for letters that it lacks: to find out which these are
// takes longer than all letters of a page.
QRawFont Painter::AloneOnScreen(QFont font) const {
  font.setStyleStrategy(QFont::NoFontMerging);
  return QRawFont::fromFont(DeviceFont(font));
}

// Another size of a face that is there; not valid where none is. Its letters are drawn anew, which
// only pays where they are kept.
QRawFont Painter::OfKeptFace(const SizedFont& wanted) const {
  const auto has = [&wanted](const SizedFont& font) {
    return font.Kind == wanted.Kind && font.Bold == wanted.Bold && font.Letters.isValid() &&
           font.Letters.pixelSize() == ScreenPixels(font);
  };
  const auto found = std::ranges::find_if(fonts_.Fonts, has);
  if (!keepsFonts_ || found == fonts_.Fonts.end()) return {};
  QRawFont letters = found->Letters;
  letters.setPixelSize(ScreenPixels(wanted));
  return letters;
}

const SizedFont& Painter::FontFor(const Label& label) {
  const double size = label.Size * page_.Scale;
  for (const SizedFont& font : fonts_.Fonts) {
    const bool isSame = font.Kind == label.Font && font.Bold == label.Bold && font.Size == size;
    if (isSame && font.Dpi == dpi_) return font;
  }
  QFont font;
  if (label.Font == Face::Mono) {
    font.setFamilies({QStringLiteral("Courier New"), QStringLiteral("Liberation Mono"),
                      QStringLiteral("monospace")});
    font.setStyleHint(QFont::Monospace);
  } else {
    font.setFamilies(
        {QStringLiteral("Arial"), QStringLiteral("Liberation Sans"), QStringLiteral("sans-serif")});
    font.setStyleHint(QFont::SansSerif);
  }
  // Points can be fractions where pixels cannot.
  font.setPointSizeF(std::max(0.5, size * kPointsPerInch / dpi_));
  font.setBold(label.Bold);
  font.setHintingPreference(QFont::PreferNoHinting);
  font.setKerning(false);  // as texts are measured (picture/text_width.h)
  const QFontMetricsF metrics(font, painter_.device());
  SizedFont made{label.Font, label.Bold, size, dpi_, font, metrics};
  if (isRaster_) made.Letters = OfKeptFace(made);
  if (isRaster_ && !made.Letters.isValid()) made.Letters = AloneOnScreen(font);
  made.CapHeight = made.Letters.isValid() ? made.Letters.capHeight() : metrics.capHeight();
  const bool asOutlines = !isRaster_ || size * toDevice_ > kMostCachedPx;
  if (asOutlines) ForgetFraction(DeviceFont(font));
  return fonts_.Fonts.emplace_back(std::move(made));
}

// What a text engine works out for every script is half the time of a page; plain letters need
// none of it.
SetText Painter::Set(const SizedFont& font, std::string_view utf8) const {
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

void Painter::Put(const SetText& text, QPointF at) {
  if (text.Letters) {
    painter_.drawGlyphRun(at, *text.Letters);
  } else {
    painter_.drawText(at, text.Text);
  }
}

void Painter::Draw(const Label& label) {
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
void Painter::DrawHalo(const Label& label, const SizedFont& font, QPointF at, const SetText& text) {
  const double radius = kHaloShare * font.Size;
  if (!isRaster_) {
    QPainterPath outline;
    outline.addText(at, DeviceFont(font.Font), text.Text);
    painter_.strokePath(
        outline, QPen(ToColor(label.Halo), 2 * radius, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
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

void Painter::SetFont(const SizedFont& font) {
  if (font_ == &font) return;
  painter_.setFont(font.Font);
  font_ = &font;
}

void Painter::Letters(const Label& label, const SizedFont& font, QPointF at, const SetText& text) {
  if (label.Halo.Alpha != 0) DrawHalo(label, font, at, text);
  const Pen ink{label.Ink, 1, LineStyle::Solid};
  if (!SetPen(ink)) return;
  SetFont(font);
  Put(text, at);
}

}  // namespace vexa::paint
