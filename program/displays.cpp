#include "program/displays.h"

#include <algorithm>
#include <system_error>

#include "display/weather.h"

namespace vexa {
namespace {

display::Shown ShownBy(const Program& program) {
  return {program.Current.Record, program.Results, program.Set, program.Severe};
}

template <display::Sheet (*kFill)(const display::Shown&)>
display::Sheet From(const Program& program) {
  return kFill(ShownBy(program));
}

constexpr DisplayRow kDisplays[] = {
    {Command::SevereWeather, "SvrWx", "Severe Weather", From<display::SevereWeatherSheet>},
    {Command::WinterWeather, "Winter", "Winter Weather", From<display::WinterWeatherSheet>},
    {Command::LayerAnalyzer, "LayerAnalyzer", "Layer Analyzer", From<display::LayerSheet>},
    {Command::Soaring, "Soaring", "Soaring", From<display::SoaringSheet>},
};

}  // namespace

std::span<const DisplayRow> Displays() {
  return kDisplays;
}

const DisplayRow* DisplayOf(Command command) {
  const auto* row = std::ranges::find(kDisplays, command, &DisplayRow::Opens);
  return row == std::end(kDisplays) ? nullptr : row;
}

Picture DrawDisplay(const DisplayRow& row, const Program& program) {
  return display::DrawSheet(row.Fill(program), program.Set);
}

std::filesystem::path SevereTablePath(const Program& program) {
  return program.Where.Root / "VEXA.TBL";
}

void LoadSevereTable(Program& program) {
  std::error_code ignored;
  const std::filesystem::path path = SevereTablePath(program);
  if (!std::filesystem::exists(path, ignored)) return;
  const Outcome<analysis::SevereTable> table = analysis::RestoreTable(path);
  if (table) {
    program.Severe = table.Value();
  } else {
    program.Notices.push_back(table.Error().Detail + '.');
  }
}

}  // namespace vexa
