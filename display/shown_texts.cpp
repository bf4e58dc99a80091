#include "display/shown_texts.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "analysis/index_table.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "core/units.h"

namespace vexa::display {
namespace {

using analysis::LevelPoint;

// The part of the user's table that judges an index.
analysis::SevereTable LimitsOf(const analysis::SevereTable& table, std::string_view label) {
  analysis::SevereTable part;
  for (const analysis::SevereRow& row : table.Rows) {
    if (!analysis::IsSevereEntry(row.Entry)) continue;
    const auto entry = static_cast<std::size_t>(row.Entry) - 1;
    if (analysis::SevereEntries()[entry].Index == label) part.Rows.push_back(row);
  }
  return part;
}

const analysis::IndexValue* ValueOf(const Shown& shown, std::string_view label) {
  const analysis::IndexRow* row = analysis::FindIndex(label);
  return row == nullptr ? nullptr : analysis::IndexOf(shown.Results, *row);
}

}  // namespace

std::string WithPowers(std::string_view text) {
  constexpr std::pair<std::string_view, std::string_view> kPowers[] = {
      {"m2/s2", "m\xC2\xB2/s\xC2\xB2"},
      {"m3/s3", "m\xC2\xB3/s\xC2\xB3"},
      {"m/s2", "m/s\xC2\xB2"},
      {"m2/s", "m\xC2\xB2/s"}};
  std::string written(text);
  for (const auto& [plain, power] : kPowers) {
    const std::size_t at = written.find(plain);
    if (at == written.npos) continue;
    written.replace(at, plain.size(), power);
    break;
  }
  return written;
}

std::string Texts::Press(const LevelPoint& level) const {
  if (!level.Exists()) return std::string(kNoValue);
  return Mask(level.Press, "###0") + PressUnit();
}

std::string Texts::PressUnit() const {
  return " " + std::string(analysis::PressureWord(shown_.Set.Pressure));
}

std::string Texts::SpeedUnit() const {
  return std::string(UnitWord(shown_.Set.Speed));
}

std::string Texts::Climb(const analysis::SoaringResults& soaring) const {
  if (NotAvailable(soaring.Lift)) return std::string(kNoValue);
  const double msPerFpm = MetersFromFeet(1) / 60;
  const bool isMs = soaring.LiftEquation == 2;
  if (shown_.Set.ThermoHeight == LengthUnits::Meter) {
    return Mask(isMs ? soaring.Lift : msPerFpm * soaring.Lift, "#0.0") + " m/s";
  }
  return Mask(isMs ? soaring.Lift / msPerFpm : soaring.Lift, "###0") + " ft/min";
}

std::string Texts::Speed(double knots) const {
  return Mask(ShownIn(knots, shown_.Set.Speed), "##0") + " " + SpeedUnit();
}

std::string Texts::Wind(const analysis::WindVector& wind) const {
  const analysis::Wind from = analysis::FromComponents(wind);
  return analysis::ThreeDigits(from.Dir) + "/" + Speed(from.Spd);
}

std::string Texts::Span(const LevelPoint& base, const LevelPoint& top) const {
  return HeightNumber(base.Height) + " - " + Height(top.Height);
}

std::string Texts::Number(double value, std::string_view mask, std::string_view unit) {
  return NotAvailable(value) ? std::string(kNoValue) : Mask(value, mask) + std::string(unit);
}

std::string Texts::HeightNumber(double height) const {
  const std::string text = Height(height);
  return text.substr(0, text.find(' '));
}

std::string Texts::HeightUnit() const {
  const bool isAbove = heights_ == HeightMode::Agl && HasHeight(shown_.Record.ElevM);
  return std::string(UnitWord(shown_.Set.ThermoHeight)) + (isAbove ? " AGL" : "");
}

SheetRow Texts::Index(std::string_view label, std::string_view name) const {
  const analysis::IndexValue* value = ValueOf(shown_, label);
  if (value == nullptr) return {};
  analysis::IndexUnits units = analysis::UnitsOf(shown_.Set, shown_.Record.ElevM);
  analysis::ShownIndex index = analysis::ShowIndex(*value, units);
  // A scale in place of a unit says nothing behind a number.
  if (index.Unit.starts_with("1000 ")) index.Unit.clear();
  return {.Label = std::string(name.empty() ? value->Row->Name : name),
          .Value = WithPowers(index.Text()),
          .Note = value->Reason.empty() ? "" : "n/a",
          .Index = std::string(Trim(value->Row->Label))};
}

Stress StressOf(const Shown& shown, std::string_view label) {
  int step = 0;
  for (const analysis::SevereValue& value :
       analysis::FillSevereTable(LimitsOf(shown.Severe, label), shown.Results)) {
    step = std::max(step, value.Step);
  }
  return static_cast<Stress>(step);
}

Stress StressOf(const Shown& shown, std::string_view label, double value) {
  // The largest CAPE of the tropics passes the markers of other quantities.
  if (!std::isfinite(value) || value == kNone) return Stress::None;
  int step = 0;
  for (const analysis::SevereRow& row : LimitsOf(shown.Severe, label).Rows) {
    step = std::max(step, analysis::SevereStep(row, value));
  }
  return static_cast<Stress>(step);
}

SheetBlock LevelBlock(std::string heading, const std::vector<LevelPoint>& levels,
                      const Texts& texts) {
  SheetBlock block{.Heading = std::move(heading)};
  for (const LevelPoint& level : levels) {
    block.Rows.push_back({texts.Press(level), texts.Height(level.Height), texts.Temp(level.Temp)});
  }
  if (levels.empty()) block.Rows.push_back({"none"});
  return block;
}

SheetBlock AirLayerBlock(std::string heading, const std::vector<analysis::AirLayer>& layers,
                         const Texts& texts) {
  SheetBlock block{.Heading = std::move(heading)};
  for (const analysis::AirLayer& layer : layers) {
    const bool severe = layer.Class >= analysis::Intensity::Severe;
    const bool moderate = layer.Class >= analysis::Intensity::Moderate;
    Stress step = Stress::None;
    if (moderate) step = severe ? Stress::Third : Stress::Second;
    block.Rows.push_back(
        {texts.Span(layer.Base, layer.Top), std::string(Trim(layer.Word)), "", step});
  }
  if (layers.empty()) block.Rows.push_back({"none"});
  return block;
}

SheetBlock CloudBlock(const Shown& shown, const Texts& texts) {
  SheetBlock block{.Heading = "Clouds"};
  for (const analysis::CloudDeck& deck : shown.Results.Layers.Clouds) {
    block.Rows.push_back({texts.Span(deck.Base, deck.Top), std::string(Trim(Text(deck.Amount))) +
                                                               " " + std::string(Text(deck.Type))});
  }
  if (block.Rows.empty()) block.Rows.push_back({"none"});
  return block;
}

std::string InversionWord(analysis::InversionKind kind) {
  using analysis::InversionKind;
  switch (kind) {
    case InversionKind::Radiation:
      return "Radiation";
    case InversionKind::Frontal:
      return "Frontal";
    case InversionKind::Subsidence:
      return "Subsidence";
    case InversionKind::Tropopause:
      return "Tropopause";
    case InversionKind::Unknown:
      break;
  }
  return "Unknown";
}

SheetBlock InversionBlock(const std::vector<analysis::Inversion>& inversions, const Texts& texts) {
  SheetBlock block{.Heading = "Inversions"};
  for (const analysis::Inversion& inversion : inversions) {
    block.Rows.push_back({texts.Span(inversion.Base, inversion.Top), InversionWord(inversion.Kind),
                          "+" + Mask(inversion.Top.Temp - inversion.Base.Temp, "#0.0") + " C"});
  }
  if (block.Rows.empty()) block.Rows.push_back({"none"});
  return block;
}

std::string IcingHeading(const DisplaySettings& options) {
  return "Icing (" + std::string(Word(options.Ice)) + ")";
}

}  // namespace vexa::display
