#include "program/section_work.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "analysis/turbulence.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/user_file.h"
#include "mountainwave/mountain_file.h"
#include "mountainwave/wave_model.h"
#include "sounding/sounding_walk.h"

namespace vexa {
namespace {

using analysis::AirLayer;
using analysis::Intensity;
using crosssection::Column;

constexpr double kWaveStep = 100;  // m between two heights that are asked for their turbulence

auto OrderOf(const ObservationTime& time) {
  return std::tuple(time.Year, time.Month, time.Day, time.Hour, time.Minute);
}

std::vector<AirLayer> WaveLayersOf(const Column& column, const std::filesystem::path& mountains) {
  std::vector<AirLayer> layers;
  const analysis::LevelProfile& levels = column.Levels;
  if (levels.Count() < 2) return layers;
  const mountainwave::WaveResults waves = mountainwave::ComputeWaves(
      column.Sounding, levels, mountainwave::SiteOf(column.Sounding, mountains));
  if (!waves.Any()) return layers;
  const double ground = column.Ground();
  const double top = levels.Height.Top() - ground;
  bool isOpen = false;
  for (double height = 0; height <= top; height += kWaveStep) {
    const analysis::WaveWord word = TurbulenceAt(waves, height);
    const analysis::LevelPoint at{analysis::GetPRESS(levels, ground + height), ground + height};
    if (word.Class == Intensity::None) {
      isOpen = false;
      continue;
    }
    if (!isOpen || layers.back().Class != word.Class) {
      layers.push_back({.Base = at, .Class = word.Class, .Word = word.Short});
    }
    layers.back().Top = at;
    isOpen = true;
  }
  std::erase_if(layers,
                [](const AirLayer& layer) { return layer.Top.Height <= layer.Base.Height; });
  return layers;
}

template <class T>
std::size_t BytesIn(const std::vector<T>& values) {
  return values.capacity() * sizeof(T);
}
template <class T>
std::size_t BytesIn(const Levels<T>& levels) {
  return BytesIn(levels.Values());
}

}  // namespace

bool IsChosen(const ObservationTime& time, const SectionChoice& choice) {
  if (!choice.From && !choice.Until) return true;
  if (!time.Known()) return false;
  return (!choice.From || OrderOf(time) >= OrderOf(*choice.From)) &&
         (!choice.Until || OrderOf(time) <= OrderOf(*choice.Until));
}

Column SectionWork::ColumnOf(const SoundingRecord& sounding, const std::string& source) {
  Column column = crosssection::ColumnOf(sounding, source, set_, adiabats_);
  column.Waves = WaveLayersOf(column, mountains_);
  return column;
}

void SectionWork::Keep(const Loading& loading, const std::string& file, const std::string& numbered,
                       const SectionChoice& choice, crosssection::Section& into) {
  if (loading.Failed) {
    troubles_.push_back({.Name = numbered, .Failed = *loading.Failed});
    return;
  }
  const SoundingRecord& record = loading.Sounding->Record;
  if (!IsChosen(record.Time, choice)) return;
  if (loading.Sounding->Finding.Number != 0) {
    troubles_.push_back({.Name = numbered, .Finding = loading.Sounding->Finding});
  }
  into.Columns.push_back(ColumnOf(record, file));
  into.Columns.back().Order = static_cast<int>(into.Columns.size());
}

bool SectionWork::LoadFile(const std::filesystem::path& file, const SectionChoice& choice,
                           const LoadPolicy& policy, Progress& progress, double done, double part,
                           crosssection::Section& into) {
  const std::string name = TextFromPath(file);
  if (!choice.From && !choice.Until && NamedSounding(file)) {
    if (!progress.Begin("Loading " + name, done)) return false;
    Keep(reader_.Load({.File = file}, policy), name, name, choice, into);
    return true;
  }
  const Outcome<std::vector<ingest::SourceEntry>> listed = ListOf(file);
  if (!listed) {
    troubles_.push_back({.Name = name, .Failed = listed.Error()});
    return true;
  }
  const std::vector<ingest::SourceEntry>& entries = listed.Value();
  const int count = std::max(1, static_cast<int>(entries.size()));
  for (int i = 0; i < count; ++i) {
    if (!choice.Indices.empty() && count > 1 && !choice.Indices.contains(i)) continue;
    // Formats of one sounding list none; the time of these is known when they have been read.
    if (!entries.empty() && !IsChosen(entries[static_cast<std::size_t>(i)].Time, choice)) continue;
    const std::string numbered = count > 1 ? name + ", sounding " + Shortest(i + 1) : name;
    if (!progress.Begin("Loading " + numbered, done + part * i / count)) return false;
    Keep(reader_.Load({.File = file, .Index = i}, policy), name, numbered, choice, into);
    // One too many tells WhyNoSection; a record of decades is not read to its end for that.
    if (into.Columns.size() > crosssection::kMostColumns) return true;
  }
  return true;
}

bool SectionWork::Load(const std::vector<std::filesystem::path>& files, const SectionChoice& choice,
                       const LoadPolicy& policy, Progress progress, crosssection::Section& into) {
  const double part = 1.0 / std::max<double>(1, static_cast<double>(files.size()));
  double done = 0;
  for (const std::filesystem::path& file : files) {
    if (!LoadFile(file, choice, policy, progress, done, part, into)) return false;
    done += part;
  }
  return true;
}

bool SectionWork::Load(const std::vector<SoundingSet::Member>& members, const SectionChoice& span,
                       const LoadPolicy& policy, Progress progress, crosssection::Section& into) {
  std::vector<std::pair<std::filesystem::path, SectionChoice>> files;
  for (const SoundingSet::Member& member : members) {
    auto known =
        std::ranges::find_if(files, [&](const auto& file) { return file.first == member.File; });
    if (known == files.end())
      known = files.insert(files.end(), {member.File, {.From = span.From, .Until = span.Until}});
    known->second.Indices.insert(member.Index);
  }
  const double part = 1.0 / std::max<double>(1, static_cast<double>(files.size()));
  double done = 0;
  for (const auto& [file, choice] : files) {
    if (!LoadFile(file, choice, policy, progress, done, part, into)) return false;
    done += part;
  }
  return true;
}

void SectionWork::Interpolate(crosssection::Section& section) {
  InterpolateSoundings(section, set_, adiabats_);
  for (Column& column : section.Columns) {
    if (column.IsInterpolated) column.Waves = WaveLayersOf(column, mountains_);
  }
}

crosssection::SectionOptions SectionOptionsFor(const std::filesystem::path& root,
                                               const Options& options) {
  std::vector<std::string> notes;
  const std::optional<std::string> kept =
      root.empty() ? std::nullopt : ReadUserFile(root / crosssection::SectionOptionsFile(), notes);
  if (kept) return crosssection::ReadSectionOptions(*kept);
  crosssection::SectionOptions own;
  own.Heights = options.Heights;
  own.Temp = options.ThermoTemp;
  own.Speed = options.Speed;
  own.Background = options.Screen;
  own.Barbs = options.BarbSize;
  return own;
}

std::size_t BytesOf(const std::vector<Column>& columns) {
  std::size_t bytes = columns.capacity() * sizeof(Column);
  for (const Column& column : columns) {
    const SoundingRecord& record = column.Sounding;
    for (const auto* levels : {&record.Press, &record.Temp, &record.Dewpt, &record.WindHgt,
                               &record.WindDir, &record.WindSpd}) {
      bytes += BytesIn(*levels);
    }
    const analysis::LevelProfile& p = column.Levels;
    for (const auto* levels :
         {&p.Press, &p.LogPress, &p.Temp, &p.Dewpt, &p.Height, &p.WetBulb, &p.ThetaE, &p.Theta,
          &p.VirtualTemp, &p.MixingRatio, &p.RelHumidity}) {
      bytes += BytesIn(*levels);
    }
    const analysis::LevelListing& l = column.Layers.Listing;
    for (const auto* levels : {&l.Density, &l.DValue, &l.Refractivity, &l.Modified, &l.Potential,
                               &l.Gradient, &l.WaterBelow}) {
      bytes += BytesIn(*levels);
    }
    bytes += BytesIn(column.Water) + BytesIn(column.Waves);
  }
  return bytes;
}

}  // namespace vexa
