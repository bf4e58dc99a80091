// What is usual at a station by a catalogue, and which of its soundings are most like one.
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "analysis/adiabat_table.h"
#include "archive/analogues.h"
#include "archive/climate.h"
#include "cli/answers.h"
#include "cli/archive_parts.h"
#include "cli/archive_table.h"
#include "cli/inputs.h"
#include "cli/loaded_program.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "report/json.h"

namespace vexa::cli {
namespace {

using archive::Climate;
using archive::ClimateRequest;
using archive::Column;

// The sounding of a file, analysed.
struct Compared {
  AnalysedSounding Sounding;
  analysis::AdiabatTable Adiabats{};
  archive::Entered AsEntered(const AnalysisSettings& settings) {
    return {Sounding, Sounding.Results(settings, &Adiabats), archive::Fingerprint(settings)};
  }
};

// "06-15" as a day of the year.
std::optional<int> DayFrom(const std::string& text) {
  constexpr std::size_t kMonth = 2;
  if (text.size() != 5 || text[kMonth] != '-') return std::nullopt;
  const std::optional<int> month = ParseWhole(text.substr(0, kMonth));
  const std::optional<int> day = ParseWhole(text.substr(kMonth + 1));
  const int number = month && day ? archive::DayOfYear(*month, *day) : 0;
  return number > 0 ? std::optional(number) : std::nullopt;
}

// One index as it is told.
struct Line {
  const Column* Index;
  const archive::Distribution* Values;
  std::optional<double> Value;  // of the sounding
};

constexpr double kPercents[] = {0, 10, 25, 50, 75, 90, 100};
constexpr int kDecimals = 3;

std::string RankOf(const Line& line, const Climate& climate) {
  if (!line.Value) return {};
  return archive::RankText(line.Values->RankOf(*line.Value), line.Values->Count(), climate);
}

std::string TextOf(const std::vector<Line>& lines, const Climate& climate) {
  std::string text = climate.SampleText() + " at " + Mask(climate.Of.Station, "00000") + "\n";
  if (climate.UnderOthers > 0) {
    text += archive::GroupedCount(climate.UnderOthers) +
            " more were analysed under other settings and are left out.\n";
  }
  text += PadRight("", 12) + PadRight("", 11) + PadLeft("n", 7) + PadLeft("least", 10) +
          PadLeft("10 %", 10) + PadLeft("25 %", 10) + PadLeft("median", 10) + PadLeft("75 %", 10) +
          PadLeft("90 %", 10) + PadLeft("most", 10) + "\n";
  for (const Line& line : lines) {
    text += PadRight(line.Index->Name, 12) + PadRight(line.Index->Unit, 11) +
            PadLeft(archive::GroupedCount(line.Values->Count()), 7);
    for (const double percent : kPercents) {
      text += PadLeft(Shortest(Rounded(line.Values->Percentile(percent), 2)), 10);
    }
    if (line.Value) text += "   " + Shortest(*line.Value) + ": " + RankOf(line, climate);
    text += "\n";
  }
  const std::string least = std::to_string(climate.Of.LeastSample);
  if (lines.empty()) text += "No index has " + least + " values.\n";
  return text +
         "Percentiles linear between ordered values (Hyndman and Fan, definition 7); none of fewer "
         "than " +
         least + " values.\n";
}

std::string CsvOf(const std::vector<Line>& lines, const Climate& climate) {
  std::string text =
      "index,unit,n,first year,last year,least,p10,p25,median,p75,p90,most,value,percentile\n";
  for (const Line& line : lines) {
    text += CsvField(line.Index->Name) + ',' + CsvField(line.Index->Unit) + ',' +
            std::to_string(line.Values->Count()) + ',' + std::to_string(climate.FirstYear) + ',' +
            std::to_string(climate.LastYear);
    for (const double percent : kPercents) {
      text += ',' + Shortest(Rounded(line.Values->Percentile(percent), kDecimals));
    }
    text += line.Value ? ',' + Shortest(*line.Value) + ',' +
                             Shortest(Rounded(line.Values->RankOf(*line.Value), 1))
                       : ",,";
    text += "\n";
  }
  return text;
}

report::Json BandJson(const std::optional<archive::Band>& band) {
  if (!band) return nullptr;
  report::Json json = report::Json::array();
  for (const double value : *band) json.push_back(report::Number(Rounded(value, kDecimals)));
  return json;
}

std::string JsonOf(const std::vector<Line>& lines, const Climate& climate) {
  report::Json json;
  json["station"] = climate.Of.Station;
  json["sample"] = climate.SampleText();
  json["ascents"] = climate.Ascents;
  json["left out under other settings"] = climate.UnderOthers;
  json["years"] = {climate.FirstYear, climate.LastYear};
  json["least sample"] = climate.Of.LeastSample;
  json["percentiles"] = "linear between ordered values, Hyndman and Fan 1996, definition 7";
  report::Json& indices = json["indices"] = report::Json::array();
  for (const Line& line : lines) {
    report::Json row;
    row["index"] = line.Index->Name;
    row["unit"] = line.Index->Unit;
    row["n"] = line.Values->Count();
    for (const double percent : kPercents) {
      row["p" + Shortest(percent)] =
          report::Number(Rounded(line.Values->Percentile(percent), kDecimals));
    }
    if (line.Value) {
      row["value"] = report::Number(*line.Value);
      row["percentile"] = report::Number(Rounded(line.Values->RankOf(*line.Value), 1));
      row["rank"] = RankOf(line, climate);
    }
    indices.push_back(std::move(row));
  }
  report::Json& levels = json["levels"] = report::Json::array();
  for (std::size_t i = 0; i < climate.Levels.size(); ++i) {
    const archive::LevelClimate& level = climate.Levels[i];
    report::Json row;
    row["pressure"] = archive::kStandardPress[i];
    row["temperature p10 p50 p90"] = BandJson(level.Temp);
    row["dewpoint p10 p50 p90"] = BandJson(level.Dewpt);
    row["wind speed p10 p50 p90"] = BandJson(level.Speed);
    levels.push_back(std::move(row));
  }
  return report::JsonText(json) + "\n";
}

// What the options say over what the sounding says. A reason where they are wrong.
std::optional<std::string> TakeOptions(const Arguments& given, ClimateRequest& request) {
  if (const auto station = given.Whole("--station")) request.Station = *station;
  if (const auto month = given.Whole("--month")) request.Month = *month;
  if (const auto hour = given.Whole("--hour")) request.Hour = *hour;
  if (const auto least = given.Whole("--least")) request.LeastSample = *least;
  if (const auto day = given.Value("--day")) {
    request.DayOfYear = DayFrom(*day);
    if (!request.DayOfYear) return "--day is MM-DD, not \"" + *day + '"';
  }
  if (const auto window = given.Whole("--window")) {
    if (!request.DayOfYear) return "--window wants --day or a sounding";
    request.WindowDays = *window;
  }
  if (request.Station == 0) return "climate wants --station, or a sounding with a number";
  return std::nullopt;
}

}  // namespace

int RunClimate(const ArchiveWork& work) {
  const Outcome<CommandSetup> setup = SetupOf(work.Given, work.Out);
  if (!setup) return WrongWords(work, setup.Error().Detail);
  const AnalysisSettings& settings = setup.Value().Settings.Set;
  Inputs inputs(work.Out, setup.Value().Stations, 0);
  ClimateRequest request;
  std::optional<Compared> compared;
  if (!work.Words.empty()) {
    std::optional<LoadedSounding> loaded = inputs.Load(work.Words.front());
    if (!loaded) return inputs.ExitCode();
    compared.emplace(Compared{AnalysedSounding(*std::move(loaded))});
    const SoundingRecord& record = compared->Sounding.Record();
    if (const auto own = archive::RequestFor(record)) {
      request = *own;
      const bool hasDay = work.Given.Has("--window") && !work.Given.Has("--month");
      if (hasDay) request.DayOfYear = archive::DayOfYear(record.Time.Month, record.Time.Day);
    }
  }
  if (const auto wrong = TakeOptions(work.Given, request)) return WrongWords(work, *wrong);
  request.Settings = archive::Fingerprint(settings);
  Outcome<archive::Catalogue> catalogue = OpenCatalogue(work, {.MayWrite = false});
  if (!catalogue) return CatalogueFailed(work, work.Name, catalogue.Error());
  const Outcome<Climate> found = archive::ClimateOf(catalogue.Value(), request);
  if (!found) return CatalogueFailed(work, work.Name, found.Error());
  const Climate& climate = found.Value();
  std::vector<Line> lines;
  for (const archive::IndexClimate& index : climate.Indices) {
    lines.push_back({index.Index, &index.Values, std::nullopt});
    if (!compared) continue;
    const archive::Cell value = archive::ValueOf(*index.Index, compared->AsEntered(settings));
    if (const auto* number = std::get_if<double>(&value)) lines.back().Value = *number;
  }
  const std::string format = work.Given.Value("--format").value_or("text");
  if (format == "list") return WrongWords(work, "climate has no list");
  work.Out.Out(format == "csv"    ? CsvOf(lines, climate)
               : format == "json" ? JsonOf(lines, climate)
                                  : TextOf(lines, climate));
  return inputs.ExitCode();
}

int RunAnalogues(const ArchiveWork& work) {
  const Outcome<CommandSetup> setup = SetupOf(work.Given, work.Out);
  if (!setup) return WrongWords(work, setup.Error().Detail);
  const AnalysisSettings& settings = setup.Value().Settings.Set;
  Inputs inputs(work.Out, setup.Value().Stations, 0);
  const auto columns =
      ColumnsNamed(work.Given.Value("--columns").value_or("time,station,name,file,sounding"));
  if (!columns) return WrongWords(work, columns.Error().Detail);
  std::optional<LoadedSounding> loaded = inputs.Load(work.Words.front());
  if (!loaded) return inputs.ExitCode();
  Compared compared{AnalysedSounding(*std::move(loaded))};
  const ObservationTime& time = compared.Sounding.Record().Time;
  archive::AnalogueRequest request{
      .Station = work.Given.Whole("--station").value_or(0),
      .Most = static_cast<std::size_t>(work.Given.Whole("--most").value_or(10))};
  if (time.Known()) {
    request.DayOfYear = archive::DayOfYear(time.Month, time.Day);
    request.Hour = time.Hour;
  }
  if (const auto days = work.Given.Whole("--window")) request.WindowDays = *days;
  if (const auto hours = work.Given.Whole("--hours")) request.WindowHours = *hours;
  Outcome<archive::Catalogue> catalogue = OpenCatalogue(work, {.MayWrite = false});
  if (!catalogue) return CatalogueFailed(work, work.Name, catalogue.Error());
  const Outcome<archive::Vectors> vectors = archive::Vectors::Of(catalogue.Value());
  if (!vectors) return CatalogueFailed(work, work.Name + ".alike", vectors.Error());
  const std::string format = work.Given.Value("--format").value_or("text");
  static const Column kDistance{.Name = "distance", .Kind = archive::ColumnKind::Number};
  std::vector<const Column*> asked = columns.Value();
  if (format == "list") {
    asked = ColumnsNamed("file,sounding").Value();
  } else {
    asked.insert(asked.begin(), &kDistance);
  }
  const auto table = MakeArchiveTable(format, asked, work.Out);
  const std::size_t first = format == "list" ? 0 : 1;
  for (const archive::Analogue& analogue :
       vectors.Value().Nearest(compared.AsEntered(settings), request)) {
    auto cells = archive::RowOf(catalogue.Value(), analogue.Id, std::span(asked).subspan(first));
    if (!cells) return CatalogueFailed(work, work.Name, cells.Error());
    if (first > 0)
      cells.Value().insert(cells.Value().begin(), Rounded(analogue.Distance, kDecimals));
    table->Add(cells.Value());
  }
  table->End();
  return inputs.ExitCode();
}

}  // namespace vexa::cli
