#include "ingest/native.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "core/numbers.h"
#include "core/raw_file.h"
#include "core/record_edits.h"
#include "ingest/source_header.h"

namespace vexa::ingest {
namespace {

std::string LeftOut(std::string_view what, int count, std::string_view first) {
  return std::string(what) + " with impossible values, left out: " + Shortest(count) +
         "; the first: " + std::string(first) + '.';
}

// A file made by another program or by hand may hold anything. A fault when too little is left.
std::optional<Fault> KeepPossible(const SourceText& source, SoundingRecord& record,
                                  LoadContext& context) {
  constexpr int kFewest = 2;
  const SoundingRecord read = record;
  record.Press.Clear();
  record.Temp.Clear();
  record.Dewpt.Clear();
  std::string first;
  for (int i = 1; i <= read.NumTempLevels(); ++i) {
    const TempLevel level{read.Press(i), read.Temp(i), read.Dewpt(i)};
    if (IsPossible(level)) {
      record.AddTemp(level.Press, level.Temp, level.Dewpt);
    } else if (first.empty()) {
      first = Shortest(level.Press) + " hPa, " + Shortest(level.Temp) + " and " +
              Shortest(level.Dewpt) + " C";
    }
  }
  if (const int count = read.NumTempLevels() - record.NumTempLevels(); count > 0) {
    context.Notes.push_back(LeftOut("Temperature levels", count, first));
    if (record.NumTempLevels() < kFewest) {
      return Fault{kFaultTooFewLevels, "LoadRAW", source.Name() + ": " + context.Notes.back()};
    }
  }

  record.WindHgt.Clear();
  record.WindDir.Clear();
  record.WindSpd.Clear();
  first.clear();
  for (int i = 1; i <= read.NumWindLevels(); ++i) {
    const WindLevel level{read.WindHgt(i), read.WindDir(i), read.WindSpd(i)};
    if (IsPossible(level)) {
      record.AddWind(level.Height, level.Dir, level.Spd);
    } else if (first.empty()) {
      first = Shortest(level.Height) + " m, " + Shortest(level.Dir) + " degrees, " +
              Shortest(level.Spd) + " knots";
    }
  }
  if (const int count = read.NumWindLevels() - record.NumWindLevels(); count > 0) {
    context.Notes.push_back(LeftOut("Winds", count, first));
  }

  const int layers = record.NumCloudLayers();
  std::erase_if(record.Clouds.Values(), [](const CloudLayer& layer) { return !IsPossible(layer); });
  if (const int count = layers - record.NumCloudLayers(); count > 0) {
    context.Notes.push_back("Cloud layers with impossible bases, left out: " + Shortest(count) +
                            '.');
  }
  constexpr double kMostExtra = 1e6;  // their first value is a height in feet
  const auto isWild = [](double value) { return std::fabs(value) > kMostExtra; };
  if (std::ranges::any_of(record.ExtraRecord1, isWild) ||
      std::ranges::any_of(record.ExtraRecord2, isWild)) {
    record.ExtraRecord1 = {};
    record.ExtraRecord2 = {};
    context.Notes.push_back("Supplementary values that are impossible were left out.");
  }

  constexpr int kLowestElevM = -500, kHighestElevM = 9000;
  if (record.ElevUnknown || (record.ElevM >= kLowestElevM && record.ElevM <= kHighestElevM)) {
    return std::nullopt;
  }
  context.Notes.push_back("The elevation of " + Shortest(record.ElevM) + " m is impossible.");
  SetElevationUnknown(record);
  return std::nullopt;
}

}  // namespace

bool IsNative(const SourceText& source) {
  return RecogniseRaw(source.Bytes()).has_value();
}

std::optional<Fault> DecodeNative(const SourceText& source, LoadContext& context,
                                  SoundingRecord& into) {
  const RawVariant variant = RecogniseRaw(source.Bytes()).value_or(RawVariant::Plain);
  std::vector<RefusedWind> refused;
  std::optional<Fault> fault = ReadRaw(source.Bytes(), source.Name(), variant, into, refused);
  for (const RefusedWind& wind : refused) {
    const Box box = WindHeightBox(wind);
    context.Notes.push_back(box.Text);
    if (context.Ask != nullptr) context.Ask->Ask(box);
  }
  if (!into.Time.Known()) into.Time = TimeInTitle(into.StationTitle);
  const std::optional<Fault> impossible = KeepPossible(source, into, context);
  return fault ? fault : impossible;
}

}  // namespace vexa::ingest
