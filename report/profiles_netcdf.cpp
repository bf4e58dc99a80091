#include "report/profiles_netcdf.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <system_error>
#include <utility>
#include <vector>

#include "analysis/index_table.h"
#include "analysis/interpolate.h"
#include "core/files.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/platform.h"
#include "program/command_line.h"
#include "report/netcdf_file.h"
#include "report/values.h"

namespace vexa::report {

#if VEXA_NETCDF

namespace {

// What the conventions call an index, by its label; a unit where theirs is another one.
struct IndexNameRow {
  std::string_view Label;
  std::string_view Name;
};

constexpr IndexNameRow kStandardIndices[] = {
    {"KI", "atmosphere_stability_k_index"},
    {"TT", "atmosphere_stability_total_totals_index"},
    {"SI", "atmosphere_stability_showalter_index"},
    {"Water", "lwe_thickness_of_atmosphere_mass_content_of_water_vapor"},
    {"CAPE total", "atmosphere_convective_available_potential_energy"},
    {"CIN total", "atmosphere_convective_inhibition"},
    {"TROP Lvl", "tropopause_altitude"},
    {"FRZG Lvl", "freezing_level_altitude"},
    {"Wind-Chill", "wind_chill_of_air_temperature"},
};

// Names of variables are letters, figures and "_" only: "CAPE total" becomes CAPE_total.
std::string VariableName(std::string_view label) {
  std::string name = "index_";
  for (const char c : label) {
    const bool isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    if (isPlain) {
      name += c;
    } else if (name.back() != '_') {
      name += '_';
    }
  }
  if (name.back() == '_') name.pop_back();
  return name;
}

std::string UnitFor(const analysis::IndexRow& row) {
  if (row.Unit.empty()) return "1";
  if (row.Kind == analysis::Measure::TempDiff) return "K";
  return std::string(UdUnit(row.Unit));
}

float Measured(double value, bool isThere) {
  return isThere ? static_cast<float>(value) : NC_FILL_FLOAT;
}

// By which it shows whether a file is still the one that was read: "2108800 bytes, written
// 2019-06-15T12:00:00Z".
std::string StampText(const std::optional<FileStamp>& stamp) {
  if (!stamp) return {};
  using namespace std::chrono;
  const auto written = floor<seconds>(file_clock::to_sys(stamp->Written));
  const auto day = floor<days>(written);
  const year_month_day date{day};
  const hh_mm_ss time{written - day};
  const auto two = [](auto number) { return Mask(static_cast<int>(number), "00"); };
  return std::to_string(stamp->Size) + " bytes, written " +
         Mask(static_cast<int>(date.year()), "0000") + "-" +
         two(static_cast<unsigned>(date.month())) + "-" + two(static_cast<unsigned>(date.day())) +
         "T" + two(time.hours().count()) + ":" + two(time.minutes().count()) + ":" +
         two(time.seconds().count()) + "Z";
}

// One row of a profile: what was measured at one height.
struct Row {
  double Height = 0;
  float Press = NC_FILL_FLOAT, Temp = NC_FILL_FLOAT, Dewpt = NC_FILL_FLOAT;
  float Dir = NC_FILL_FLOAT, Speed = NC_FILL_FLOAT;
};

// Temperatures and winds are measured at heights of their own; those within a metre are one row.
std::vector<Row> RowsOf(const ReportedSounding& sounding) {
  const analysis::LevelProfile& levels = sounding.Results.Levels;
  std::vector<Row> rows;
  for (int i = 1; i <= levels.Count(); ++i) {
    rows.push_back({.Height = levels.Height(i),
                    .Press = Measured(levels.Press(i), true),
                    .Temp = Measured(levels.Temp(i), !NotAvailable(levels.Temp(i))),
                    .Dewpt = Measured(levels.Dewpt(i), !NotAvailable(levels.Dewpt(i)))});
  }
  const SoundingRecord& record = sounding.Record;
  const std::size_t temps = rows.size();
  std::size_t next = 0;
  for (int i = 1; i <= record.NumWindLevels(); ++i) {
    if (!record.HasWind(i)) continue;
    const double height = record.WindHgt(i);
    constexpr double kSame = 1;  // m
    while (next < temps && rows[next].Height < height - kSame) ++next;
    Row* row = next < temps && rows[next].Height <= height + kSame ? &rows[next++] : nullptr;
    if (row == nullptr) {
      const double press = analysis::GetPRESS(levels, height);
      rows.push_back(
          {.Height = height, .Press = Measured(press, levels.Count() > 1 && HasHeight(press))});
      row = &rows.back();
    }
    row->Dir = static_cast<float>(record.WindDir(i));
    row->Speed = static_cast<float>(record.WindSpd(i));
  }
  std::ranges::stable_sort(rows, {}, &Row::Height);
  return rows;
}

// Minutes since 1970.
double MinutesOf(const ObservationTime& time) {
  if (!time.Known()) return NC_FILL_DOUBLE;
  const std::chrono::year_month_day date{std::chrono::year(time.Year),
                                         std::chrono::month(static_cast<unsigned>(time.Month)),
                                         std::chrono::day(static_cast<unsigned>(time.Day))};
  constexpr double kHoursOfDay = 24, kMinutesOfHour = 60;
  const double days = static_cast<double>(std::chrono::sys_days(date).time_since_epoch().count());
  return (days * kHoursOfDay + time.Hour) * kMinutesOfHour + time.Minute;
}

}  // namespace

struct ProfilesNetcdf::Made {
  // A variable with the values that wait to be written.
  template <class T>
  struct Waiting {
    int Variable = -1;
    std::vector<T> Values{};
  };

  Made(std::filesystem::path path, const std::string& settings)
      : Path(std::move(path)), Making(Path.string() + ".tmp1"), File(Making) {
    Define(settings);
  }
  ~Made() {
    if (!IsDone) Remove(Making);
  }

  int Define(std::string_view name, nc_type type, int dimension, std::string_view standard,
             std::string_view longName, std::string_view unit) {
    const int variable = File.Variable(name, type, {dimension});
    File.Text(variable, "standard_name", standard);
    File.Text(variable, "long_name", longName);
    File.Text(variable, "units", unit);
    if (type == NC_FLOAT) File.Fill(variable);
    if (type != NC_STRING) File.Pack(variable);
    return variable;
  }

  int OfLevels(std::string_view name, std::string_view standard, std::string_view longName,
               std::string_view unit) {
    const int variable = Define(name, NC_FLOAT, Obs, standard, longName, unit);
    File.Text(variable, "coordinates", "time latitude longitude altitude");
    return variable;
  }

  void Define(const std::string& settings) {
    File.Text(NC_GLOBAL, "Conventions", "CF-1.8");
    File.Text(NC_GLOBAL, "featureType", "profile");
    File.Text(NC_GLOBAL, "title", "Upper-air soundings with their indices");
    File.Text(NC_GLOBAL, "source",
              "upper-air soundings, analysed by VEXA " + std::string(ProgramVersion()));
    File.Text(
        NC_GLOBAL, "comment",
        "Settings of the analysis: " + settings +
            ". Winds and temperatures are measured at levels of their own; the pressure of a "
            "level with a wind alone is interpolated, altitudes are hydrostatic. \"bounds\" names "
            "indices that are at least what they say, where the sounding ends too early.");
    Profile = File.Dimension("profile", NC_UNLIMITED);
    Obs = File.Dimension("obs", NC_UNLIMITED);
    Names.Variable =
        Define("profile_id", NC_STRING, Profile, "", "file and which of its soundings", "");
    File.Text(Names.Variable, "cf_role", "profile_id");
    Stamps.Variable = Define("file_stamp", NC_STRING, Profile, "",
                             "size and time of the file as it was read", "");
    Stations.Variable = Define("station_name", NC_STRING, Profile, "platform_name", "title", "");
    Verdicts.Variable =
        Define("verdict", NC_STRING, Profile, "", "OK, or what the check of the data finds", "");
    Bounds.Variable = Define("bounds", NC_STRING, Profile, "", "indices that are only bounds", "");
    Numbers.Variable =
        Define("wmo_number", NC_INT, Profile, "", "WMO number; 0 where not known", "");
    Times.Variable = Define("time", NC_DOUBLE, Profile, "time", "time of the observation",
                            "minutes since 1970-01-01 00:00:00");
    File.Text(Times.Variable, "calendar", "standard");
    Lats.Variable = Define("latitude", NC_FLOAT, Profile, "latitude", "", "degrees_north");
    Lons.Variable = Define("longitude", NC_FLOAT, Profile, "longitude", "", "degrees_east");
    Grounds.Variable =
        Define("station_altitude", NC_FLOAT, Profile, "surface_altitude", "elevation", "m");
    Counts.Variable =
        Define("row_size", NC_INT, Profile, "", "number of levels of the profile", "");
    File.Text(Counts.Variable, "sample_dimension", "obs");
    Heights.Variable =
        Define("altitude", NC_FLOAT, Obs, "altitude", "height above mean sea level", "m");
    File.Text(Heights.Variable, "positive", "up");
    File.Text(Heights.Variable, "axis", "Z");
    Levels[0].Variable = OfLevels("pressure", "air_pressure", "pressure", "hPa");
    Levels[1].Variable = OfLevels("temperature", "air_temperature", "temperature", "degC");
    Levels[2].Variable = OfLevels("dewpoint", "dew_point_temperature", "dew point", "degC");
    Levels[3].Variable = OfLevels("wind_direction", "wind_from_direction",
                                  "direction the wind blows from", "degree");
    Levels[4].Variable = OfLevels("wind_speed", "wind_speed", "wind speed", "knot");
    for (const analysis::IndexRow& row : analysis::IndexTable()) {
      if (row.Kind == analysis::Measure::Word) continue;
      const std::string_view label = Trim(row.Label);
      const auto standard = std::ranges::find(kStandardIndices, label, &IndexNameRow::Label);
      const int variable = Define(VariableName(label), NC_FLOAT, Profile,
                                  standard == std::end(kStandardIndices) ? "" : standard->Name,
                                  row.Name, UnitFor(row));
      File.Text(variable, "coordinates", "time latitude longitude");
      File.Text(variable, "comment", row.Formula);
      File.Text(variable, "references", row.Source);
      Indices.push_back({variable});
    }
    File.EndDefinitions();
  }

  void Add(const ReportedSounding& sounding, const std::string& name) {
    const SoundingRecord& record = sounding.Record;
    Names.Values.push_back(name);
    Stamps.Values.push_back(StampText(sounding.Stamp));
    Stations.Values.emplace_back(Trim(record.StationTitle));
    const std::string finding = FindingText(sounding.Finding);
    Verdicts.Values.push_back(finding.empty() ? "OK" : finding);
    Numbers.Values.push_back(record.WmoNumber);
    Times.Values.push_back(MinutesOf(record.Time));
    const bool isPlaced = HasPosition(record);
    Lats.Values.push_back(Measured(record.LatSigned, isPlaced));
    Lons.Values.push_back(Measured(record.LonSigned, isPlaced));
    Grounds.Values.push_back(Measured(record.ElevM, !record.ElevUnknown));
    const std::vector<Row> rows = RowsOf(sounding);
    Counts.Values.push_back(static_cast<int>(rows.size()));
    for (const Row& row : rows) {
      Heights.Values.push_back(static_cast<float>(row.Height));
      const float values[] = {row.Press, row.Temp, row.Dewpt, row.Dir, row.Speed};
      for (std::size_t i = 0; i < std::size(Levels); ++i) Levels[i].Values.push_back(values[i]);
    }
    std::string bounds;
    std::size_t next = 0;
    for (const analysis::IndexValue& index : sounding.Results.Indices) {
      if (index.Row->Kind == analysis::Measure::Word) continue;
      const std::optional<double> value = IndexNumber(index);
      Indices[next++].Values.push_back(Measured(value.value_or(0), value.has_value()));
      if (value && index.IsBound) {
        bounds += (bounds.empty() ? "" : ", ") + std::string(Trim(index.Row->Label));
      }
    }
    Bounds.Values.push_back(bounds);
    constexpr std::size_t kMostWaiting = 1000;
    if (Names.Values.size() >= kMostWaiting) Flush();
  }

  template <class T>
  void Flush(Waiting<T>& waiting, std::size_t first) {
    File.PutFrom(waiting.Variable, first, std::exchange(waiting.Values, {}));
  }

  void Flush() {
    const std::size_t profiles = Names.Values.size(), levels = Heights.Values.size();
    for (auto* texts : {&Names, &Stamps, &Stations, &Verdicts, &Bounds}) Flush(*texts, Profiles);
    Flush(Numbers, Profiles);
    Flush(Times, Profiles);
    for (auto* floats : {&Lats, &Lons, &Grounds}) Flush(*floats, Profiles);
    Flush(Counts, Profiles);
    for (auto& index : Indices) Flush(index, Profiles);
    Flush(Heights, Rows);
    for (auto& level : Levels) Flush(level, Rows);
    Profiles += profiles;
    Rows += levels;
  }

  std::optional<Fault> End() {
    Flush();
    if (const auto closed = File.Close(); !closed) return closed.Error();
    if (const std::error_code failed = RenameOver(Making, Path))
      return Fault{FaultNumber(failed), "ProfilesNetcdf", failed.message()};
    IsDone = true;
    return std::nullopt;
  }

  std::filesystem::path Path;
  std::filesystem::path Making;  // under another name until it is whole
  NetcdfFile File;
  bool IsDone = false;
  int Profile = -1, Obs = -1;
  Waiting<std::string> Names{}, Stamps{}, Stations{}, Verdicts{}, Bounds{};
  Waiting<int> Numbers{}, Counts{};
  Waiting<double> Times{};
  Waiting<float> Lats{}, Lons{}, Grounds{}, Heights{};
  Waiting<float> Levels[5]{};
  std::vector<Waiting<float>> Indices{};
  std::size_t Profiles = 0, Rows = 0;  // written
};

Outcome<ProfilesNetcdf> ProfilesNetcdf::Begin(const std::filesystem::path& path,
                                              const std::string& settings) {
  auto made = std::make_unique<Made>(path, settings);
  if (!made->File.Ok()) return made->File.Failure();
  return ProfilesNetcdf(std::move(made));
}

void ProfilesNetcdf::Add(const ReportedSounding& sounding, const std::string& name) {
  made_->Add(sounding, name);
}

std::optional<Fault> ProfilesNetcdf::End() {
  return made_->End();
}

#else

struct ProfilesNetcdf::Made {};

Outcome<ProfilesNetcdf> ProfilesNetcdf::Begin(const std::filesystem::path&, const std::string&) {
  return WithoutNetcdf();
}

void ProfilesNetcdf::Add(const ReportedSounding&, const std::string&) {}

std::optional<Fault> ProfilesNetcdf::End() {
  return std::nullopt;
}

#endif

ProfilesNetcdf::ProfilesNetcdf(std::unique_ptr<Made> made) : made_(std::move(made)) {}
ProfilesNetcdf::ProfilesNetcdf(ProfilesNetcdf&&) noexcept = default;
ProfilesNetcdf& ProfilesNetcdf::operator=(ProfilesNetcdf&&) noexcept = default;
ProfilesNetcdf::~ProfilesNetcdf() = default;

}  // namespace vexa::report
