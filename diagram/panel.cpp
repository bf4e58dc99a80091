#include "diagram/panel.h"

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/analysis.h"
#include "analysis/index_table.h"
#include "analysis/shown_units.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "diagram/mapping.h"
#include "picture/decimal_point.h"

namespace vexa::diagram {
namespace {

constexpr double kText = LetterSize(Type::Note);
constexpr double kStep = 15 * kUnitsPerPixel;
constexpr double kMargin = kBoxPadding;
constexpr std::string_view kNoValue = "--";
constexpr double kColumnGap = kStep / 2;
constexpr double kValueAt = 10.8;  // letters, behind a label of ten

// Rows of the chosen parcel's column, in their order.
constexpr std::string_view kParcelLabels[] = {
    "Lift Mode", "Lift Type",  "Temp Base", "LPL",     "CAPE total", "CAPE+ only", "CAPE 0-xkm",
    "CIN total", "CAPE..Hail", "LCL Hgt",   "LFC Hgt", "lfcEL Hgt",  "CCL Hgt",    "cclEL Hgt",
    "LFC-LCL",   "MPL Prs",    "MPL Hgt",   "TConv",   "TROP Lvl",   "FRZG Lvl",   "Stn Elev"};

using Labels = std::vector<std::string_view>;

// The groups of the first page.
struct Group {
  bool ViewSettings::*Shown;
  Labels Rows;
};
const Group kGroups[] = {
    {&ViewSettings::PanelMain, {"KI", "TT", "VT", "CT", "LI", "SI", "SWEAT", "WBZ Hgt"}},
    {&ViewSettings::PanelEurope, {"KO", "JI", "TI", "Boyden", "S{TT}", "TQ Index"}},
    {&ViewSettings::PanelCape,
     {"BRN", "BRN Shear", "EHI 0-xkm", "VGP 0-xkm", "NCAPE", "DCAPE 6km"}},
    {&ViewSettings::PanelFog, {"Fog FSI", "Fog Threat", "Fog Point"}},
};

// The further pages of the classic panel, chosen by number.
const Labels kPages[] = {
    {"KI", "TT", "VT", "CT", "LI", "SI", "KO", "JI", "TI", "S{TT}", "Boyden", "TQ Index", "DCI",
     "CAP", "700-500 LR", "Delta ePT"},
    {"SWEAT", "BRN", "BRN Shear", "NCAPE", "MVV", "Craven", "Supercell", "s-rH 0-1km", "s-rH 0-2km",
     "s-rH 0-3km", "EHI 0-xkm", "VGP 0-xkm", "Shear xKm", "MBE Vector"},
    {"DCAPE 6km", "T1Gust", "T2Gust", "WindEX", "DownRush-T", "WMSI", "MDPI", "GOES HMI",
     "Delta ePT", "Hail", "CAPE..Hail", "WBZ Hgt"},
    {"Water", "Mean RH", "Mean DPD", "WCD", "Fog FSI", "Fog Threat", "Fog Point", "Surface Td",
     "850mb Td"},
    {"Wind-Chill", "THI", "Haines", "Mixing Hgt", "Vent Index", "DensityAlt"},
    {"200mb Wind", "500mb Wind", "850mb Wind", "TROP Lvl", "FRZG Lvl", "Stn Elev", "LFC Prs",
     "LFC-LCL", "MPL Prs", "MPL Hgt"},
};

bool IsSwitchedOff(std::string_view label, const DisplaySettings& set) {
  if (label == "CAPE total") return set.CapeDepth == CapeDepthDisplay::LfcLayer;
  if (label == "CAPE 0-xkm") return set.CapeDepth == CapeDepthDisplay::Total;
  return (label == "MPL Prs" || label == "MPL Hgt") && !set.MplDisplay;
}

// The values of labels, in their order; what is switched off or unknown is left out.
std::vector<const analysis::IndexValue*> Pick(const Plot& plot,
                                              std::span<const std::string_view> labels) {
  std::vector<const analysis::IndexValue*> picked;
  for (const std::string_view label : labels) {
    const analysis::IndexRow* row = analysis::FindIndex(label);
    if (row == nullptr || IsSwitchedOff(label, plot.Set())) continue;
    const analysis::IndexValue* value = analysis::IndexOf(plot.Results(), *row);
    if (value != nullptr) picked.push_back(value);
  }
  return picked;
}

analysis::ShownIndex Show(const Plot& plot, const analysis::IndexValue& index) {
  return analysis::ShowIndex(index, analysis::UnitsOf(plot.Set(), plot.Sounding().ElevM));
}

std::string ValueText(const Plot& plot, const analysis::IndexValue& index) {
  const DisplaySettings& set = plot.Set();
  std::string text = Show(plot, index).Text();
  const std::string_view label = Trim(index.Row->Label);
  const auto depth = [&](double km) { text += " " + Mask(km, "#0.#") + "km"; };
  if (label == "CAPE 0-xkm") depth(set.CapeDepthKm);
  if (label == "EHI 0-xkm") depth(set.EhiDepthKm);
  return text;
}

// A table of the three lifts: a line per quantity, a column per lift; a storm motion that was
// entered stands beneath it.
std::vector<std::string> LiftTable(const Plot& plot) {
  using analysis::LiftType;
  constexpr LiftType kOrder[] = {LiftType::Surface, LiftType::MeanLayer, LiftType::MostUnstable};
  const auto line = [&](std::string_view name, auto&& value) {
    std::string text = PadRight(name, 8);
    for (const LiftType type : kOrder) text += PadLeft(value(plot.Results().Ascent(type)), 8);
    return text;
  };
  const auto press = [](const analysis::LevelPoint& level) {
    return level.Exists() ? Mask(level.Press, "###0") : std::string(kNoValue);
  };
  using Ascent = analysis::ParcelAscent;
  // The columns are narrow: an EL above 251 hPa is at a lower pressure than that.
  const auto equilibrium = [&press](const Ascent& ascent) {
    return (ascent.IsCut ? "<" : "") + press(ascent.Equilibrium);
  };
  const std::string unit(Trim(PressureUnit(plot)));
  std::vector<std::string> lines = {
      PadRight("", 8) + PadLeft("Surface", 8) + PadLeft("MeanLyr", 8) + PadLeft("MostUn", 8),
      line("CAPE", [&](const Ascent& a) { return analysis::EnergyText(a, &Ascent::CapeTotal); }),
      line("CIN", [&](const Ascent& a) { return analysis::EnergyText(a, &Ascent::CinTotal); }),
      line("LCL " + unit, [&](const Ascent& a) { return press(a.Condensation); }),
      line("LFC " + unit, [&](const Ascent& a) { return press(a.FreeLevel); }),
      line("EL  " + unit, equilibrium),
  };
  // EHI and helicity cannot be judged without knowing that somebody entered the motion.
  const analysis::StormMotionResults& storm = plot.Results().Storm;
  if (storm.ChosenIsManual && storm.Chosen()) {
    const analysis::ShownUnits units(plot.Set(), plot.Set().Heights, kNone);
    lines.push_back("Storm motion manual " + units.Motion(storm.Chosen()->Motion));
  }
  return lines;
}

// The indices that the options ask for: the user's own list, the chosen groups, or a page.
std::vector<const analysis::IndexValue*> PanelIndices(const Plot& plot) {
  const DisplaySettings& set = plot.Set();
  Labels labels;
  if (set.Thermo == ThermoDisplay::Custom) {
    std::string_view rest = set.CustomPanel;
    while (!rest.empty()) {
      const std::size_t comma = std::min(rest.find(','), rest.size());
      labels.push_back(Trim(rest.substr(0, comma)));
      rest.remove_prefix(std::min(comma + 1, rest.size()));
    }
  } else if (set.ThermoNum > 1) {
    const auto page = static_cast<std::size_t>(set.ThermoNum) - 2;
    if (page < std::size(kPages)) labels = kPages[page];
  } else {
    for (const Group& group : kGroups) {
      if (!(set.*group.Shown)) continue;
      labels.insert(labels.end(), group.Rows.begin(), group.Rows.end());
    }
  }
  return Pick(plot, labels);
}

void DrawMono(Plot& plot, std::string_view tag, Point at, std::string text, double size, Color ink,
              bool bold = false) {
  plot.Page.Add(tag, Label{.At = at,
                           .Text = std::move(text),
                           .Size = size,
                           .Font = Face::Mono,
                           .Ink = ink,
                           .Bold = bold});
}

// Two columns leave no room for units; the explanation has them. What a height counts from must be
// said, and then its unit too.
std::string ShortText(const analysis::ShownIndex& shown) {
  if (shown.Unit.ends_with(" AGL")) return shown.Text();
  return std::string(shown.Bound) + shown.Number;
}

/// An index in the panel's two columns.
struct PanelCell {
  const analysis::IndexValue* Index = nullptr;
  std::string Text{};
  std::size_t Line = 0;
  bool IsRight = false;
  bool IsAlone = false;    // in its line
  std::size_t Indent = 0;  // letters, to the points of the numbers above and below
};

std::size_t LettersBefore(std::string_view text) {
  return text == kNoValue ? text.size() : PointOf(text).value_or(0);
}

// Numbers stand with their points under one another, as far as a cell has room for it.
void Align(std::vector<PanelCell>& cells, std::size_t mostLetters) {
  for (const bool isRight : {false, true}) {
    std::size_t before = 0;
    for (const PanelCell& cell : cells) {
      if (cell.IsRight == isRight) before = std::max(before, LettersBefore(cell.Text));
    }
    for (PanelCell& cell : cells) {
      const std::size_t own = LettersBefore(cell.Text);
      if (cell.IsRight != isRight || own == 0 || cell.Text.size() >= mostLetters) continue;
      cell.Indent = std::min(before - own, mostLetters - cell.Text.size());
    }
  }
}

// Side by side, but what is too long for a column has a line of its own.
std::vector<PanelCell> ArrangeIndices(const Plot& plot) {
  constexpr std::size_t kMostLetters = 6;
  std::vector<PanelCell> cells;
  std::size_t line = 0;
  bool isRight = false;
  for (const analysis::IndexValue* index : PanelIndices(plot)) {
    PanelCell cell{.Index = index, .Text = ShortText(Show(plot, *index))};
    // Two columns leave no room for a percentile either.
    const bool isRanked = plot.In.Spread != nullptr && plot.In.Spread->Find(*index->Row) != nullptr;
    const bool isLong = isRanked || cell.Text.size() > kMostLetters;
    if (isLong && isRight) {
      ++line;
      isRight = false;
    }
    cell.Line = line;
    cell.IsRight = isRight;
    cell.IsAlone = isLong;
    if (isRight || isLong) ++line;
    isRight = !isRight && !isLong;
    cells.push_back(std::move(cell));
  }
  Align(cells, kMostLetters + 2);
  return cells;
}

// At the right end of its column, how usual a value is here: the percentile. Empty where nothing is
// known of it or the value leaves no room.
void DrawRank(Plot& plot, const analysis::IndexValue& index, double used, Point at) {
  const UsualRank* rank = plot.In.Spread == nullptr ? nullptr : plot.In.Spread->Find(*index.Row);
  if (rank == nullptr) return;
  const std::string text = Shortest(rank->Percentile) + "%";
  constexpr double kLetter = 0.6 * kText;
  if (used + kLetter * static_cast<double>(text.size() + 1) > at.X) return;
  plot.Page.Add("rank", Label{.At = at,
                              .Text = text,
                              .Across = AnchorX::Right,
                              .Size = kText,
                              .Font = Face::Mono,
                              .Ink = plot.Inks.PanelHead});
}

// A label and its value; the pointer over it asks for its explanation by the label.
void DrawIndex(Plot& plot, const analysis::IndexValue& index, Point at, double size, double step,
               const std::string& value, std::string_view tag, std::size_t indent, double right) {
  const double letter = 0.6 * size;
  DrawMono(plot, std::string(tag) + " label", at, std::string(index.Row->Label), size,
           plot.Inks.Faint);
  const double valueAt = letter * (kValueAt + static_cast<double>(indent));
  DrawMono(plot, std::string(tag) + " value", {at.X + valueAt, at.Y}, value, size, plot.Inks.Ink);
  const double width = valueAt + letter * static_cast<double>(value.size());
  DrawRank(plot, index, at.X + width, {right, at.Y});
  plot.Page.AddHotSpot({{at.X, at.Y - step / 2, at.X + width, at.Y + step / 2},
                        std::string(kIndexSpot),
                        std::string(Trim(index.Row->Label))});
}

// The parcel's rows one under the other.
std::vector<PanelCell> ParcelRows(const Plot& plot) {
  constexpr std::size_t kMostLetters = 12;
  std::vector<PanelCell> cells;
  for (const analysis::IndexValue* row : Pick(plot, kParcelLabels)) {
    cells.push_back({.Index = row, .Text = ValueText(plot, *row), .Line = cells.size()});
  }
  Align(cells, kMostLetters);
  return cells;
}

// The parcel's rows stand side by side where the widest leaves room for it.
bool FitsTwice(const std::vector<PanelCell>& rows, double width) {
  std::size_t letters = 0;
  for (const PanelCell& row : rows) letters = std::max(letters, row.Indent + row.Text.size());
  const double wanted = 0.6 * kText * (kValueAt + static_cast<double>(letters) + 1);
  return 2 * wanted <= width - 2 * kMargin;
}

double LinesOf(std::size_t rows, std::size_t table, const std::vector<PanelCell>& indices,
               bool isWide) {
  const std::size_t indexLines = indices.empty() ? 0 : indices.back().Line + 1;
  return static_cast<double>((isWide ? (rows + 1) / 2 : rows) + table + indexLines) + 1;
}

}  // namespace

bool HasAnalysisBox(const PlotInput& input) {
  return input.Set.AnalysesBox && input.Set.AutoAnalyses && input.Results.Levels.Count() >= 2;
}

std::string PositionText(const SoundingRecord& sounding) {
  if (sounding.LatHemi.empty() && sounding.LonHemi.empty()) return {};
  const auto part = [](double degrees, std::string_view hemisphere) {
    return Mask(degrees < 0 ? -degrees : degrees, "##0.00") + std::string(hemisphere);
  };
  return part(sounding.LatSigned, sounding.LatHemi) + "  " +
         part(sounding.LonSigned, sounding.LonHemi);
}

double AnalysisBoxHeight(const Plot& plot, double width) {
  const std::vector<PanelCell> rows = ParcelRows(plot);
  const double lines =
      LinesOf(rows.size(), LiftTable(plot).size(), ArrangeIndices(plot), FitsTwice(rows, width));
  return lines * kStep + 2 * kMargin;
}

void InfoBoxx(Plot& plot) {
  const Rect* region = plot.Where.Find("analysis");
  if (region == nullptr || !HasAnalysisBox(plot.In)) return;
  const std::vector<PanelCell> rows = ParcelRows(plot);
  const std::vector<std::string> table = LiftTable(plot);
  const std::vector<PanelCell> indices = ArrangeIndices(plot);
  plot.Page.Add("analysis box", Area{.Rings = {{{region->Left, region->Top},
                                                {region->Right, region->Top},
                                                {region->Right, region->Bottom},
                                                {region->Left, region->Bottom}}},
                                     .Fill = plot.Inks.Panel,
                                     .Stroke = plot.Inks.PanelFrame});
  const double x = region->Left + kMargin;
  double last = region->Bottom - kMargin - kStep / 2;
  const bool isWide = FitsTwice(rows, region->Width());
  const double lines = LinesOf(rows.size(), table.size(), indices, isWide);
  if (lines * kStep > region->Height() - 2 * kMargin) {
    DrawText(plot.Page, "more", {region->Right - kMargin, last}, "more: F4", plot.Inks.Faint, kText,
             AnchorX::Right);
    last -= kStep;
  }
  const double column = (region->Width() - 2 * kMargin) / 2;
  const double top = region->Top + kMargin + kStep / 2;
  const std::size_t perColumn = std::max<std::size_t>(1, (rows.size() + 1) / (isWide ? 2 : 1));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const Point at{x + static_cast<double>(i / perColumn) * column,
                   top + static_cast<double>(i % perColumn) * kStep};
    if (at.Y > last) break;
    DrawIndex(plot, *rows[i].Index, at, kText, kStep, rows[i].Text, "analysis", rows[i].Indent,
              isWide ? at.X + column - kColumnGap : region->Right - kMargin);
  }
  double y = top + (static_cast<double>(std::min(rows.size(), perColumn)) + 0.5) * kStep;
  for (const std::string& line : table) {
    if (y > last) return;
    DrawMono(plot, "lift table", {x, y}, line, kText, plot.Inks.Ink, &line == &table.front());
    y += kStep;
  }
  y += kStep / 2;
  for (const PanelCell& cell : indices) {
    const Point at{x + (cell.IsRight ? column : 0), y + kStep * static_cast<double>(cell.Line)};
    if (at.Y > last) return;
    DrawIndex(plot, *cell.Index, at, kText, kStep, cell.Text, "index", cell.Indent,
              cell.IsAlone ? region->Right - kMargin : at.X + column - kColumnGap);
  }
}

}  // namespace vexa::diagram
