#include "display/side_boxes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

#include "analysis/index_table.h"
#include "analysis/interpolate.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"
#include "display/weather.h"

namespace vexa::display {
namespace {

using analysis::LevelPoint;
using analysis::LiftType;
using analysis::ParcelAscent;

constexpr std::string_view kAllIndices = "F4";
constexpr std::string_view kLayerDisplay = "Layer Analyzer";

/// A parcel's column.
struct ParcelColumn {
  std::string_view Caption;
  const ParcelAscent& (*Of)(const analysis::AnalysisResults& results);
};

template <LiftType kType>
const ParcelAscent& Forced(const analysis::AnalysisResults& results) {
  return results.Forced[static_cast<std::size_t>(kType)];
}

// The air of the heated ground, free from the CCL on.
const ParcelAscent& Heated(const analysis::AnalysisResults& results) {
  return results.Convective;
}

constexpr ParcelColumn kParcels[] = {{"Surface", Forced<LiftType::Surface>},
                                     {"Mixed layer", Forced<LiftType::MeanLayer>},
                                     {"Most unst.", Forced<LiftType::MostUnstable>},
                                     {"Heated", Heated}};

using Ascents = std::array<const ParcelAscent*, std::size(kParcels)>;

// A row with a value of each parcel.
template <class Value>
SheetRow ParcelRow(std::string label, const Ascents& ascents, std::string unit, int rank,
                   const Value& value) {
  SheetRow row{.Label = std::move(label), .Note = std::move(unit), .Rank = rank};
  for (std::size_t i = 0; i < ascents.size(); ++i) {
    SheetValue cell = value(*ascents[i]);
    if (i == 0) {
      row.Value = std::move(cell.Text);
      row.Step = cell.Step;
    } else {
      row.More.push_back(std::move(cell));
    }
  }
  return row;
}

SheetBlock ParcelBlock(const Shown& shown) {
  const Texts texts(shown);
  SheetBlock block{.Heading = "Parcels", .Elsewhere = std::string(kAllIndices)};
  Ascents ascents{};
  for (std::size_t i = 0; i < ascents.size(); ++i) {
    block.Columns.emplace_back(kParcels[i].Caption);
    ascents[i] = &kParcels[i].Of(shown.Results);
  }
  const auto energy = [&](double ParcelAscent::*which, std::string_view limits) {
    return [&shown, which, limits](const ParcelAscent& ascent) -> SheetValue {
      if (ascent.ParcelTemps.empty()) return {std::string(kNoValue)};
      return {analysis::EnergyText(ascent, which), StressOf(shown, limits, ascent.*which)};
    };
  };
  const auto height = [&texts](LevelPoint ParcelAscent::*which) {
    return [&texts, which](const ParcelAscent& ascent) -> SheetValue {
      const LevelPoint& level = ascent.*which;
      const bool isBound = which == &ParcelAscent::Equilibrium && ascent.IsCut && level.Exists();
      return {(isBound ? ">" : "") + texts.HeightNumber(level.Height)};
    };
  };
  const std::string unit = texts.HeightUnit();
  block.Rows.push_back(
      ParcelRow("CAPE", ascents, "J/kg", 0, energy(&ParcelAscent::CapeTotal, "CAPE total")));
  block.Rows.push_back(ParcelRow("   0-" + Shortest(shown.Set.CapeDepthKm) + " km", ascents, "J/kg",
                                 5, energy(&ParcelAscent::CapeDepth, "CAPE 0-xkm")));
  block.Rows.push_back(ParcelRow("CIN", ascents, "J/kg", 1, energy(&ParcelAscent::CinTotal, "")));
  block.Rows.push_back(ParcelRow("LCL", ascents, unit, 2, height(&ParcelAscent::Condensation)));
  block.Rows.push_back(ParcelRow("LFC", ascents, unit, 3, height(&ParcelAscent::FreeLevel)));
  block.Rows.push_back(ParcelRow("EL", ascents, unit, 4, height(&ParcelAscent::Equilibrium)));
  return block;
}

SheetBlock StormBlock(const Shown& shown) {
  const Texts texts(shown);
  const analysis::StormMotionResults& storm = shown.Results.Storm;
  SheetBlock block{.Heading = "Storm motion and shear",
                   .Columns = {"0-1 km", "0-3 km", "0-6 km", "Effective"},
                   .Elsewhere = "Hodograph"};
  const auto motion = [&](std::string label, const std::optional<analysis::Mover>& mover,
                          bool isRight) {
    const bool isChosen = isRight == storm.RightIsChosen;
    return SheetRow{.Label = std::move(label),
                    .Value = mover ? texts.Wind(mover->Motion) : std::string(kNoValue),
                    .Note = isChosen && storm.ChosenIsManual ? "manual" : "",
                    .Rank = 2};
  };
  const auto wind = [&](std::string label, const std::optional<analysis::WindVector>& vector) {
    return SheetRow{.Label = std::move(label),
                    .Value = vector ? texts.Wind(*vector) : std::string(kNoValue),
                    .Rank = 3};
  };
  const auto shear = [&](const std::optional<analysis::WindVector>& vector) {
    if (!vector) return std::string(kNoValue);
    const std::string text = texts.Speed(analysis::FromComponents(*vector).Spd);
    return text.substr(0, text.find(' '));
  };
  const auto helicity = [&](std::size_t depth) {
    const double value = storm.Chosen() ? storm.Chosen()->Helicity[depth] : kNone;
    return Texts::Number(value, "###0", "");
  };
  // Of the effective inflow layer, the number alone.
  const auto effective = [&](std::string_view label) {
    const std::string text = texts.Index(label).Value;
    return text.substr(0, text.find(' '));
  };
  constexpr std::size_t kOneKm = 0, kThreeKm = 2;  // of kHelicityDepthsKm
  static_assert(analysis::kHelicityDepthsKm[kOneKm] == 1);
  static_assert(analysis::kHelicityDepthsKm[kThreeKm] == 3);
  const std::string mover = storm.RightIsChosen ? "Helicity, RM" : "Helicity, LM";
  block.Rows.push_back(
      {.Label = mover,
       .Value = helicity(kOneKm),
       .Note = "m\xC2\xB2/s\xC2\xB2",
       .More = {{helicity(kThreeKm), StressOf(shown, "s-rH 0-3km")}, {""}, {effective("s-rH Eff")}},
       .Rank = 0});
  block.Rows.push_back({.Label = "Shear",
                        .Value = shear(storm.Shear1km),
                        .Note = texts.SpeedUnit(),
                        .More = {{""}, {shear(storm.Shear6km)}, {effective("EBWD")}},
                        .Rank = 1});
  block.Rows.push_back(motion("Right mover", storm.Right, true));
  block.Rows.push_back(motion("Left mover", storm.Left, false));
  block.Rows.push_back(wind("Mean 0-6 km", storm.Mean6km));
  return block;
}

/// An index of the box with the words that stand for it there, the most telling first.
struct RankedIndex {
  std::string_view Label;
  std::string_view Name;
  double AnalysisSettings::*DepthKm = nullptr;  // stands behind the name
};

constexpr RankedIndex kIndices[] = {
    {"STP cin", "Sig. tornado"},
    {"SCP eff", "Supercell eff."},
    {"Supercell", "Supercell"},
    {"EHI 0-xkm", "EHI", &AnalysisSettings::EhiDepthKm},
    {"LI", "Lifted index"},
    {"Water", "Precip. water"},
    {"DCAPE 6km", "DCAPE"},
    {"SHIP", "Sig. hail"},
    {"Craven", "Craven"},
    {"KI", "K index"},
    {"TT", "Total totals"},
    {"SWEAT", "SWEAT"},
    {"BRN", "Bulk Rich. no."},
    {"SI", "Showalter"},
    {"Hail", "Hail"},
    {"T1/T2 Gust", "T1/T2 gust"},
    {"WindEX", "Windex gust"},
    {"BRN Shear", "BRN shear"},
    {"VGP 0-xkm", "VGP", &AnalysisSettings::VgpDepthKm},
    {"NCAPE", "Norm. CAPE"},
    {"CAP", "Cap strength"},
    {"MVV", "Max. updraft"},
    {"VT", "Vert. totals"},
    {"CT", "Cross totals"},
    {"WMSI", "WMSI"},
    {"Mean RH", "Humidity"},
    {"Haines", "Haines"},
};

SheetRow IndexRowOf(const Shown& shown, const Texts& texts, const RankedIndex& index) {
  std::string name(index.Name);
  if (index.DepthKm != nullptr) name += " 0-" + Shortest(shown.Set.*index.DepthKm) + " km";
  SheetRow row = texts.Index(index.Label, name);
  row.Note.clear();
  row.Step = StressOf(shown, index.Label);
  return row;
}

// The indices that the user lists, or those of the table.
SheetBlock IndexBlock(const Shown& shown) {
  const Texts texts(shown);
  SheetBlock block{.Heading = "Indices", .Flows = true, .Elsewhere = std::string(kAllIndices)};
  const auto add = [&](const RankedIndex& index) {
    SheetRow row = IndexRowOf(shown, texts, index);
    if (row.Label.empty()) return;
    row.Rank = static_cast<int>(block.Rows.size());
    block.Rows.push_back(std::move(row));
  };
  if (shown.Set.Thermo != ThermoDisplay::Custom) {
    for (const RankedIndex& index : kIndices) add(index);
    return block;
  }
  std::string_view rest = shown.Set.CustomPanel;
  while (!rest.empty()) {
    const std::size_t comma = std::min(rest.find(','), rest.size());
    const std::string_view label = Trim(rest.substr(0, comma));
    const auto* known = std::ranges::find(kIndices, label, &RankedIndex::Label);
    add(known == std::end(kIndices) ? RankedIndex{label, ""} : *known);
    rest.remove_prefix(std::min(comma + 1, rest.size()));
  }
  return block;
}

SheetBlock LayerBlock(const Shown& shown) {
  const Texts texts(shown);
  const analysis::AnalysisResults& results = shown.Results;
  SheetBlock block{.Heading = "Lapse rates and layers", .Elsewhere = std::string(kLayerDisplay)};
  const auto add = [&block](SheetRow row) {
    row.Rank = static_cast<int>(block.Rows.size());
    block.Rows.push_back(std::move(row));
  };
  add({"Lapse rate 0-3 km", Texts::Number(results.Layers.LapseRate3km, "0.0", " C/km")});
  SheetRow lapse = texts.Index("700-500 LR", "Lapse rate 700-500" + texts.PressUnit());
  lapse.Step = StressOf(shown, "700-500 LR");
  lapse.Note.clear();
  add(std::move(lapse));
  const auto level = [&](std::string label, const std::vector<LevelPoint>& levels) {
    add({std::move(label),
         levels.empty() ? std::string(kNoValue) : texts.Height(levels.front().Height)});
  };
  level("Freezing level", results.FreezingLevels);
  SheetRow wetBulb = texts.Index("WBZ Hgt", "Wet-bulb zero");
  wetBulb.Step = StressOf(shown, "WBZ Hgt");
  wetBulb.Note.clear();
  add(std::move(wetBulb));
  level("Tropopause", results.Tropopauses);
  if (results.Layers.Mixed) {
    add({"Well-mixed layer", texts.Depth(results.Layers.Mixed->Depth)});
  }
  add({"Convective temperature", texts.Temp(results.ConvectiveTemp)});
  // Those of the stratosphere are in the layer display.
  const double weatherTop =
      results.Tropopauses.empty() ? kNotReached : results.Tropopauses.front().Height;
  for (const analysis::Inversion& inversion : results.Inversions) {
    if (inversion.Base.Height > weatherTop) break;
    add({InversionWord(inversion.Kind) + " inversion", texts.Span(inversion.Base, inversion.Top)});
  }
  return block;
}

// A row of the severe table as the other boxes write it: without the table's unit in its name, in
// the unit of the options.
SheetRow InOwnUnits(const Texts& texts, const SheetRow& row) {
  constexpr std::string_view kUnits[] = {" (kt)", " (C)",  " (C/km)",   " (m\xC2\xB2/s\xC2\xB2)",
                                         " (m)",  " (mb)", " (inches)", " (ft,AGL)"};
  std::string name = row.Label;
  for (const std::string_view unit : kUnits) {
    if (name.ends_with(unit)) name.erase(name.size() - unit.size());
  }
  SheetRow own = texts.Index(row.Index, name);
  if (own.Label.empty()) return row;
  own.Step = row.Step;
  return own;
}

// What the day is about: winter weather where it freezes or nearly does, else severe weather.
SheetBlock WeatherBlock(const Shown& shown) {
  constexpr double kCold = 4;     // °C at the ground
  constexpr double kQuiet = 250;  // J/kg
  const analysis::AnalysisResults& results = shown.Results;
  const bool isWinter = results.Levels.Count() > 0 && results.Levels.Temp(1) <= kCold &&
                        results.Chosen().CapeTotal < kQuiet;
  const Texts texts(shown);
  const Sheet sheet = isWinter ? WinterWeatherSheet(shown) : SevereWeatherSheet(shown);
  SheetBlock block{.Heading = sheet.Title, .Elsewhere = sheet.Title};
  for (const SheetBlock& part : sheet.Blocks) {
    for (const SheetRow& row : part.Rows) {
      if (row.Value.empty() && row.Note.empty()) continue;
      block.Rows.push_back(isWinter ? row : InOwnUnits(texts, row));
      // Of a severe table those that reach a step stay.
      const int place = static_cast<int>(block.Rows.size());
      block.Rows.back().Rank = place - 100 * static_cast<int>(row.Step);
      if (!isWinter) block.Rows.back().Note.clear();
    }
  }
  return block;
}

constexpr double kPilotDepth = 6000;  // m, of the pilot's layout

SheetBlock PilotClouds(const Shown& shown) {
  SheetBlock block = CloudBlock(shown, Texts(shown));
  block.Elsewhere = kLayerDisplay;
  if (block.Rows.size() == 1 && block.Rows.front().Value.empty()) {
    block.Rows.front().Label = "No cloud layer found";
  }
  return block;
}

SheetBlock ThermalBlock(const Shown& shown) {
  const Texts texts(shown);
  const analysis::SoaringResults& soaring = shown.Results.Soaring;
  SheetBlock block{.Heading = "Thermals", .Elsewhere = "Soaring"};
  const auto level = [&](const LevelPoint& point, std::string_view without) {
    return point.Exists() ? texts.Height(point.Height) : std::string(without);
  };
  block.Rows = {{"Trigger temperature", texts.Temp(soaring.TriggerTemp)},
                {"Thermal top", level(soaring.ThermalTop, kNoValue)},
                {"Strength", texts.Climb(soaring), std::string(soaring.Words)},
                {"Cloud base", level(soaring.CloudBase, "blue")},
                {"Highest temperature", texts.Temp(soaring.MaxTemp)}};
  SheetRow density = texts.Index("DensityAlt", "Density altitude");
  density.Note.clear();
  if (!density.Label.empty()) block.Rows.push_back(std::move(density));
  for (std::size_t i = 0; i < block.Rows.size(); ++i) block.Rows[i].Rank = static_cast<int>(i);
  return block;
}

SheetBlock FreezingBlock(const Shown& shown) {
  const Texts texts(shown);
  SheetBlock block{.Heading = "Freezing level and icing", .Elsewhere = std::string(kLayerDisplay)};
  for (const LevelPoint& level : shown.Results.FreezingLevels) {
    block.Rows.push_back({"Freezing level",
                          texts.Height(level.Height),
                          "",
                          Stress::None,
                          "",
                          {},
                          static_cast<int>(block.Rows.size())});
  }
  if (block.Rows.empty()) block.Rows.push_back({.Label = "Freezing level", .Value = "--"});
  for (const analysis::AirLayer& layer : shown.Results.Layers.Icing) {
    const bool moderate = layer.Class >= analysis::Intensity::Moderate;
    const bool severe = layer.Class >= analysis::Intensity::Severe;
    block.Rows.push_back({.Label = "Icing " + std::string(Trim(layer.Word)),
                          .Value = texts.Span(layer.Base, layer.Top),
                          .Step = severe     ? Stress::Third
                                  : moderate ? Stress::Second
                                             : Stress::None,
                          .Rank = static_cast<int>(block.Rows.size())});
  }
  if (shown.Results.Layers.Icing.empty()) {
    block.Rows.push_back({.Label = "Icing", .Value = "none"});
  }
  return block;
}

// Those that are met on the way, in the layout's lowest 6 km.
SheetBlock PilotInversions(const Shown& shown) {
  const double top = shown.Record.ElevM + kPilotDepth;
  std::vector<analysis::Inversion> met;
  std::ranges::copy_if(
      shown.Results.Inversions, std::back_inserter(met),
      [top](const analysis::Inversion& inversion) { return inversion.Base.Height <= top; });
  SheetBlock block = InversionBlock(met, Texts(shown));
  block.Elsewhere = kLayerDisplay;
  for (std::size_t i = 0; i < block.Rows.size(); ++i) block.Rows[i].Rank = static_cast<int>(i);
  return block;
}

// The winds as numbers, in the steps in which pilots ask for them.
SheetBlock PilotWinds(const Shown& shown) {
  const Texts texts(shown);
  const bool feet = shown.Set.ThermoHeight == LengthUnits::Feet;
  const bool isAbove = shown.Set.Heights == HeightMode::Agl;
  const double step = feet ? MetersFromFeet(2000) : 500;
  const double ground = shown.Record.ElevM;
  const double base = isAbove ? ground : 0;
  SheetBlock block{.Heading = "Winds", .Elsewhere = "Hodograph"};
  const auto add = [&](std::string label, double height) {
    const analysis::WindSample wind = analysis::WindAtHeight(shown.Record, height);
    if (!wind.Ok()) return;
    block.Rows.push_back({.Label = std::move(label),
                          .Value = texts.Wind(analysis::Components(wind.Value)),
                          .Rank = static_cast<int>(block.Rows.size())});
  };
  add("Ground", ground);
  for (int n = 1; n * step + base <= ground + kPilotDepth; ++n) {
    const double height = n * step + base;
    if (height > ground) add(texts.Height(height), height);
  }
  if (block.Rows.empty()) block.Rows.push_back({.Label = "none"});
  return block;
}

constexpr SideBox kBoxes[] = {
    {"parcels", ParcelBlock},   {"storm", StormBlock},       {"indices", IndexBlock},
    {"layers", LayerBlock},     {"weather", WeatherBlock},   {"clouds", PilotClouds},
    {"thermals", ThermalBlock}, {"freezing", FreezingBlock}, {"inversions", PilotInversions},
    {"winds", PilotWinds},
};

}  // namespace

std::span<const SideBox> SideBoxes() {
  return kBoxes;
}

std::vector<PageBox> PageBoxes(const Shown& shown) {
  std::vector<PageBox> boxes;
  const BlockInks inks = BlockInksFor(shown.Set);
  for (const SideBox& box : kBoxes) {
    const auto block = std::make_shared<const SheetBlock>(box.Fill(shown));
    // Rows that flow stand two to a line in a column of the usual width.
    const auto rows = static_cast<double>(block->Rows.size());
    const double spared = block->Flows ? std::floor(rows / 2) : 0;
    boxes.push_back({.Name = box.Name,
                     .Draw =
                         [block, inks](Picture& page, const Rect& region) {
                           const Rect inside{region.Left, region.Top + kBoxPadding / 2,
                                             region.Right, region.Bottom - kBoxPadding / 2};
                           DrawBlock(page, inside, *block, inks);
                         },
                     .MostHeight = BoxHeight(LinesOf(*block) - spared)});
  }
  return boxes;
}

}  // namespace vexa::display
