#include "diagram/line_legend.h"

#include <utility>

#include "core/numbers.h"
#include "picture/surface.h"
#include "picture/text_width.h"

namespace vexa::diagram {
namespace {

constexpr double kSample = Px(34);
constexpr double kSampleGap = Px(8);
constexpr double kNameText = LetterSize(Type::Label);
constexpr double kSentenceText = LetterSize(Type::Note);
constexpr double kNameStep = Px(16);
constexpr double kSentenceStep = Px(14);
constexpr double kEntryGap = Px(5);

bool Always(const DisplaySettings&) {
  return true;
}

/// A line of the diagram: what draws it and when it is there.
struct LineRow {
  std::string_view Name;
  std::string_view Sentence;
  Pen Palette::*Stroke = nullptr;
  Brush Palette::*Fill = nullptr;
  Brush Palette::*Hatch = nullptr;
  bool (*IsOn)(const DisplaySettings&) = Always;
};

constexpr LineRow kLegendLines[] = {
    {"Temperature", "of the air, as it was measured on the way up.", &Palette::Temperature},
    {"Dew point",
     "to which the air must cool until its vapour condenses. Near the temperature the air is "
     "moist, "
     "far from it dry.",
     &Palette::Dewpoint},
    {"Wet bulb", "to which rain that evaporates cools the air.", &Palette::WetBulb, nullptr,
     nullptr, [](const DisplaySettings& set) { return set.WetBulbTrace; }},
    {"Virtual temperature",
     "that dry air of the same density has: vapour makes air lighter, as warmth does.",
     &Palette::VirtualTemp, nullptr, nullptr,
     [](const DisplaySettings& set) {
       return set.VirtualTrace || (set.AutoAnalyses && set.CapeTempBase == TempBase::Virtual);
     }},
    {"Parcel",
     "of air that is lifted from below: where it is warmer than the air around it, it rises by "
     "itself.",
     &Palette::Parcel, nullptr, nullptr,
     [](const DisplaySettings& set) { return set.AutoAnalyses; }},
    {"CAPE", "is the energy that the parcel gains on its way up: the larger, the stronger a storm.",
     nullptr, &Palette::Cape, nullptr, [](const DisplaySettings& set) { return set.AutoAnalyses; }},
    {"CIN", "is the energy that it takes to lift the parcel to where it rises by itself.", nullptr,
     &Palette::Cin, &Palette::CinHatch,
     [](const DisplaySettings& set) { return set.AutoAnalyses; }},
    {"Winds",
     "stand beside the diagram at their heights. The shaft points to where the wind comes from; "
     "half a feather is 5 kts, a feather 10 kts, a pennant 50 kts.",
     &Palette::Wind, nullptr, nullptr,
     [](const DisplaySettings& set) { return set.Winds != WindDisplay::None; }},
    {"Usual temperatures",
     "are those of eight of ten ascents here in this month and at this hour; the dots stand at the "
     "median.",
     nullptr, &Palette::UsualTemp, nullptr,
     [](const DisplaySettings& set) { return set.UsualTemps; }},
    {"Isobars", "join equal pressure: level lines, the lower the pressure the higher up.",
     &Palette::Isobar},
    {"Isotherms", "join equal temperature.", &Palette::Isotherm},
    {"0 C", "is where water freezes.", &Palette::ZeroIsotherm},
    {"Dry adiabats", "show how air that is not saturated cools while it rises: by 10 C per km.",
     &Palette::DryAdiabat, nullptr, nullptr,
     [](const DisplaySettings& set) { return set.DryAdiabats; }},
    {"Saturated adiabats",
     "show how a cloud's air cools while it rises: more slowly, since condensing warms it.",
     &Palette::SatAdiabat, nullptr, nullptr,
     [](const DisplaySettings& set) { return set.SatAdiabats; }},
    {"Mixing ratio", "says how much vapour saturated air holds, in grams to a kilogram.",
     &Palette::MixingRatio, nullptr, nullptr,
     [](const DisplaySettings& set) { return set.MixingLines; }},
    {"Freezing level", "is the height at which the air has 0 C.", &Palette::Freezing, nullptr,
     nullptr, [](const DisplaySettings& set) { return set.FreezeLine; }},
    {"Tropopause", "ends the air that has weather: above it the temperature falls no more.",
     &Palette::Tropopause, nullptr, nullptr,
     [](const DisplaySettings& set) { return set.TropoLine; }},
    {"Ground", "is the level of the station.", &Palette::Surface, nullptr, nullptr,
     [](const DisplaySettings& set) { return set.SurfaceLine; }},
    {"Standard atmosphere", "is the temperature that aviation counts with.",
     &Palette::StandardAtmosphere, nullptr, nullptr,
     [](const DisplaySettings& set) { return set.IcaoLine; }},
};

Area AreaOf(const Rect& at, const Brush& fill) {
  return {.Rings = {{{at.Left, at.Top},
                     {at.Right, at.Top},
                     {at.Right, at.Bottom},
                     {at.Left, at.Bottom}}},
          .Fill = fill};
}

void DrawSample(Picture& page, const LegendEntry& entry, Point at) {
  const Rect place{at.X, at.Y - Px(5), at.X + kSample, at.Y + Px(5)};
  if (entry.Stroke.Width > 0) {
    page.Add("legend line",
             Polyline{.Points = {{place.Left, at.Y}, {place.Right, at.Y}}, .Stroke = entry.Stroke});
    return;
  }
  page.Add("legend area", AreaOf(place, entry.Fill));
  if (entry.Hatch.Ink.Alpha > 0) page.Add("legend area", AreaOf(place, entry.Hatch));
}

void DrawEntries(Picture& page, const Rect& region, const std::vector<LegendEntry>& entries,
                 const Palette& inks) {
  // In a wide region the entries stand in columns, each read downwards.
  constexpr double kColumn = Px(264);
  constexpr double kColumnGap = Px(16);
  const double columns =
      std::max(1.0, std::floor((region.Width() + kColumnGap) / (kColumn + kColumnGap)));
  const double step = (region.Width() + kColumnGap) / columns;
  const double room = step - kColumnGap - kSample - kSampleGap;
  constexpr double kHeadStep = kLineStep;
  if (region.Height() < kHeadStep + kNameStep || room < Px(60)) return;
  const auto write = [&page](std::string_view tag, Point at, std::string text, double size,
                             Color ink, bool bold, AnchorX across = AnchorX::Left) {
    page.Add(tag, Label{.At = at,
                        .Text = std::move(text),
                        .Across = across,
                        .Size = size,
                        .Ink = ink,
                        .Bold = bold});
  };
  const double top = region.Top + kHeadStep + kEntryGap;
  double corner = region.Left;
  double y = top;
  std::size_t drawn = 0;
  for (const LegendEntry& entry : entries) {
    const std::vector<std::string> lines = Wrapped(entry.Sentence, kSentenceText, room);
    const double height = kNameStep + static_cast<double>(lines.size()) * kSentenceStep;
    if (y + height > region.Bottom) {
      corner += step;
      y = top;
      if (corner > region.Right - room || y + height > region.Bottom) break;
    }
    const double left = corner + kSample + kSampleGap;
    DrawSample(page, entry, {corner, y + kNameStep / 2});
    write("legend name", {left, y + kNameStep / 2}, Elided(entry.Name, kNameText, room, true),
          kNameText, inks.Ink, true);
    y += kNameStep;
    for (const std::string& line : lines) {
      write("legend text", {left, y + kSentenceStep / 2}, line, kSentenceText, inks.Faint, false);
      y += kSentenceStep;
    }
    y += kEntryGap;
    ++drawn;
  }
  const double headY = region.Top + kHeadStep / 2;
  write("heading", {region.Left, headY}, "Lines of the diagram", kNameText, inks.Ink, true);
  if (drawn == entries.size()) return;
  const std::string more = "+" + Shortest(static_cast<int>(entries.size() - drawn)) + " more: F1";
  const double used =
      TextWidth("Lines of the diagram", kNameText, true) + TextWidth(more, kSentenceText);
  if (used + kSampleGap > region.Width()) return;
  write("left out", {region.Right, headY}, more, kSentenceText, inks.Faint, false, AnchorX::Right);
}

}  // namespace

std::vector<LegendEntry> LegendEntries(const DisplaySettings& options) {
  const Palette inks = PaletteFor(options);
  std::vector<LegendEntry> entries;
  for (const LineRow& row : kLegendLines) {
    if (!row.IsOn(options)) continue;
    LegendEntry entry{row.Name, row.Sentence};
    if (row.Stroke != nullptr) entry.Stroke = inks.*row.Stroke;
    if (row.Fill != nullptr) entry.Fill = inks.*row.Fill;
    if (row.Hatch != nullptr) entry.Hatch = inks.*row.Hatch;
    entries.push_back(entry);
  }
  return entries;
}

PageBox LineLegendBox(const DisplaySettings& options) {
  return {"lines",
          [entries = LegendEntries(options), inks = PaletteFor(options)](
              Picture& page, const Rect& region) { DrawEntries(page, region, entries, inks); }};
}

}  // namespace vexa::diagram
