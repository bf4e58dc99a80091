// Writes a picture as SVG 1.1 text. Every number goes through the program's own shortest form, so
// the text is the same on every machine.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/numbers.h"
#include "core/utf8.h"
#include "picture/clip.h"
#include "picture/hatch.h"
#include "picture/picture.h"
#include "picture/stroke.h"

namespace vexa {
namespace {

constexpr int kDecimals = 2;  // of a drawing unit

// Height of capitals as a share of the letter size, for the faces named below.
constexpr double kCapHeightSans = 0.716;
constexpr double kCapHeightMono = 0.62;

std::string Number(double value) {
  const double rounded = Rounded(value, kDecimals);
  return Shortest(rounded == 0 ? 0.0 : rounded);  // no "-0"
}

// Bytes of the character that begins a text; 0 when there is none that XML allows.
std::size_t XmlLength(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  const bool isControl = first < 0x20 && first != '\t';
  const bool isNone = text.starts_with("\xEF\xBF\xBE") || text.starts_with("\xEF\xBF\xBF");
  return isControl || isNone ? 0 : Utf8Length(text);
}

std::string Escaped(std::string_view text) {
  std::string escaped;
  escaped.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = XmlLength(text);
    if (length == 0) {
      escaped += kReplacement;
    } else if (text.front() == '&') {
      escaped += "&amp;";
    } else if (text.front() == '<') {
      escaped += "&lt;";
    } else if (text.front() == '>') {
      escaped += "&gt;";
    } else if (text.front() == '"') {
      escaped += "&quot;";
    } else {
      escaped += text.substr(0, length);
    }
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return escaped;
}

std::string Hex(Color ink) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text = "#";
  for (const unsigned part : {ink.Red, ink.Green, ink.Blue}) {
    text += kDigits[part / 16];
    text += kDigits[part % 16];
  }
  return text;
}

class SvgWriter {
 public:
  std::string Document(const Picture& picture, int widthPx, int heightPx) {
    const PageFit fit =
        FitPage(picture.Width(), picture.Height(),
                {0, 0, static_cast<double>(widthPx), static_cast<double>(heightPx)});
    Rect seen{0, 0, picture.Width(), picture.Height()};
    if (fit.Scale > 0) {  // paper on both sides where the proportions differ
      seen = {-fit.Left / fit.Scale, -fit.Top / fit.Scale, (widthPx - fit.Left) / fit.Scale,
              (heightPx - fit.Top) / fit.Scale};
      hairline_ = 1 / fit.Scale;
    }
    Add("<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"", Shortest(widthPx),
        "\" height=\"", Shortest(heightPx), "\" viewBox=\"", Number(seen.Left), " ",
        Number(seen.Top), " ", Number(seen.Width()), " ", Number(seen.Height()),
        "\" xml:space=\"preserve\" stroke-linecap=\"round\" stroke-linejoin=\"round\">\n");
    Page(picture, seen);
    Add("</svg>\n");
    return std::move(text_);
  }

 private:
  template <class... Parts>
  void Add(const Parts&... parts) {
    (text_.append(parts), ...);
  }

  void Page(const Picture& picture, const Rect& paper) {
    Add("<rect class=\"paper\" x=\"", Number(paper.Left), "\" y=\"", Number(paper.Top),
        "\" width=\"", Number(paper.Width()), "\" height=\"", Number(paper.Height()), "\"");
    Paint("fill", picture.Paper());
    Add("/>\n");
    for (const Item& item : picture.Items()) {
      std::visit([&](const auto& shape) { Draw(item.Tag, shape); }, item.Shape);
    }
  }

  void Open(std::string_view element, std::string_view tag) {
    Add("<", element);
    if (!tag.empty()) Add(" class=\"", Escaped(tag), "\"");
  }

  void Paint(std::string_view what, Color ink) {
    if (ink.Alpha == 0) {
      Add(" ", what, "=\"none\"");
      return;
    }
    Add(" ", what, "=\"", Hex(ink), "\"");
    if (ink.Alpha != 255) Add(" ", what, "-opacity=\"", Number(ink.Alpha / 255.0), "\"");
  }

  void Stroke(const Pen& pen) {
    if (pen.Width <= 0 || pen.Ink.Alpha == 0) return;
    const double width = std::max(pen.Width, hairline_);
    Paint("stroke", pen.Ink);
    Add(" stroke-width=\"", Number(width), "\"");
    const DashPattern dashes(pen.Style, width);
    if (dashes.Lengths().empty()) return;
    Add(" stroke-linecap=\"butt\" stroke-dasharray=\"");
    std::string_view separator;
    for (const double length : dashes.Lengths()) {
      Add(separator, Number(length));
      separator = " ";
    }
    Add("\"");
  }

  void Draw(std::string_view tag, const Polyline& line) {
    std::string points;
    std::size_t count = 0;
    for (const Point& at : line.Points) {
      if (!IsFinite(at)) continue;
      if (!points.empty()) points += ' ';
      points += Number(at.X) + "," + Number(at.Y);
      ++count;
    }
    if (count < 2) return;
    Open("polyline", tag);
    Add(" points=\"", points, "\" fill=\"none\"");
    Stroke(line.Stroke);
    Add("/>\n");
  }

  void Draw(std::string_view tag, const Area& area) {
    std::string path;
    for (const std::vector<Point>& ring : area.Rings) {
      std::string_view command = "M";
      for (const Point& at : ring) {
        if (!IsFinite(at)) continue;
        path.append(command).append(Number(at.X)).append(",").append(Number(at.Y));
        command = "L";
      }
      if (command == "L") path += 'Z';
    }
    if (path.empty()) return;
    Open("path", tag);
    Add(" d=\"", path, "\"");
    if (area.Fill.Style == FillStyle::Plain) {
      Paint("fill", area.Fill.Ink);
      if (area.Fill.Ink.Alpha != 0) Add(" fill-rule=\"evenodd\"");
    } else {
      Add(" fill=\"none\"");
    }
    Stroke(area.Stroke);
    Add("/>\n");
    Hatch(tag, area);
  }

  void Hatch(std::string_view tag, const Area& area) {
    if (area.Fill.Ink.Alpha == 0) return;
    const std::vector<HatchLine> lines = HatchLines(area.Rings, area.Fill.Style);
    if (lines.empty()) return;
    Open("path", tag);
    Add(" d=\"");
    for (const HatchLine& line : lines) {
      Add("M", Number(line.From.X), ",", Number(line.From.Y), "L", Number(line.To.X), ",",
          Number(line.To.Y));
    }
    Add("\" fill=\"none\" stroke-linecap=\"butt\"");
    Stroke({area.Fill.Ink, kHatchWidth, LineStyle::Solid});
    Add("/>\n");
  }

  void Draw(std::string_view tag, const Circle& circle) {
    if (!IsFinite(circle.Center) || !(circle.Radius > 0) || !std::isfinite(circle.Radius)) return;
    Open("circle", tag);
    Add(" cx=\"", Number(circle.Center.X), "\" cy=\"", Number(circle.Center.Y), "\" r=\"",
        Number(circle.Radius), "\"");
    Paint("fill", circle.Fill.Ink);
    Stroke(circle.Stroke);
    Add("/>\n");
  }

  void Draw(std::string_view tag, const Label& label) {
    if (label.Text.empty() || !IsFinite(label.At) || !(label.Size > 0)) return;
    // The stroke of a halo lies under the letters in an element of its own: not every viewer
    // knows how to paint the stroke first.
    if (label.Halo.Alpha != 0) Letters(tag, label, true);
    Letters(tag, label, false);
  }

  void Letters(std::string_view tag, const Label& label, bool asHalo) {
    const bool isMono = label.Font == Face::Mono;
    const double capHeight = label.Size * (isMono ? kCapHeightMono : kCapHeightSans);
    const double down = label.Down == AnchorY::Top      ? capHeight
                        : label.Down == AnchorY::Middle ? capHeight / 2
                                                        : 0;
    Open("text", asHalo ? std::string(tag) + " halo" : std::string(tag));
    if (label.Angle == 0) {
      Add(" x=\"", Number(label.At.X), "\" y=\"", Number(label.At.Y + down), "\"");
    } else {
      Add(" transform=\"translate(", Number(label.At.X), " ", Number(label.At.Y), ") rotate(",
          Number(-label.Angle), ")\" y=\"", Number(down), "\"");
    }
    Add(" font-family=\"",
        isMono ? "Courier New, Liberation Mono, monospace" : "Arial, Liberation Sans, sans-serif",
        "\" font-size=\"", Number(label.Size), "\"");
    if (label.Bold) Add(" font-weight=\"bold\"");
    if (label.Across == AnchorX::Center) Add(" text-anchor=\"middle\"");
    if (label.Across == AnchorX::Right) Add(" text-anchor=\"end\"");
    if (asHalo) {
      Add(" aria-hidden=\"true\"");
      Paint("fill", label.Halo);
      Stroke({label.Halo, 2 * kHaloShare * label.Size, LineStyle::Solid});
    } else {
      Paint("fill", label.Ink);
    }
    Add(">", Escaped(label.Text), "</text>\n");
  }

  void Draw(std::string_view tag, const Inset& inset) {
    if (inset.Content.Get() == nullptr) return;
    const Picture& content = *inset.Content.Get();
    const PageFit fit = FitPage(content.Width(), content.Height(), inset.Place);
    if (fit.Scale <= 0) return;
    Open("svg", tag);
    Add(" x=\"", Number(fit.Left), "\" y=\"", Number(fit.Top), "\" width=\"",
        Number(content.Width() * fit.Scale), "\" height=\"", Number(content.Height() * fit.Scale),
        "\" viewBox=\"0 0 ", Number(content.Width()), " ", Number(content.Height()), "\">\n");
    const double outer = hairline_;
    hairline_ /= fit.Scale;
    Page(content, {0, 0, content.Width(), content.Height()});
    hairline_ = outer;
    Add("</svg>\n");
  }

  std::string text_{};
  double hairline_ = 0;  // one pixel in drawing units
};

}  // namespace

std::string ToSvg(const Picture& picture, int widthPx, int heightPx) {
  return SvgWriter().Document(picture, widthPx, heightPx);
}

}  // namespace vexa
