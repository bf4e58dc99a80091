// What an index reads of a sounding. Every value that passes through the reader is noted with its
// name, unit and level, and the first one that is missing leaves the reason: so each index can say
// how its number came about, or why there is none, without a line of prose of its own.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "analysis/analysis.h"
#include "analysis/index_value.h"
#include "analysis/interpolate.h"
#include "config/options.h"
#include "core/sounding_record.h"

namespace vexa::analysis {

class IndexReader {
 public:
  IndexReader(const SoundingRecord& sounding, const AnalysisResults& results,
              const Options& options)
      : sounding_(sounding), results_(results), options_(options) {}

  // Each gives 0 once something is missing: the index goes through its formula and is dropped.
  double Temp(double press);     // °C, as GetTEMP gives it
  double Dewpt(double press);    // °C
  double WetBulb(double press);  // °C
  double ThetaE(double press);   // K
  double Height(double press);   // m above mean sea level; 1000 hPa also below the ground
  Wind WindAt(double press);     // as GetWIND gives it
  double SurfaceTemp();          // °C
  double SurfaceDewpt();         // °C
  double SurfacePress();         // hPa
  Wind SurfaceWind();            // the lowest within 100 m above ground

  double Cape();                    // J/kg, total of the chosen parcel
  double BrnShear();                // m²/s²
  double Helicity(double depthKm);  // m²/s², relative to the mover that turns cyclonically

  /// Notes a value that the index worked out itself.
  double Note(std::string_view name, double value, std::string_view unit);
  /// Notes a setting that the value depends on.
  void Setting(std::string_view label, std::string_view value);
  /// There is no value, for this reason; the first reason stays. Gives 0.
  double Fail(std::string reason);

  bool Failed() const { return !reason_.empty(); }
  const std::string& Reason() const { return reason_; }
  std::vector<IndexInput>& Inputs() { return inputs_; }

  const SoundingRecord& Sounding() const { return sounding_; }
  const AnalysisResults& Results() const { return results_; }
  const LevelProfile& Levels() const { return results_.Levels; }
  const Options& Set() const { return options_; }

 private:
  double Read(std::string_view name, double press, Quantity quantity, std::string_view unit);
  std::string WhyNot(std::string_view what, double press) const;

  const SoundingRecord& sounding_;
  const AnalysisResults& results_;
  const Options& options_;
  std::vector<IndexInput> inputs_{};
  std::string reason_{};
};

}  // namespace vexa::analysis
