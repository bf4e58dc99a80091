#include "display/weather.h"

#include <string_view>
#include <utility>

#include "analysis/index_table.h"
#include "analysis/moist_air.h"
#include "analysis/shown_units.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"

namespace vexa::display {
namespace {

using analysis::LevelPoint;

Sheet Titled(std::string_view title, const Shown& shown) {
  return {.Title = std::string(title), .Subtitle = shown.Record.StationTitle};
}

}  // namespace

Sheet SevereWeatherSheet(const Shown& shown) {
  Sheet sheet = Titled("Severe Weather", shown);
  SheetBlock block{.Heading = shown.Severe.Title};
  for (const analysis::SevereValue& value :
       analysis::FillSevereTable(shown.Severe, shown.Results)) {
    block.Rows.push_back(
        {.Label = std::string(value.Text),
         .Value = value.Shown,
         .Note = value.Reason.empty() ? value.Note : "n/a",
         .Step = static_cast<Stress>(value.Step),
         .Index = value.Index == nullptr ? "" : std::string(Trim(value.Index->Label))});
  }
  sheet.Blocks.push_back(std::move(block));
  return sheet;
}

Sheet WinterWeatherSheet(const Shown& shown) {
  const Texts texts(shown);
  const analysis::WinterResults& winter = shown.Results.Winter;
  Sheet sheet = Titled("Winter Weather", shown);
  const auto energy = [](double value) { return Texts::Number(value, "###0.0", " J/kg"); };
  sheet.Blocks.push_back(
      {"Precipitation",
       {{"Type", winter.Precipitation.empty() ? "none" : std::string(winter.Precipitation)},
        {"Warm layer aloft", energy(winter.WarmArea)},
        {"Cold layer below it", energy(winter.ColdArea)},
        {"Warm layer at the ground", energy(winter.SurfaceWarmArea)},
        {"Snow to liquid ratio", Texts::Number(winter.SnowRatio, "#0.0", " : 1")},
        {.Label = "Snow squall parameter",
         .Value = Texts::Number(winter.SnowSquall, "#0.00", ""),
         .Step = winter.SnowSquall >= 1 ? Stress::Second : Stress::None}}});
  const auto thickness = [&](std::string label, double value, double snow) {
    const bool likely = HasHeight(value) && value < snow;
    return SheetRow{std::move(label), Texts::Number(value, "####0", " m"),
                    likely ? "snow likely" : ""};
  };
  sheet.Blocks.push_back(
      {"Thickness",
       {thickness("1000 - 500" + texts.PressUnit(), winter.Thickness1000to500, 5400),
        thickness("1000 - 850" + texts.PressUnit(), winter.Thickness1000to850, 1300),
        thickness("850 - 700" + texts.PressUnit(), winter.Thickness850to700, 1540)}});
  sheet.Blocks.push_back({"Near the ground", {texts.Index("Wind-Chill"), texts.Index("WBZ Hgt")}});
  sheet.Blocks.push_back(LevelBlock("Freezing levels", shown.Results.FreezingLevels, texts));
  SheetBlock dendrites{.Heading = "Dendritic growth (-12 to -18 C)"};
  for (const auto& layer : winter.Dendritic) {
    dendrites.Rows.push_back({texts.Span(layer.Base, layer.Top),
                              texts.Depth(layer.Top.Height - layer.Base.Height),
                              "RH " + Texts::Number(layer.MeanHumidity, "##0", " %")});
  }
  if (winter.Dendritic.empty()) dendrites.Rows.push_back({"none"});
  sheet.Blocks.push_back(std::move(dendrites));
  sheet.Blocks.push_back(CloudBlock(shown, texts));
  sheet.Blocks.push_back(AirLayerBlock(IcingHeading(shown.Set), shown.Results.Layers.Icing, texts));
  return sheet;
}

Sheet SoaringSheet(const Shown& shown) {
  const Texts texts(shown, shown.Set.SoarHgtMode);
  const analysis::SoaringResults& soaring = shown.Results.Soaring;
  Sheet sheet = Titled("Soaring", shown);
  const auto level = [&](std::string label, const LevelPoint& point, std::string_view without) {
    return point.Exists() ? SheetRow{std::move(label), texts.Height(point.Height),
                                     texts.Press(point) + "  " + texts.Temp(point.Temp)}
                          : SheetRow{std::move(label), std::string(without)};
  };
  sheet.Blocks.push_back(
      {"Thermals",
       {{"Temperature of the day", texts.Temp(soaring.MaxTemp)},
        {"Trigger temperature", texts.Temp(soaring.TriggerTemp),
         "for " + Mask(shown.Set.TriggerHgt, "####0") + " ft AGL"},
        level(soaring.CloudBase.Exists() ? "Thermal top (cloud base)" : "Thermal top (index 0)",
              soaring.ThermalTop, kNoValue),
        level("Pilot level (index -3)", soaring.PilotLevel, kNoValue),
        level("Cloud base", soaring.CloudBase, "blue"),
        {"Lift", texts.Climb(soaring), std::string(soaring.Words)},
        texts.Index("TConv"),
        texts.Index("CCL Hgt"),
        texts.Index("DensityAlt")}});
  SheetBlock index{.Heading = "Thermal index"};
  const analysis::LevelProfile& levels = shown.Results.Levels;
  for (const double press : {950.0, 925.0, 900.0, 850.0, 800.0, 750.0, 700.0, 650.0, 600.0}) {
    if (levels.Count() < 2 || press > levels.Press(1) || press < levels.Press.Top()) continue;
    const double temp = analysis::GetTEMP(levels, press, analysis::Quantity::Temp);
    const analysis::Sample height = analysis::SampleAt(levels, press, analysis::Quantity::Height);
    if (NotAvailable(temp) || !height.Ok() || NotAvailable(soaring.MaxTemp)) continue;
    const double dry =
        analysis::DryAdiabatTemp(analysis::DryTheta(levels.Press(1), soaring.MaxTemp), press);
    index.Rows.push_back(
        {Mask(press, "###0") + texts.PressUnit() + "   " + texts.Height(height.Value),
         Mask(temp - dry, "##0.0"), temp < dry ? "lift" : ""});
  }
  sheet.Blocks.push_back(std::move(index));
  sheet.Blocks.push_back(CloudBlock(shown, texts));
  return sheet;
}

Sheet LayerSheet(const Shown& shown) {
  const Texts texts(shown);
  const analysis::AnalysisResults& results = shown.Results;
  const analysis::LayerResults& layers = results.Layers;
  Sheet sheet = Titled("Layer Analyzer", shown);
  sheet.Blocks.push_back(InversionBlock(results.Inversions, texts));
  SheetBlock mixed{.Heading = "Mixed layer"};
  if (layers.Mixed) {
    mixed.Rows.push_back({"Up to " + texts.Height(layers.Mixed->Top.Height),
                          Texts::Number(layers.Mixed->Theta, "##0.0", " K"),
                          texts.Depth(layers.Mixed->Depth) + " deep"});
  } else {
    mixed.Rows.push_back({"none"});
  }
  sheet.Blocks.push_back(std::move(mixed));
  sheet.Blocks.push_back(LevelBlock("Freezing levels", results.FreezingLevels, texts));
  sheet.Blocks.push_back(LevelBlock("Tropopauses", results.Tropopauses, texts));
  sheet.Blocks.push_back(CloudBlock(shown, texts));
  sheet.Blocks.push_back(AirLayerBlock(IcingHeading(shown.Set), layers.Icing, texts));
  sheet.Blocks.push_back(AirLayerBlock(
      "Clear-air turbulence (" + std::string(Word(shown.Set.Cat)) + ")", layers.Turbulence, texts));
  sheet.Blocks.push_back(AirLayerBlock("High-level turbulence", layers.HighTurbulence, texts));
  sheet.Blocks.push_back(AirLayerBlock("Low-level wind shear", layers.LowShear, texts));
  sheet.Blocks.push_back(AirLayerBlock("Contrails", layers.Contrails, texts));
  sheet.Blocks.push_back(AirLayerBlock("Lightning potential", layers.Lightning, texts));
  sheet.Blocks.push_back(AirLayerBlock("Carburettor icing", layers.CarbIcing, texts));
  SheetBlock ducts{.Heading = "Ducts"};
  for (const analysis::Duct& duct : layers.Ducts) {
    ducts.Rows.push_back({texts.Height(duct.DuctBase) + " - " + texts.Height(duct.Top.Height),
                          Mask(duct.Gradient, "###0") + " N/km",
                          duct.OnSurface ? "on the surface" : ""});
  }
  if (layers.Ducts.empty()) ducts.Rows.push_back({"none"});
  sheet.Blocks.push_back(std::move(ducts));
  return sheet;
}

}  // namespace vexa::display
