#include "crosssection/section_options.h"

#include <span>

#include "config/row_builder.h"
#include "config/system_file.h"
#include "core/units.h"

namespace vexa::crosssection {
namespace {

constexpr auto kSame = Record::Same;
constexpr Range kPixels{100, 32767};
constexpr Range kCoordinates{-32768, 32767};

using Set = SectionOptions;

constexpr SettingRow<Set> kOptionRows[] = {
    Row<At<&Set::Scale>>("vertical scale", "Tab 1").Named("Vertical scale"),
    Row<At<&Set::UpperLimit>, kTrue, Range{10, 900}>("upper limit", "Tab 1", kSame)
        .In("hPa")
        .Named(" Upper hPa Limit of Cross-Section"),
    Row<At<&Set::Heights>>("heights", "Tab 1", kSame).Named("Heights"),
    Row<At<&Set::Length>>("distances", "Tab 1", kSame).Named("Distances"),
    Row<At<&Set::Temp>>("temperatures", "Tab 1").Named("Temperature"),
    Row<At<&Set::Speed>>("wind units", "Tab 1", kSame).Named("Wind speed"),
    Row<At<&Set::Water>>("precipitable water", "Tab 1", kSame).Named("Precipitable water"),
    Row<At<&Set::Background>>("background", "Tab 2").Named("Background"),
    Row<At<&Set::Size>>("size", "Tab 2", kSame).Named("Size"),
    Row<At<&Set::Symbols>>("wind symbols", "Tab 2", kSame).Named("Wind symbols"),
    Row<At<&Set::Barbs>>("symbol size", "Tab 2", kSame).Named("Symbol size"),
    Row<At<&Set::PlotWinds>, kYes>("plot winds", "Tab 2").Named("Plot winds"),
    Row<At<&Set::Filled>, kYes>("filled colors", "Tab 2", kSame).Named("Filled colors"),
    Row<At<&Set::Lines>, kYes>("isolines", "Tab 2", kSame).Named("Isolines"),
    Row<At<&Set::SubIsolines>, kYes>("sub-isolines", "Tab 2", kSame).Named("Sub-isolines"),
    Row<At<&Set::DotMoisture>, kYes>("dotted moisture", "Tab 2", kSame)
        .Named("Dotted moisture fields"),
    Row<At<&Set::MarkExtrema>, kYes>("maxima and minima", "Tab 2", kSame)
        .Named("Maxima and minima"),
    Row<At<&Set::Tropopause>, kYes>("tropopause", "Tab 2").Named("Tropopause"),
    Row<At<&Set::FreezingLevel>, kYes>("freezing level", "Tab 2", kSame).Named("Freezing level"),
    Row<At<&Set::Terrain>, kYes>("terrain", "Tab 2", kSame).Named("Terrain"),
    Row<At<&Set::Resolution>>("grid matrix resolution", "Tab 3").Named("Grid matrix resolution"),
    Row<At<&Set::SmoothingPasses>, kTrue, Range{0, kMostPasses}>("smoothing passes", "Tab 3", kSame)
        .Named("Smoothing passes"),
    Row<At<&Set::CrossDirection>, kTrue, Range{0, 360}>("cross-wind direction", "Tab 3")
        .In("°")
        .Named("Cross-wind direction"),
};

using State = SectionState;

constexpr SettingRow<State> kStateRows[] = {
    Row<At<&State::AutoLoad>, kYes>("auto-load"),
    Row<At<&State::LastDataset>>("last dataset"),
    Row<At<&State::Field>>("field", kSame),
    Row<At<&State::Direction>>("direction", kSame),
    Row<At<&State::Left>, kTrue, kCoordinates>("left edge"),
    Row<At<&State::Top>, kTrue, kCoordinates>("top edge", kSame),
    Row<At<&State::Width>, kTrue, kPixels>("width", kSame),
    Row<At<&State::Height>, kTrue, kPixels>("height", kSame),
    Row<Nth<&State::Recent, 0>>("recent dataset 1"),
    Row<Nth<&State::Recent, 1>>("recent dataset 2"),
    Row<Nth<&State::Recent, 2>>("recent dataset 3"),
    Row<Nth<&State::Recent, 3>>("recent dataset 4"),
    Row<Nth<&State::Recent, 4>>("recent dataset 5"),
};

template <class S, std::size_t kCount>
std::string WriteRows(const S& settings, const SettingRow<S> (&rows)[kCount]) {
  SystemWriter writer;
  writer.Write(settings, MarkedRecords(std::span<const SettingRow<S>>(rows)));
  return writer.Take();
}

template <class S, std::size_t kCount>
S ReadRows(const std::string& text, const SettingRow<S> (&rows)[kCount]) {
  S settings;
  SystemReader(std::string(), text)
      .Read(settings, MarkedRecords(std::span<const SettingRow<S>>(rows)));
  return settings;
}

}  // namespace

double FromKm(double km, SectionLength units) {
  switch (units) {
    case SectionLength::NauticalMiles:
      return km / kKmPerNauticalMile;
    case SectionLength::Kilometers:
      return km;
    case SectionLength::Miles:
      return km * 1000 / kMetersPerMile;
  }
  return km;
}

GridSize SizeOf(GridResolution resolution) {
  switch (resolution) {
    case GridResolution::Low:
      return {41, 31};
    case GridResolution::Medium:
      return {61, 46};
    case GridResolution::High:
      return {81, 61};
  }
  return {};
}

std::span<const SettingRow<SectionOptions>> SectionOptionRows() {
  return kOptionRows;
}

std::string SectionStateFile() {
  return std::string(kSystemTag) + ".XXX";
}

std::string SectionOptionsFile() {
  return std::string(kSystemTag) + ".XXS";
}

std::string Write(const SectionOptions& options) {
  return WriteRows(options, kOptionRows);
}

std::string Write(const SectionState& state) {
  return WriteRows(state, kStateRows);
}

SectionOptions ReadSectionOptions(const std::string& text) {
  return ReadRows(text, kOptionRows);
}

SectionState ReadSectionState(const std::string& text) {
  return ReadRows(text, kStateRows);
}

}  // namespace vexa::crosssection
