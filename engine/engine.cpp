#include <vexa/vexa.h>
#include <filesystem>

#include "analysis/analysis.h"
#include "analysis/index_table.h"
#include "config/catalogue.h"
#include "core/data_checks.h"
#include "core/error_report.h"
#include "core/files.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/raw_file.h"
#include "core/shown_values.h"
#include "core/station_file.h"
#include "diagram/sounding_plot.h"
#include "hodograph/hodograph_plot.h"
#include "report/sounding_json.h"
#include "report/values.h"
#include "sounding/sounding_source.h"
#include "sounding/sounding_walk.h"

namespace vexa::engine {

struct Sounding::Held {
  std::string File{};
  AnalysedSounding Of;
  DisplaySettings Set{};

  // Made once, while the sounding is loaded, and only read from then on.
  const analysis::AnalysisResults& Results() const { return Of.Results(Set); }
};

namespace {

using Held = Sounding::Held;

std::optional<double> Present(double value) {
  return NotAvailable(value) ? std::nullopt : std::optional(value);
}

Loaded Failed(const std::string& file, const Fault& fault) {
  CurrentSounding nobody;
  nobody.FileName = file;
  const std::string& reason = fault.Detail;
  return {.Reason = reason.empty() ? FaultMessage(nobody, fault) : reason};
}

Outcome<StationList> StationsOf(const std::string& file) {
  if (file.empty()) return StationList{};
  const Outcome<std::string> text = ReadFile(PathFromText(file));
  if (!text) return text.Error();
  return ReadStations(text.Value(), file).List;
}

// Of the options that are set those count that analyses and pictures are made from.
Outcome<DisplaySettings> OptionsOf(const std::vector<std::string>& assignments) {
  Options options;
  for (const std::string& assignment : assignments) {
    if (auto fault = SetOption(options, assignment)) return *fault;
  }
  if (auto fault = CheckOptions(options)) return *fault;
  return DisplaySettings(options);
}

}  // namespace

std::string Version() {
  return VEXA_VERSION;
}

Sounding::Sounding(std::shared_ptr<const Held> held) : held_(std::move(held)) {}

std::string Sounding::Title() const {
  return held_->Of.Record().StationTitle;
}

std::string Sounding::Time() const {
  return IsoTimeText(held_->Of.Record().Time);
}

std::vector<Level> Sounding::Levels() const {
  const SoundingRecord& record = held_->Of.Record();
  const auto& heights = held_->Results().Levels.Height;
  std::vector<Level> levels;
  for (int i = 1; i <= record.NumTempLevels(); ++i) {
    levels.push_back({record.Press(i), Present(record.Temp(i)), Present(record.Dewpt(i)),
                      i <= heights.Count() ? report::Height(heights(i)) : std::nullopt});
  }
  return levels;
}

std::vector<Wind> Sounding::Winds() const {
  const SoundingRecord& record = held_->Of.Record();
  std::vector<Wind> winds;
  for (int i = 1; i <= record.NumWindLevels(); ++i) {
    winds.push_back({record.WindHgt(i), Present(record.WindDir(i)), Present(record.WindSpd(i))});
  }
  return winds;
}

Parcel Sounding::Lifted(Lift lift) const {
  constexpr analysis::LiftType kTypes[] = {
      analysis::LiftType::Surface, analysis::LiftType::MeanLayer, analysis::LiftType::MostUnstable};
  const analysis::ParcelAscent& ascent =
      held_->Results().Ascent(kTypes[static_cast<std::size_t>(lift)]);
  return {report::Pressure(ascent.Condensation.Press), report::Pressure(ascent.FreeLevel.Press),
          report::Pressure(ascent.Equilibrium.Press),
          report::Energy(ascent, &analysis::ParcelAscent::CapeTotal),
          report::Energy(ascent, &analysis::ParcelAscent::CinTotal)};
}

std::optional<double> Sounding::Index(const std::string& label) const {
  const analysis::IndexRow* row = analysis::FindIndex(label);
  for (const analysis::IndexValue& index : held_->Results().Indices) {
    if (index.Row == row) return report::IndexNumber(index);
  }
  return std::nullopt;
}

std::string Sounding::Doubts() const {
  return FindingText(held_->Of.Finding());
}

std::vector<std::string> Sounding::Notes() const {
  return held_->Of.Notes();
}

std::string Sounding::Json() const {
  return report::SoundingJson(report::ReportOf(held_->Of, held_->File, held_->Set), held_->Set);
}

std::string Sounding::Svg(int widthPx, int heightPx) const {
  const SoundingRecord& record = held_->Of.Record();
  const analysis::AnalysisResults& results = held_->Results();
  const hodograph::HodographInput winds{.Sounding = record, .Results = results, .Set = held_->Set};
  std::vector<PageBox> boxes;
  if (auto box = hodograph::HodographBox(winds)) boxes.push_back(std::move(*box));
  const auto plot = diagram::PlotSounding({.Sounding = record,
                                           .Results = results,
                                           .Set = held_->Set,
                                           .On = ImageSurface(widthPx, heightPx),
                                           .Boxes = std::move(boxes)});
  return plot ? ToSvg(plot->Page, widthPx, heightPx) : std::string();
}

std::string Sounding::Native() const {
  return WriteRaw(held_->Of.Record());
}

Loaded Load(const std::string& file, const Settings& settings) {
  const Outcome<DisplaySettings> options = OptionsOf(settings.Options);
  if (!options) return Failed(file, options.Error());
  const Outcome<StationList> stations = StationsOf(settings.StationFile);
  if (!stations) return Failed(settings.StationFile, stations.Error());
  Loading loading = LoadSounding({.File = PathFromText(file), .Index = settings.Number - 1},
                                 {.Stations = &stations.Value()});
  if (loading.Failed) return Failed(file, *loading.Failed);
  auto held = std::make_shared<Held>(Held{
      .File = file, .Of = AnalysedSounding(*std::move(loading.Sounding)), .Set = options.Value()});
  held->Results();
  return {.Found = Sounding(std::move(held))};
}

std::vector<std::string> Titles(const std::string& file) {
  Outcome<std::vector<ingest::SourceEntry>> listed = ListOf(PathFromText(file));
  if (!listed) return {};
  std::vector<std::string> titles;
  for (ingest::SourceEntry& entry : listed.Value()) {
    titles.push_back(std::move(entry.Title));
  }
  return titles;
}

}  // namespace vexa::engine
