// What an index reads of a sounding. Every value that passes through the reader can be noted with
// its name, unit and level, and the first one that is missing leaves the reason: so each index can
// say how its number came about, or why there is none, without a line of prose of its own.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/analysis.h"
#include "analysis/analysis_settings.h"
#include "analysis/index_value.h"
#include "analysis/interpolate.h"
#include "core/sounding_record.h"

namespace vexa::analysis {

class IndexReader;

/// What several indices of a sounding read alike, found once for all of them.
class SharedReadings {
  friend class IndexReader;
  struct Place {
    double Press = 0;
    PressurePlace At{};
    std::optional<WindSample> Wind{};
  };
  struct Part {
    double (*Compute)(IndexReader&) = nullptr;
    double Value = 0;
    std::string Reason{};  // why there is none
  };
  Place& Find(const LevelProfile& levels, double press);

  std::vector<Place> places_{};
  std::vector<Part> parts_{};
};

class IndexReader {
 public:
  /// Whether each value that is read is noted down, or only the reason for a missing one.
  enum class Notes { Keep, Drop };

  /// told   takes what is told beside the number and the reason why there is none
  IndexReader(const SoundingRecord& sounding, const AnalysisResults& results,
              const AnalysisSettings& options, SharedReadings& shared, Notes notes,
              IndexValue& told)
      : sounding_(sounding),
        results_(results),
        options_(options),
        shared_(shared),
        notes_(notes),
        told_(told) {}

  // Each gives 0 once something is missing: the index goes through its formula and is dropped.
  double Temp(double press);         // °C, as GetTEMP gives it
  double Dewpt(double press);        // °C
  double WetBulb(double press);      // °C
  double VirtualTemp(double press);  // °C
  double ThetaE(double press);       // K
  double MixingRatio(double press);  // g/kg
  double Height(double press);       // m above mean sea level; 1000 hPa also below the ground
  Wind WindAt(double press);         // as GetWIND gives it
  double SurfaceTemp();              // °C
  double SurfaceDewpt();             // °C
  double SurfacePress();             // hPa
  Wind SurfaceWind();                // the lowest within 100 m above ground

  double Cape();  // J/kg, total of the chosen parcel
  double CapeOf(const ParcelAscent& parcel, std::string_view name);  // of any
  double BrnShear();                                                 // m²/s²
  double Helicity(double depthKm);    // m²/s², relative to the chosen mover
  const Mover& ChosenMover();         // fails without one
  void NeedWinds(double depth);       // fails where they do not stand for the lowest m of air
  double FreezingHeight();            // m above ground of the lowest with warm air below
  bool FreezesWithWarmBelow() const;  // true where there is such a level
  WindVector MeanWind(double bottom, double top);  // kt, between heights in m above ground

  /// A value that several indices are made of: worked out once where nothing is noted of it.
  double Part(double (*compute)(IndexReader& in));

  /// Notes a value that the index worked out itself.
  double Note(std::string_view name, double value, std::string_view unit);
  /// Notes a setting that the value depends on.
  void Setting(std::string_view label, std::string_view value);
  /// What is told beside the number or in its place: a word, the direction of a wind in degrees,
  /// the two values of which it is the larger, that it is only a bound.
  void Say(std::string word) { told_.Text = std::move(word); }
  void SayDirection(double degrees) { told_.Direction = degrees; }
  void SayBoth(double first, double second) { told_.Both = {first, second}; }
  void SayBound();
  /// There is no value, for this reason; the first reason stays. Gives 0.
  double Fail(std::string reason);

  /// Whether values are noted down: a note that costs something to make is made then only.
  bool Keeps() const { return notes_ == Notes::Keep && !Failed(); }
  bool Failed() const { return !told_.Reason.empty(); }
  std::vector<IndexInput>& Inputs() { return inputs_; }

  const SoundingRecord& Sounding() const { return sounding_; }
  const AnalysisResults& Results() const { return results_; }
  const LevelProfile& Levels() const { return results_.Levels; }
  const AnalysisSettings& Set() const { return options_; }

 private:
  const LevelPoint* LowestFreezing() const;
  double Read(std::string_view name, double press, Quantity quantity, std::string_view unit);
  std::string WhyNot(std::string_view what, double press) const;

  const SoundingRecord& sounding_;
  const AnalysisResults& results_;
  const AnalysisSettings& options_;
  SharedReadings& shared_;
  Notes notes_;
  IndexValue& told_;
  std::vector<IndexInput> inputs_{};
};

}  // namespace vexa::analysis
