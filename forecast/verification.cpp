#include "forecast/verification.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>

#include "analysis/analysis_settings.h"
#include "analysis/interpolate.h"
#include "core/great_circle.h"
#include "core/markers.h"
#include "core/numbers.h"

namespace vexa::forecast {
namespace {

// What is compared of a sounding at a level.
struct LevelValues {
  std::optional<double> Temp{}, Dewpt{};
  std::optional<analysis::WindVector> Wind{};
};

LevelValues ValuesAt(const Profile& profile, double press) {
  LevelValues values;
  const double ground = profile.Levels.Count() > 0 ? profile.Levels.Press(1) : 0;
  const double at = press > 0 ? press : ground;
  const auto value = [&](analysis::Quantity quantity) -> std::optional<double> {
    const analysis::Sample sample = SampleAt(profile.Levels, at, quantity);
    if (!sample.Ok() || NotAvailable(sample.Value)) return std::nullopt;
    return sample.Value;
  };
  values.Temp = value(analysis::Quantity::Temp);
  values.Dewpt = value(analysis::Quantity::Dewpt);
  const analysis::Sample height = SampleAt(profile.Levels, at, analysis::Quantity::Height);
  if (height.Ok()) {
    const analysis::WindSample wind = analysis::WindAtHeight(profile.Sounding, height.Value);
    if (wind.Ok()) values.Wind = analysis::Components(wind.Value);
  }
  return values;
}

void AddScalar(const std::optional<double>& guess, const std::optional<double>& truth,
               ErrorSum& into) {
  const double difference = *guess - *truth;
  into.Add(difference, difference * difference);
}

void AddWind(const analysis::WindVector& guess, const analysis::WindVector& truth, ErrorSum& into) {
  const double u = guess.U - truth.U, v = guess.V - truth.V;
  into.Add(std::hypot(guess.U, guess.V) - std::hypot(truth.U, truth.V), u * u + v * v);
}

void Compare(const LevelValues& made, const LevelValues& old, const LevelValues& truth,
             VerificationRow& row) {
  if (made.Temp && old.Temp && truth.Temp) {
    AddScalar(made.Temp, truth.Temp, row.Forecast[0]);
    AddScalar(old.Temp, truth.Temp, row.Persistence[0]);
  }
  if (made.Dewpt && old.Dewpt && truth.Dewpt) {
    AddScalar(made.Dewpt, truth.Dewpt, row.Forecast[1]);
    AddScalar(old.Dewpt, truth.Dewpt, row.Persistence[1]);
  }
  if (made.Wind && old.Wind && truth.Wind) {
    AddWind(*made.Wind, *truth.Wind, row.Forecast[2]);
    AddWind(*old.Wind, *truth.Wind, row.Persistence[2]);
  }
}

// One ascent may stand in several files and formats.
std::vector<SharedProfile> WithoutRepeats(const std::vector<SharedProfile>& given) {
  std::vector<SharedProfile> kept;
  for (const SharedProfile& one : given) {
    if (!one->Sounding.Time.Known() || one->Sounding.NumTempLevels() < 2) continue;
    const bool repeats = std::ranges::any_of(kept, [&](const SharedProfile& other) {
      return other->Sounding.Time == one->Sounding.Time &&
             IsSameStation(other->Sounding, one->Sounding);
    });
    if (!repeats) kept.push_back(one);
  }
  return kept;
}

// Goes ahead to an hour; what ended the series before it.
SeriesEnd AdvanceTo(ForecastSeries& series, int hour, const ForecastSettings& set,
                    const AnalysisSettings& analysis) {
  while (static_cast<int>(series.Steps().size()) < hour) {
    const SeriesEnd end = series.Advance(set, analysis);
    if (end != SeriesEnd::No) return end;
  }
  return SeriesEnd::No;
}

void Count(SeriesEnd end, Verification& into) {
  switch (end) {
    case SeriesEnd::No:
      ++into.Forecasts;
      break;
    case SeriesEnd::NoUpwind:
      ++into.NoUpwind;
      break;
    case SeriesEnd::Threshold:
    case SeriesEnd::LastHour:
      ++into.Ended;
      break;
    case SeriesEnd::LayersOff:
    case SeriesEnd::NoWind:
    case SeriesEnd::NearEquator:
      ++into.NoWind;
      break;
  }
}

std::string LevelText(double press) {
  return press > 0 ? Shortest(press) : "surface";
}

std::string Cell(double value) {
  return PadLeft(Mask(value, "##0.0"), 7);
}

// By what the table shows: a tenth.
std::string Judgement(const ErrorSum& made, const ErrorSum& old) {
  const double difference = Rounded(made.Rmse(), 1) - Rounded(old.Rmse(), 1);
  return difference < -0.05 ? "  better" : difference > 0.05 ? "  worse" : "";
}

// Each quantity of each row that was compared at all, beside its persistence.
template <class Use>
void ForEachError(const Verification& verification, Use&& use) {
  for (const VerificationRow& row : verification.Rows) {
    for (const Verified quantity : kVerified) {
      const auto i = static_cast<std::size_t>(quantity);
      const ErrorSum& made = row.Forecast[i];
      const ErrorSum& old = row.Persistence[i];
      if (made.Count() == 0) continue;
      use(row, quantity, made, old);
    }
  }
}

}  // namespace

void ErrorSum::Add(double difference, double square) {
  ++count_;
  sum_ += difference;
  squares_ += square;
}

double ErrorSum::Bias() const {
  return count_ > 0 ? sum_ / count_ : 0;
}

double ErrorSum::Rmse() const {
  return count_ > 0 ? std::sqrt(squares_ / count_) : 0;
}

std::string_view Text(Verified quantity) {
  switch (quantity) {
    case Verified::Temp:
      return "T";
    case Verified::Dewpt:
      return "Td";
    case Verified::Wind:
      return "wind";
  }
  return "";
}

Verification Verify(const std::vector<SharedProfile>& given, const ForecastSettings& set,
                    const AnalysisSettings& analysis) {
  Verification all;
  const std::vector<SharedProfile> soundings = WithoutRepeats(given);
  std::map<std::pair<int, double>, VerificationRow> rows;  // by hour and falling pressure
  for (const SharedProfile& main : soundings) {
    const ObservationTime& from = main->Sounding.Time;
    if (!from.Known()) continue;
    std::map<int, SharedProfile> later;  // by hours ahead
    for (const SharedProfile& other : soundings) {
      if (!other->Sounding.Time.Known() || !IsSameStation(main->Sounding, other->Sounding))
        continue;
      const int hours = ToWhole(HoursBetween(from, other->Sounding.Time));
      if (hours >= 1 && hours <= kMostHours) later.emplace(hours, other);
    }
    if (later.empty()) continue;
    ForecastSeries series(set.Mode == ForecastMode::Single
                              ? Region{.Main = main}
                              : RegionAround(main, soundings, set.RadiusKm));
    for (const auto& [hours, truth] : later) {
      ++all.Pairs;
      const SeriesEnd end = AdvanceTo(series, hours, set, analysis);
      Count(end, all);
      if (end != SeriesEnd::No) continue;
      const SharedProfile made = ProfileOf(series.Steps().back().Sounding, "", analysis);
      const auto compare = [&, ahead = hours, &then = *truth](double press) {
        VerificationRow& row = rows[{ahead, press > 0 ? -press : -2000}];
        row.Hours = ahead;
        row.Press = press;
        Compare(ValuesAt(*made, press), ValuesAt(*main, press), ValuesAt(then, press), row);
      };
      compare(0);
      for (const double press : kVerifiedPress) compare(press);
    }
  }
  for (auto& [at, row] : rows) all.Rows.push_back(row);
  return all;
}

std::vector<std::string> VerificationText(const Verification& verification) {
  std::vector<std::string> lines = {
      Shortest(verification.Pairs) + " pairs of soundings: " + Shortest(verification.Forecasts) +
          " forecast, " + Shortest(verification.NoUpwind) + " without a sounding upwind, " +
          Shortest(verification.Ended) + " beyond the end of the series, " +
          Shortest(verification.NoWind) + " without winds to go by",
      "", "                            forecast      persistence",
      "hours    level          n   bias   RMSE   bias   RMSE"};
  ForEachError(verification, [&](const VerificationRow& row, Verified quantity,
                                 const ErrorSum& made, const ErrorSum& old) {
    lines.push_back(PadLeft(Shortest(row.Hours), 5) + " " + PadLeft(LevelText(row.Press), 8) +
                    "  " + PadRight(Text(quantity), 4) + PadLeft(Shortest(made.Count()), 5) +
                    Cell(made.Bias()) + Cell(made.Rmse()) + Cell(old.Bias()) + Cell(old.Rmse()) +
                    Judgement(made, old));
  });
  return lines;
}

std::string VerificationCsv(const Verification& verification) {
  std::string text =
      "hours,level (hPa),quantity,n,forecast bias,forecast rmse,persistence bias,persistence "
      "rmse\n";
  const auto cell = [](double value) { return "," + Shortest(Rounded(value, 3)); };
  ForEachError(verification, [&](const VerificationRow& row, Verified quantity,
                                 const ErrorSum& made, const ErrorSum& old) {
    text += Shortest(row.Hours) + "," + LevelText(row.Press) + "," + std::string(Text(quantity)) +
            "," + Shortest(made.Count()) + cell(made.Bias()) + cell(made.Rmse()) +
            cell(old.Bias()) + cell(old.Rmse()) + "\n";
  });
  return text;
}

}  // namespace vexa::forecast
