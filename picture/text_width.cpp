#include "picture/text_width.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "picture/surface.h"

namespace vexa {
namespace {

// Thousandths of the letter size, from the blank to the tilde: Adobe's font metrics for Helvetica
// and Helvetica-Bold, with the upright quote and the hyphen.
constexpr std::array<std::uint16_t, 95> kPlain = {
    278, 278, 355, 556, 556, 889, 667, 191, 333, 333, 389, 584, 278, 333,  278, 278, 556, 556, 556,
    556, 556, 556, 556, 556, 556, 556, 278, 278, 584, 584, 584, 556, 1015, 667, 667, 722, 722, 667,
    611, 778, 722, 278, 500, 667, 556, 833, 722, 778, 667, 778, 722, 667,  611, 722, 667, 944, 667,
    667, 611, 278, 278, 278, 469, 556, 333, 556, 556, 500, 556, 556, 278,  556, 556, 222, 222, 500,
    222, 833, 556, 556, 556, 556, 333, 500, 278, 556, 500, 722, 500, 500,  500, 334, 260, 334, 584};
constexpr std::array<std::uint16_t, 95> kBold = {
    278, 333, 474, 556, 556, 889, 722, 238, 333, 333, 389, 584, 278, 333, 278, 278, 556, 556, 556,
    556, 556, 556, 556, 556, 556, 556, 333, 333, 584, 584, 584, 611, 975, 722, 722, 722, 722, 667,
    611, 778, 722, 278, 556, 722, 611, 833, 722, 778, 667, 778, 722, 667, 611, 722, 667, 944, 667,
    667, 611, 333, 278, 333, 584, 556, 333, 556, 611, 556, 611, 556, 333, 611, 611, 278, 278, 556,
    278, 889, 611, 611, 611, 611, 389, 556, 333, 611, 556, 778, 556, 556, 500, 389, 280, 389, 584};
constexpr double kOther = 556;
constexpr double kFixed = 602;  // the widest of the fixed faces

bool GoesOn(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

}  // namespace

double TextWidth(std::string_view text, double size, bool bold, Face face) {
  const auto& widths = bold ? kBold : kPlain;
  double width = 0;
  for (const char byte : text) {
    if (GoesOn(byte)) continue;
    const auto code = static_cast<unsigned char>(byte);
    const bool isKnown = code >= ' ' && code <= '~';
    if (face == Face::Mono) {
      width += kFixed;
    } else {
      width += isKnown ? widths[static_cast<std::size_t>(code - ' ')] : kOther;
    }
  }
  return width * size / 1000;
}

std::string Elided(std::string_view text, double size, double room, bool bold) {
  if (TextWidth(text, size, bold) <= room) return std::string(text);
  constexpr std::string_view kEllipsis = "...";
  std::size_t end = text.size();
  while (end > 0) {
    --end;
    while (end > 0 && GoesOn(text[end])) --end;
    std::string_view kept = text.substr(0, end);
    while (!kept.empty() && kept.back() == ' ') kept.remove_suffix(1);
    if (kept.empty()) break;
    std::string cut = std::string(kept) + std::string(kEllipsis);
    if (TextWidth(cut, size, bold) <= room) return cut;
  }
  return {};
}

FittedTitle FitTitle(std::string_view title, double room) {
  for (const Type type : {Type::Title, Type::Value}) {
    const double size = LetterSize(type);
    if (TextWidth(title, size, true) <= room) return {std::string(title), size};
  }
  const double size = LetterSize(Type::Value);
  const std::size_t date = title.rfind("  ");
  if (date != std::string_view::npos) {
    const std::string_view behind = title.substr(date);
    const std::string station =
        Elided(title.substr(0, date), size, room - TextWidth(behind, size, true), true);
    if (!station.empty()) return {station + std::string(behind), size};
  }
  return {Elided(title, size, room, true), size};
}

std::vector<std::string> Wrapped(std::string_view text, double size, double room) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    const std::string word(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (word.empty()) continue;
    const std::string longer = lines.empty() ? word : lines.back() + ' ' + word;
    if (!lines.empty() && TextWidth(longer, size) <= room) {
      lines.back() = longer;
    } else {
      lines.push_back(Elided(word, size, room));
    }
  }
  return lines;
}

}  // namespace vexa
