#include "diagram/panel.h"

#include <string>
#include <string_view>
#include <vector>

#include "analysis/analysis.h"
#include "analysis/index_table.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"

namespace vexa::diagram {
namespace {

constexpr double kLineText = 132;
constexpr double kLineStep = 168;
constexpr double kTableText = 108;
constexpr double kIndexText = 100;
constexpr double kIndexColumn = 1020;  // from one column of indices to the next
constexpr double kMargin = 80;
constexpr std::string_view kNoValue = "--";

struct Row {
  std::string Label{};  // ten characters, right-aligned
  std::string Value{};
};

class PanelText {
 public:
  explicit PanelText(const Plot& plot) : plot_(plot) {}

  std::string Press(const analysis::LevelPoint& level) const {
    return level.Exists() ? Mask(level.Press, "###0.0") + " mb" : std::string(kNoValue);
  }
  std::string Height(double height) const {
    if (!HasHeight(height)) return std::string(kNoValue);
    return HeightText(ShownHeight(plot_, height), plot_.Set().ThermoHeight);
  }
  std::string Height(const analysis::LevelPoint& level) const {
    return level.Exists() ? Height(level.Height) : std::string(kNoValue);
  }
  std::string Depth(double meters) const { return HeightText(meters, plot_.Set().ThermoHeight); }
  static std::string Energy(double value) { return Mask(value, "####0") + " J/kg"; }
  std::string Temp(double temp) const {
    if (NotAvailable(temp)) return std::string(kNoValue);
    return plot_.Set().ThermoTemp == TempUnits::Fahrenheit
               ? Mask(FahrenheitFromCelsius(temp), "##0.0") + " F"
               : Mask(temp, "##0.0") + " C";
  }

 private:
  const Plot& plot_;
};

std::vector<Row> ParcelRows(const Plot& plot) {
  const Options& set = plot.Set();
  const analysis::AnalysisResults& results = plot.Results();
  const analysis::ParcelAscent& parcel = results.Chosen();
  const analysis::LiftAnalysis& lift = results.Lifts[static_cast<std::size_t>(results.ChosenLift)];
  const PanelText text(plot);

  std::vector<Row> rows = {
      {" Lift Mode", std::string(Word(set.BaseLevel))},
      {" Lift Type", std::string(Text(results.ChosenLift))},
      {" Temp Base", set.CapeTempBase == TempBase::Virtual ? "Virtual" : "DryBulb"},
      {"       LPL",
       parcel.Start.Exists() ? Mask(parcel.Start.Press, "###0.0") + " mb" : std::string(kNoValue)},
  };
  if (set.CapeDepth != CapeDepthDisplay::LfcLayer) {
    rows.push_back({"CAPE total", PanelText::Energy(parcel.CapeTotal)});
  }
  rows.push_back({"CAPE+ only", PanelText::Energy(parcel.CapePlusOnly)});
  if (set.CapeDepth != CapeDepthDisplay::Total) {
    rows.push_back({"CAPE 0-xkm", PanelText::Energy(parcel.CapeDepth) + " " +
                                      Mask(set.CapeDepthKm, "#0.#") + "km"});
  }
  rows.push_back({" CIN total", PanelText::Energy(parcel.CinTotal)});
  rows.push_back({"CAPE..Hail", PanelText::Energy(parcel.CapeHail)});
  rows.push_back({"   LCL Hgt", text.Height(lift.Forced.Condensation)});
  rows.push_back({"   LFC Hgt", text.Height(lift.Forced.FreeLevel)});
  rows.push_back({" lfcEL Hgt", text.Height(lift.Forced.Equilibrium)});
  rows.push_back({"   CCL Hgt", text.Height(results.ConvectiveCondensation)});
  rows.push_back({" cclEL Hgt", text.Height(lift.Convective.Equilibrium)});
  const bool both = lift.Forced.Condensation.Exists() && lift.Forced.FreeLevel.Exists();
  rows.push_back({"   LFC-LCL",
                  both ? text.Depth(lift.Forced.FreeLevel.Height - lift.Forced.Condensation.Height)
                       : std::string(kNoValue)});
  if (set.MplDisplay) {
    rows.push_back({"   MPL Prs", text.Press(parcel.MaximumParcel)});
    rows.push_back({"   MPL Hgt", text.Height(parcel.MaximumParcel)});
  }
  rows.push_back({"     TConv", text.Temp(results.ConvectiveTemp)});
  rows.push_back({"  TROP Lvl", results.Tropopauses.empty()
                                    ? std::string(kNoValue)
                                    : text.Height(results.Tropopauses.front())});
  rows.push_back({"  FRZG Lvl", results.FreezingLevels.empty()
                                    ? std::string(kNoValue)
                                    : text.Height(results.FreezingLevels.front())});
  rows.push_back({"  Stn Elev", plot.Sounding().ElevUnknown
                                    ? std::string(kNoValue)
                                    : HeightText(plot.Sounding().ElevM, set.ThermoHeight)});
  return rows;
}

// A table of the three lifts: a line per quantity, a column per lift.
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
  return {
      PadRight("", 8) + PadLeft("Surface", 8) + PadLeft("MeanLyr", 8) + PadLeft("MostUn", 8),
      line("CAPE", [](const Ascent& a) { return Mask(a.CapeTotal, "####0"); }),
      line("CIN", [](const Ascent& a) { return Mask(a.CinTotal, "####0"); }),
      line("LCL mb", [&](const Ascent& a) { return press(a.Condensation); }),
      line("LFC mb", [&](const Ascent& a) { return press(a.FreeLevel); }),
      line("EL  mb", [&](const Ascent& a) { return press(a.Equilibrium); }),
  };
}

// The indices of the groups that the options show, two to a line.
std::vector<const analysis::IndexValue*> PanelIndices(const Plot& plot) {
  struct Group {
    bool Options::*Shown;
    std::vector<std::string_view> Labels;
  };
  const Group groups[] = {
      {&Options::PanelMain, {"KI", "TT", "VT", "CT", "LI", "SI", "SWEAT"}},
      {&Options::PanelEurope, {"KO", "JI", "TI", "Boyden", "S{TT}", "TQ Index"}},
      {&Options::PanelCape, {"BRN", "EHI 0-xkm", "VGP 0-xkm"}},
      {&Options::PanelFog, {"Fog FSI", "Fog Threat", "Fog Point"}},
  };
  std::vector<const analysis::IndexValue*> shown;
  for (const Group& group : groups) {
    if (!(plot.Set().*group.Shown)) continue;
    for (const std::string_view label : group.Labels) {
      for (const analysis::IndexValue& index : plot.Results().Indices) {
        if (Trim(index.Row->Label) == label) shown.push_back(&index);
      }
    }
  }
  return shown;
}

std::string PositionText(const SoundingRecord& sounding) {
  if (sounding.LatHemi.empty() && sounding.LonHemi.empty()) return {};
  const auto part = [](double degrees, std::string_view hemisphere) {
    return Mask(degrees < 0 ? -degrees : degrees, "##0.00") + std::string(hemisphere);
  };
  return part(sounding.LatSigned, sounding.LatHemi) + "  " +
         part(sounding.LonSigned, sounding.LonHemi);
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

}  // namespace

void DrawPanel(Plot& plot) {
  double top = kPanel.Top;
  if (plot.In.Hodograph != nullptr && plot.Set().PlotHodo) {
    const Rect place{kPanel.Left, top, kPanel.Right, top + kPanel.Width()};
    plot.Page.Add("hodograph", Inset{.Place = place, .Content = {*plot.In.Hodograph}});
    top = place.Bottom + 100;
  }
  if (!plot.Set().AnalysesBox || !plot.Set().AutoAnalyses) return;
  if (plot.Results().Levels.Count() < 2) return;

  const std::vector<Row> rows = ParcelRows(plot);
  const std::vector<std::string> table = LiftTable(plot);
  const std::vector<const analysis::IndexValue*> indices = PanelIndices(plot);
  const std::size_t indexLines = (indices.size() + 1) / 2;
  const std::string position = PositionText(plot.Sounding());
  const double height = kLineStep * (static_cast<double>(rows.size() + table.size() + indexLines) +
                                     (position.empty() ? 1 : 2) + (indices.empty() ? 0.0 : 0.5)) +
                        kMargin;
  const Rect box{kPanel.Left, top, kPanel.Right, top + height};
  plot.Page.Add("analysis box", Area{.Rings = {{{box.Left, box.Top},
                                                {box.Right, box.Top},
                                                {box.Right, box.Bottom},
                                                {box.Left, box.Bottom}}},
                                     .Fill = plot.Inks.Panel,
                                     .Stroke = plot.Inks.PanelFrame});
  double y = top + kMargin + kLineStep / 2;
  const double x = kPanel.Left + kMargin;
  if (!position.empty()) {
    DrawMono(plot, "position", {x, y}, position, kLineText, plot.Inks.PanelHead, true);
    y += kLineStep;
  }
  for (const Row& row : rows) {
    DrawMono(plot, "analysis label", {x, y}, row.Label, kLineText, plot.Inks.Faint);
    DrawMono(plot, "analysis value", {x + 0.6 * kLineText * 11, y}, row.Value, kLineText,
             plot.Inks.Ink);
    y += kLineStep;
  }
  y += kLineStep / 2;
  for (const std::string& line : table) {
    DrawMono(plot, "lift table", {x, y}, line, kTableText, plot.Inks.Ink, &line == &table.front());
    y += kLineStep;
  }
  y += kLineStep / 2;
  for (std::size_t i = 0; i < indices.size(); ++i) {
    const analysis::IndexValue& index = *indices[i];
    const analysis::IndexRow& row = *index.Row;
    const double left = x + (i % 2 == 0 ? 0 : kIndexColumn);
    const double letter = 0.6 * kIndexText;
    DrawMono(plot, "index label", {left, y}, std::string(row.Label), kIndexText, plot.Inks.Faint);
    DrawMono(plot, "index value", {left + 11 * letter, y},
             index.Exists() ? Mask(index.Value, row.Mask) : std::string(kNoValue), kIndexText,
             plot.Inks.Ink);
    plot.Page.AddHotSpot({{left, y - kLineStep / 2, left + 17 * letter, y + kLineStep / 2},
                          "index",
                          std::string(row.Name) + (index.Exists() ? " = " : ": ") +
                              (index.Exists() ? std::string(row.Formula) : index.Reason)});
    if (i % 2 == 1) y += kLineStep;
  }
}

}  // namespace vexa::diagram
