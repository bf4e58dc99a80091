#include "program/usual_values.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "archive/catalogue.h"
#include "archive/columns.h"
#include "core/numbers.h"
#include "program/program.h"

namespace vexa {
namespace {

diagram::Usual LevelsOf(const archive::Climate& climate) {
  const auto band = [](const std::optional<archive::Band>& from) {
    return from ? std::optional(diagram::UsualBand{(*from)[0], (*from)[1], (*from)[2]})
                : std::nullopt;
  };
  diagram::Usual usual;
  for (std::size_t i = 0; i < climate.Levels.size(); ++i) {
    const archive::LevelClimate& level = climate.Levels[i];
    usual.Levels.push_back({.Press = static_cast<double>(archive::kStandardPress[i]),
                            .Temp = band(level.Temp),
                            .Dewpt = band(level.Dewpt),
                            .Speed = band(level.Speed)});
  }
  return usual;
}

const archive::IndexClimate* Find(const archive::Climate& climate,
                                  const analysis::IndexRow& index) {
  const auto found = std::ranges::find_if(climate.Indices, [&](const archive::IndexClimate& one) {
    return one.Index->Index == &index;
  });
  return found == climate.Indices.end() ? nullptr : &*found;
}

std::optional<double> NumberOf(const analysis::IndexRow& index,
                               const analysis::AnalysisResults& results) {
  const archive::Cell cell = archive::IndexCell(index, results);
  const auto* number = std::get_if<double>(&cell);
  return number == nullptr ? std::nullopt : std::optional(*number);
}

// Bars of eight heights, the tallest the fullest: "▁▃█[▅]▂·▁".
std::string Bars(const archive::Distribution& values, double value) {
  constexpr int kBars = 16;
  constexpr std::string_view kHeights[] = {"▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
  const double least = values.Percentile(0), most = values.Percentile(100);
  const auto barOf = [&](double one) {
    const double share = most > least ? (one - least) / (most - least) : 0;
    return static_cast<std::size_t>(std::clamp(static_cast<int>(share * kBars), 0, kBars - 1));
  };
  std::vector<int> counts(kBars);
  for (const float one : values.Sorted()) ++counts[barOf(one)];
  const int fullest = std::ranges::max(counts);
  std::string text;
  for (std::size_t i = 0; i < counts.size(); ++i) {
    const auto height = static_cast<std::size_t>((8 * counts[i] - 1) / fullest);
    const std::string bar(counts[i] == 0 ? "·" : kHeights[height]);
    text += i == barOf(value) ? "[" + bar + "]" : bar;
  }
  return text;
}

}  // namespace

std::optional<std::string> UsualValues::Follow(const std::filesystem::path& catalogue,
                                               const SoundingRecord& sounding,
                                               const analysis::AnalysisResults& results,
                                               const AnalysisSettings& settings) {
  const std::optional<archive::ClimateRequest> request = archive::RequestFor(sounding);
  if (catalogue.empty() || !request) {
    key_.reset();
    climate_.reset();
    return std::nullopt;
  }
  Key key{catalogue, *request, settings};
  std::optional<std::string> told;
  if (key_ != key || (hasFailed_ && StampOf(catalogue) != stamp_)) told = LookUp(std::move(key));
  Rank(results);
  return told;
}

std::optional<std::string> UsualValues::LookUp(Key key) {
  climate_.reset();
  stamp_ = StampOf(key.Catalogue);
  archive::ClimateRequest request = key.Of;
  request.Settings = archive::Fingerprint(key.Settings);
  const std::string name = TextFromPath(key.Catalogue.filename());
  key_ = std::move(key);
  // Nobody waits for another process: what is usual can be told later.
  Outcome<archive::Catalogue> catalogue =
      archive::Catalogue::Open(key_->Catalogue, {.MayWrite = false, .WaitMs = 0});
  std::optional<Outcome<archive::Climate>> found;
  if (catalogue) found = archive::ClimateOf(catalogue.Value(), request);
  hasFailed_ = !found || !*found;
  if (hasFailed_) {
    const Fault& fault = found ? found->Error() : catalogue.Error();
    return "No percentiles: " + name + ": " + fault.Detail + ".";
  }
  archive::Climate& climate = found->Value();
  if (climate.Ascents < request.LeastSample) {
    std::string text = "No percentiles: " + name + " has " + climate.SampleText() + ", of " +
                       Shortest(request.LeastSample) + " that are wanted";
    if (climate.UnderOthers > 0) {
      text +=
          "; " + archive::GroupedCount(climate.UnderOthers) + " were analysed under other settings";
    }
    return text + ".";
  }
  shown_ = LevelsOf(climate);
  climate_ = std::move(climate);
  return std::nullopt;
}

void UsualValues::Rank(const analysis::AnalysisResults& results) {
  shown_.Ranks.clear();
  if (!climate_) return;
  for (const archive::IndexClimate& index : climate_->Indices) {
    const auto value = NumberOf(*index.Index->Index, results);
    const bool isSpread = index.Values.Percentile(0) < index.Values.Percentile(100);
    if (!value || !isSpread) continue;
    shown_.Ranks.push_back({index.Index->Index, archive::ShownRank(index.Values.RankOf(*value))});
  }
}

std::string UsualValues::Hint(const analysis::IndexRow& index,
                              const analysis::AnalysisResults& results,
                              const analysis::IndexUnits& units) const {
  const archive::IndexClimate* known = climate_ ? Find(*climate_, index) : nullptr;
  const std::optional<double> value = NumberOf(index, results);
  if (known == nullptr || !value) return {};
  const archive::Distribution& values = known->Values;
  const auto shown = [&](double percent) {
    return analysis::ShowIndex({.Row = &index, .Value = values.Percentile(percent)}, units).Text();
  };
  return archive::RankText(values.RankOf(*value), values.Count(), *climate_) + "\n" + shown(0) +
         "  " + Bars(values, *value) + "  " + shown(100) + "\n10 %: " + shown(10) +
         "   median: " + shown(50) + "   90 %: " + shown(90) + "\n";
}

std::optional<std::string> FollowCatalogue(Program& program) {
  std::filesystem::path path = PathFromText(program.Set.System.Catalogue);
  if (!path.empty() && path.is_relative()) path = program.Where.Root / path;
  return program.Usual.Follow(path, program.Current.Record, program.Results, program.Set);
}

}  // namespace vexa
