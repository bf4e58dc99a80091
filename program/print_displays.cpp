#include "program/print_displays.h"

#include <optional>
#include <utility>

#include "diagram/sounding_plot.h"
#include "display/weather.h"
#include "hodograph/hodogram_plot.h"
#include "program/hodograph_commands.h"
#include "program/settings_commands.h"

namespace vexa {
namespace {

hodograph::HodographInput InputOf(const Program& program, const Options& set) {
  return {.Sounding = program.Current.Record,
          .Results = program.Results,
          .Set = set,
          .Window = program.Hodograph,
          .Compared = program.Compared};
}

// As the window shows it, the soundings laid over it only where they are wanted.
template <bool kWithOthers>
Picture Diagram(const Program& program, const Options& set) {
  std::vector<diagram::OverlaySounding> others;
  if (kWithOthers) {
    for (const SoundingRecord& other : program.Others) others.push_back({&other});
  }
  const std::optional<Picture> small = hodograph::PlotSmallHodograph(InputOf(program, set));
  std::optional<diagram::SoundingPlot> plot =
      diagram::PlotSounding({.Sounding = program.Current.Record,
                             .Results = program.Results,
                             .Set = set,
                             .Others = std::move(others),
                             .Hodograph = small ? &*small : nullptr,
                             .Configuration = ConfigurationCaption(program.Settings)});
  return plot ? std::move(plot->Page) : Picture{};
}

Picture Hodograph(const Program& program, const Options& set) {
  return hodograph::PlotHodograph(InputOf(program, set)).Page;
}

Picture Hodogram(const Program& program, const Options& set) {
  return hodograph::PlotHodogram(hodograph::MakeHodogram(program.Current.Record, set),
                                 program.Hodogram);
}

template <display::Sheet (*kFill)(const display::Shown&)>
Picture Sheet(const Program& program, const Options& set) {
  return display::DrawSheet(kFill({program.Current.Record, program.Results, set, program.Severe}),
                            set);
}

bool HasSounding(const Program& program) {
  return program.Current.Record.NumTempLevels() > 0;
}
bool HasDiagram(const Program& program) {
  return program.Plot.has_value();
}
bool HasOthers(const Program& program) {
  return HasDiagram(program) && !program.Others.empty();
}
bool HasWinds(const Program& program) {
  return program.Current.Record.NumWindLevels() > 0;
}

struct PrintRow {
  PrintDisplay Display{};
  bool (*IsThere)(const Program&) = nullptr;
};

constexpr PrintRow kRows[] = {
    {{"Sounding", Diagram<false>}, HasDiagram},
    {{"Overlay", Diagram<true>}, HasOthers},
    {{"Hodograph", Hodograph}, HasWinds},
    {{"Hodogram3D", Hodogram, "HODOGRAM"}, HasWinds},
    {{"SvrWx", Sheet<display::SevereWeatherSheet>}, HasSounding},
    {{"Winter", Sheet<display::WinterWeatherSheet>}, HasSounding},
    {{"LayerAnalyzer", Sheet<display::LayerSheet>}, HasSounding},
    {{"Soaring", Sheet<display::SoaringSheet>}, HasSounding},
};

}  // namespace

std::vector<PrintDisplay> PrintDisplays(const Program& program) {
  std::vector<PrintDisplay> there;
  for (const PrintRow& row : kRows) {
    if (row.IsThere(program)) there.push_back(row.Display);
  }
  return there;
}

std::string_view PrintHeading(std::string_view name) {
  for (const PrintRow& row : kRows) {
    if (row.Display.Name == name) return row.Display.Heading;
  }
  return {};
}

Options PrintOptions(const Program& program, bool darkLines) {
  Options set = program.Set;
  set.Screen = ScreenColor::White;
  if (darkLines) {
    set.Darklines = true;
    set.Scheme = ColorScheme::Darker;
  }
  return set;
}

}  // namespace vexa
