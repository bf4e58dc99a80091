#include "crosssection/dataset.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "core/files.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/path_forms.h"
#include "core/platform.h"
#include "core/raw_file.h"
#include "core/record_text.h"

namespace vexa::crosssection {
namespace {

constexpr int kMostMemberLevels = 100000;
constexpr std::string_view kClosing = "END";  // a last figure that is cut short is noticed
constexpr double kNoPosition = kMissing;

void WriteMember(const Dataset::Member& member, RecordWriter& into) {
  const SoundingRecord& sounding = member.Sounding;
  into.Text(sounding.StationTitle).Text(member.Source);
  into.EndRecord();
  const bool isPlaced = !sounding.LatHemi.empty();
  into.Number(sounding.WmoNumber)
      .Number(isPlaced ? sounding.LatSigned : kNoPosition)
      .Number(isPlaced ? sounding.LonSigned : kNoPosition)
      .Number(sounding.ElevUnknown ? ToWhole(kNone) : sounding.ElevM);
  into.EndRecord();
  const ObservationTime& time = sounding.Time;
  into.Number(time.Year).Number(time.Month).Number(time.Day).Number(time.Hour).Number(time.Minute);
  into.EndRecord();
  into.Number(sounding.NumTempLevels()).Number(sounding.NumWindLevels());
  into.EndRecord();
  for (int i = 1; i <= sounding.NumTempLevels(); ++i) {
    into.Number(sounding.Press(i)).Number(sounding.Temp(i)).Number(sounding.Dewpt(i));
    into.EndRecord();
  }
  for (int i = 1; i <= sounding.NumWindLevels(); ++i) {
    into.Number(sounding.WindHgt(i)).Number(sounding.WindDir(i)).Number(sounding.WindSpd(i));
    into.EndRecord();
  }
}

// Reads one field after the other and remembers the first that is wrong.
class MemberReader {
 public:
  explicit MemberReader(RecordReader& reader) : reader_(reader) {}

  std::string Text(std::string_view what) {
    return Taken(reader_.Text(what)).value_or(std::string());
  }
  double Number(std::string_view what) { return Taken(reader_.Number(what)).value_or(0); }
  int Whole(std::string_view what, int least, int most) {
    const int line = reader_.Line();
    const double number = Number(what);
    if (fault_) return least;
    if (number != ToWhole(number) || number < least || number > most) {
      fault_ = reader_.DamagedAt(line, std::string(what) + " " + Shortest(number) +
                                           " is not a whole number from " + Shortest(least) +
                                           " to " + Shortest(most));
      return least;
    }
    return ToWhole(number);
  }
  double Within(std::string_view what, double least, double most) {
    const int line = reader_.Line();
    const double number = Number(what);
    if (!fault_ && !IsMissing(number) && (number < least || number > most)) {
      fault_ =
          reader_.DamagedAt(line, std::string(what) + " " + Shortest(number) + " is not from " +
                                      Shortest(least) + " to " + Shortest(most));
    }
    return number;
  }
  bool Ok() const { return !fault_; }
  const Fault& Error() const { return *fault_; }

 private:
  template <class T>
  std::optional<T> Taken(Outcome<T> outcome) {
    if (fault_) return std::nullopt;
    if (outcome) return std::move(outcome.Value());
    fault_ = outcome.Error();
    return std::nullopt;
  }

  RecordReader& reader_;
  std::optional<Fault> fault_{};
};

Dataset::Member ReadMember(MemberReader& from) {
  Dataset::Member member;
  SoundingRecord& sounding = member.Sounding;
  ClearData(sounding);
  sounding.FileTag = kProgramFileTag;
  sounding.DataFormat = "RAW";
  sounding.StationTitle = CutTitle(from.Text("name"));
  member.Source = from.Text("source");
  sounding.WmoNumber = from.Whole("station number", 0, 99999);
  const double lat = from.Within("latitude", -90, 90);
  const double lon = from.Within("longitude", -180, 180);
  if (!IsMissing(lat) && !IsMissing(lon)) SetDecimalPosition(sounding, lat, lon);
  const int elevation = from.Whole("elevation", -999, 20000);
  elevation == ToWhole(kNone) ? SetElevationUnknown(sounding) : SetElevation(sounding, elevation);
  sounding.Time.Year = from.Whole("year", 0, 9999);
  const int least = sounding.Time.Known() ? 1 : 0;
  sounding.Time.Month = from.Whole("month", least, 12);
  sounding.Time.Day = from.Whole("day", least, 31);
  sounding.Time.Hour = from.Whole("hour", 0, 23);
  sounding.Time.Minute = from.Whole("minute", 0, 59);
  const int temps = from.Whole("number of temperature levels", 0, kMostMemberLevels);
  const int winds = from.Whole("number of wind levels", 0, kMostMemberLevels);
  for (int i = 0; i < temps && from.Ok(); ++i) {
    const double press = from.Number("pressure");
    const double temp = from.Number("temperature");
    sounding.AddTemp(press, temp, from.Number("dew point"));
  }
  for (int i = 0; i < winds && from.Ok(); ++i) {
    const double height = from.Number("height");
    const double direction = from.Number("wind direction");
    sounding.AddWind(height, direction, from.Number("wind speed"));
  }
  return member;
}

template <class E>
bool TakeWord(std::string_view text, E& into) {
  const auto words = Words(E{});
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (words[i] != text) continue;
    into = static_cast<E>(i);
    return true;
  }
  return false;
}

}  // namespace

Dataset DatasetOf(const Section& section) {
  Dataset dataset{section.Kind, section.Direction};
  std::vector<const Column*> given;
  for (const Column& column : section.Columns) {
    if (!column.IsInterpolated) given.push_back(&column);
  }
  std::ranges::stable_sort(given, {}, [](const Column* column) { return column->Order; });
  for (const Column* column : given) dataset.Members.push_back({column->Sounding, column->Source});
  return dataset;
}

std::string Write(const Dataset& dataset) {
  RecordWriter writer;
  writer.Text(kDatasetTag).Text(kDatasetWord);
  writer.EndRecord();
  writer.Text(Word(dataset.Kind));
  writer.EndRecord();
  writer.Text(Word(dataset.Direction)).Number(static_cast<int>(dataset.Members.size()));
  writer.EndRecord();
  for (const Dataset::Member& member : dataset.Members) WriteMember(member, writer);
  writer.Text(kClosing);
  writer.EndRecord();
  return writer.Take();
}

DatasetRead ReadDataset(const std::string& text, std::string_view name) {
  DatasetRead read;
  RecordReader reader(text, name);
  const Outcome<std::string> tag = reader.Text("version");
  const Outcome<std::string> word = reader.Text("header");
  const bool isOurs = tag && word && tag.Value().starts_with("VEXA ");
  if (!isOurs || word.Value() != kDatasetWord) return {.Why = DatasetRefusal::NoDataset};
  const double version = RawFileVersion(tag.Value());
  const double current = RawFileVersion(kDatasetTag);
  if (version < current) return {.Why = DatasetRefusal::OlderVersion};
  if (version > current) return {.Why = DatasetRefusal::NewerVersion};
  const auto damaged = [](std::string place) {
    return DatasetRead{.Why = DatasetRefusal::Damaged, .Place = std::move(place)};
  };
  MemberReader from(reader);
  const int kindLine = reader.Where().Line;
  if (const std::string kind = from.Text("kind"); !TakeWord(kind, read.Held.Kind)) {
    return damaged(reader.DamagedAt(kindLine, "kind \"" + kind + "\" is unknown").Detail);
  }
  if (const std::string way = from.Text("direction"); !TakeWord(way, read.Held.Direction)) {
    return damaged(reader.DamagedAt(kindLine + 1, "direction \"" + way + "\" is unknown").Detail);
  }
  const int count = from.Whole("number of soundings", 0, static_cast<int>(kMostColumns));
  for (int i = 0; i < count && from.Ok(); ++i) read.Held.Members.push_back(ReadMember(from));
  if (!from.Ok()) return damaged(from.Error().Detail);
  const int endLine = reader.Where().Line;
  if (from.Text("closing record") != kClosing || !reader.AtEnd()) {
    return damaged(reader.DamagedAt(endLine, "the closing record is not here").Detail);
  }
  return read;
}

Box RefusalBox(DatasetRefusal why, std::string_view name, std::string_view place) {
  const std::string file(name);
  switch (why) {
    case DatasetRefusal::OlderVersion:
      return {.Title = "Incorrect dataset format",
              .Text = "Dataset  " + file + " was created by an older version of VEXA."};
    case DatasetRefusal::NewerVersion:
      return {.Title = "Incorrect dataset format",
              .Text = "Dataset  " + file + " was created by a newer version of VEXA."};
    case DatasetRefusal::NoDataset:
      return {.Title = "Bad data file.", .Text = file + "  is not a Cross-Section DataSet"};
    case DatasetRefusal::Damaged:
      return {.Title = "Bad data file.",
              .Text = file + "  has missing or corrupt data." +
                      (place.empty() ? std::string() : "\n" + std::string(place))};
    case DatasetRefusal::None:
      break;
  }
  return {};
}

Box CannotEditBox(std::string_view name) {
  return {.Title = "Sorry ...",
          .Text = std::string(name) +
                  " was generated from an older version of VEXA and can not be edited."};
}

Box WrongFolderBox(const std::filesystem::path& folder) {
  return {.Title = "Bad data file.",
          .Text =
              "Be sure your Cross-Section data directory is different from your Sounding data "
              "directory.\nThis is your current Cross-Section data directory ...  " +
              TextFromPath(folder) + "\nTo edit your data directories, click OK then press F9."};
}

bool SameFolder(const std::filesystem::path& datasets, const std::filesystem::path& soundings) {
  if (AreOne(datasets, soundings)) return true;
  // Not every system compares folders so; a separator at the end says nothing.
  const auto plain = [](const std::filesystem::path& folder) {
    const std::filesystem::path normal = NormalPath(folder);
    return normal.has_filename() ? normal : normal.parent_path();
  };
  return plain(datasets) == plain(soundings);
}

}  // namespace vexa::crosssection
