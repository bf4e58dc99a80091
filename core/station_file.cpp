#include "core/station_file.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "core/error_report.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/record_text.h"
#include "core/source_text.h"
#include "core/units.h"
#include "core/user_file.h"

namespace vexa {
namespace {

constexpr std::string_view kTitleMarker = "VEXA STATION LISTING";
constexpr std::string_view kNumberMarker = "WMO";
constexpr std::string_view kWarning = "Warning ...";

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// A number, signed or quoted, begins the first record; every other line belongs to the header.
bool BeginsRecord(std::string_view line) {
  line = Trim(line);
  if (line.starts_with('"')) line = Trim(line.substr(1));
  if (line.starts_with('-') || line.starts_with('+')) line.remove_prefix(1);
  return !line.empty() && IsDigit(line.front());
}

// Cuts the header off a text and gives its lines.
std::vector<std::string> TakeHeader(std::string_view& text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  std::vector<std::string> lines;
  while (!text.empty() && !BeginsRecord(text.substr(0, text.find('\n')))) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    while (line.ends_with('\r')) line.remove_suffix(1);
    lines.emplace_back(line);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return lines;
}

bool HasMarker(const std::vector<std::string>& lines, std::string_view marker) {
  return std::ranges::any_of(
      lines, [marker](const std::string& line) { return line.find(marker) != std::string::npos; });
}

// What a record's fields break, the gravest for the reader first.
struct Complaint {
  StationTrouble Kind = StationTrouble::None;
  std::string Reason{};
};

Complaint CheckRecordTexts(const StationTexts& texts) {
  for (const StationField field : {StationField::Latitude, StationField::Longitude}) {
    const std::string& text = texts[static_cast<std::size_t>(field)];
    if (text.find('.') == std::string::npos) {
      return {StationTrouble::Format, std::string(Text(field)) + ": lacks a decimal point"};
    }
  }
  // A file's texts may be empty and its elevations fractions of a metre, unlike an editor's.
  for (const StationField field :
       {StationField::Elevation, StationField::Latitude, StationField::LatHemi,
        StationField::Longitude, StationField::LonHemi}) {
    const std::string& text = texts[static_cast<std::size_t>(field)];
    if (field == StationField::Elevation && ParseNumber(text)) continue;
    const std::optional<Fault> fault = CheckStationField(field, text);
    if (!fault) continue;
    const bool isQuadrant = field == StationField::LatHemi || field == StationField::LonHemi;
    return {isQuadrant ? StationTrouble::Quadrant : StationTrouble::Format, fault->Detail};
  }
  return {};
}

// Cuts the fields off a line one by one; nothing where the line is not written as we write it.
class PlainFields {
 public:
  explicit PlainFields(std::string_view line) : rest_(line) {}

  std::optional<double> Number() { return ParseNumber(Cut(rest_.find(','))); }
  std::optional<double> Degrees(double most) {
    const std::string_view text = Cut(rest_.find(','));
    const std::optional<double> value = ParseNumber(text);
    const bool isGood = value && *value >= 0 && *value <= most && text.find('.') != text.npos;
    return isGood ? value : std::nullopt;
  }
  std::optional<std::string_view> Quoted() {
    const std::size_t close = rest_.starts_with('"') ? rest_.find('"', 1) : rest_.npos;
    if (close == rest_.npos) return std::nullopt;
    const std::string_view text = rest_.substr(1, close - 1);
    rest_.remove_prefix(close + 1);
    if (!rest_.empty() && rest_.front() != ',') return std::nullopt;
    Cut(0);
    return Trim(text);
  }
  std::optional<std::string_view> Letter(std::string_view letters) {
    const std::optional<std::string_view> text = Quoted();
    const bool isGood = text && text->size() == 1 && letters.find(*text) != letters.npos;
    return isGood ? text : std::nullopt;
  }
  bool AtEnd() const { return rest_.empty(); }

 private:
  // What stands before the comma, which goes with it.
  std::string_view Cut(std::size_t comma) {
    const std::string_view field = rest_.substr(0, comma);
    rest_.remove_prefix(std::min(rest_.size(), field.size() + 1));
    return field;
  }

  std::string_view rest_;
};

// A station as nearly every line holds it, with nothing to object to. What is written otherwise
// goes field by field through the checks, which say what is wrong with it.
std::optional<Station> PlainStation(std::string_view line) {
  constexpr double kMostLat = 90, kMostLon = 180;  // degrees
  PlainFields fields(line);
  const auto number = fields.Number();
  const auto ident = fields.Quoted();
  const auto name = fields.Quoted();
  const auto region = fields.Quoted();
  const auto elevation = fields.Number();
  const auto lat = fields.Degrees(kMostLat);
  const auto latHemi = fields.Letter("NS");
  const auto lon = fields.Degrees(kMostLon);
  const auto lonHemi = fields.Letter("EW");
  if (!number || !ident || !name || !region || !elevation || !lat || !latHemi || !lon || !lonHemi) {
    return std::nullopt;
  }
  const bool isNumber = *number >= 0 && *number < kEndOfStations && *number == ToWhole(*number);
  if (!isNumber || !fields.AtEnd()) return std::nullopt;
  return Station{.Number = ToWhole(*number),
                 .Ident = std::string(*ident),
                 .Name = std::string(*name),
                 .Region = std::string(*region),
                 .ElevM = *elevation == kNone ? 0 : ToWhole(*elevation),
                 .ElevUnknown = *elevation == kNone,
                 .Lat = *lat,
                 .LatHemi = std::string(*latHemi),
                 .Lon = *lon,
                 .LonHemi = std::string(*lonHemi)};
}

class StationReader {
 public:
  StationReader(std::string_view text, std::string_view name, int headerLines, StationReading& into)
      : fields_(text, name), name_(name), linesBefore_(headerLines), into_(into) {}

  void Read() {
    for (;;) {
      const RecordReader::Place place = fields_.Where();
      line_ = place.Line;
      if (fields_.AtEnd()) return Note(StationTrouble::EndOfFile, "ends without the number 99999");
      if (ReadPlain(place)) continue;
      isUnread_ = false;
      if (ReadRecord()) return;
      if (!isUnread_) continue;
      into_.List.AddUnread({.After = last_, .Text = std::string(fields_.SkipLine(place))});
    }
  }

 private:
  void Note(StationTrouble kind, std::string_view reason) {
    if (into_.Finding.Kind != StationTrouble::None) return;
    into_.Finding = {kind, number_, AtLine(name_, linesBefore_ + line_, reason)};
  }
  // The line is no station.
  bool Leave(StationTrouble kind, std::string_view reason) {
    Note(kind, reason);
    isUnread_ = true;
    return false;
  }

  // True where the line is a station that follows those before it.
  bool ReadPlain(const RecordReader::Place& place) {
    std::optional<Station> station = PlainStation(fields_.LineFrom(place));
    if (!station || station->Number <= last_) return false;
    number_ = last_ = station->Number;
    into_.List.Insert(*std::move(station));
    fields_.SkipLine(place);
    return true;
  }

  // True at the number 99999.
  bool ReadRecord() {
    const Outcome<RecordField> first = fields_.Next("the station number");
    const std::optional<int> number = first ? ParseWhole(first.Value().Text) : std::nullopt;
    if (!number || *number > kEndOfStations) {
      return Leave(StationTrouble::Format, "no station number stands where one should");
    }
    number_ = *number;
    if (number_ == kEndOfStations) {
      into_.List.SetTrailer(std::string(fields_.Rest()));
      return true;
    }
    StationTexts texts{std::string(first.Value().Text)};
    for (std::size_t i = 1; i < texts.size(); ++i) {
      const Outcome<RecordField> field = fields_.Next("a field");
      if (!field && fields_.AtEnd()) return Leave(StationTrouble::EndOfFile, "ends in a record");
      if (!field) {
        return Leave(StationTrouble::Format, "a quote is not closed or a comma is missing");
      }
      texts[i] = Trim(field.Value().Text);
    }
    const Complaint complaint = CheckRecordTexts(texts);
    if (complaint.Kind != StationTrouble::None) return Leave(complaint.Kind, complaint.Reason);
    if (number_ <= last_) Note(StationTrouble::Sequence, "the number does not rise");
    if (!into_.List.Insert(UncheckedStation(texts))) isUnread_ = true;
    last_ = number_;
    return false;
  }

  RecordReader fields_;
  std::string_view name_;
  int linesBefore_;
  StationReading& into_;
  int line_ = 1;    // of the record in work
  int number_ = 0;  // read last
  int last_ = -1;   // that of the last station
  bool isUnread_ = false;
};

std::string Joined(std::initializer_list<std::string_view> lines) {
  std::string text;
  for (const std::string_view line : lines) {
    if (!text.empty()) text += '\n';
    text += line;
  }
  return text;
}

void Tell(CurrentSounding& current, const Box& box) {
  if (current.Ask != nullptr) current.Ask->Ask(box);
}

std::array<double, 2> Positions(const Station& station) {
  return {station.Lat, station.Lon};
}

double FromDegreesMinutes(double value) {
  constexpr int kDecimals = 4;
  return Rounded(DecimalDegrees(SplitAngle(Shortest(value))), kDecimals);
}

}  // namespace

StationReading ReadStations(std::string_view text, std::string_view name) {
  StationReading reading;
  std::string_view records = text;
  std::vector<std::string> header = TakeHeader(records);
  for (const std::string_view marker : {kTitleMarker, kNumberMarker}) {
    if (HasMarker(header, marker) || reading.Finding.Kind != StationTrouble::None) continue;
    reading.Finding = {StationTrouble::Header, 0,
                       AtLine(name, 1, "no header line holds \"" + std::string(marker) + '"')};
  }
  const int headerLines = static_cast<int>(header.size());
  reading.List.SetHeader(std::move(header));
  StationReader(records, name, headerLines, reading).Read();
  return reading;
}

std::string WriteStations(const StationList& list) {
  RecordWriter records;
  std::string text;
  for (const std::string& line : list.Header()) text += line + "\r\n";
  // Of a station that is gone, the lines stand behind the one before it.
  std::vector<UnreadLine> unread = list.Unread();
  std::ranges::stable_sort(unread, {}, &UnreadLine::After);
  auto next = unread.begin();
  const auto writeUnreadBefore = [&](int number) {
    for (; next != unread.end() && next->After < number; ++next) {
      records.Bare(next->Text).EndRecord();
    }
  };
  for (const Station& station : list.All()) {
    writeUnreadBefore(station.Number);
    const StationTexts texts = TextsOf(station);
    for (int i = 0; i < kStationFields; ++i) {
      const std::string& field = texts[static_cast<std::size_t>(i)];
      switch (static_cast<StationField>(i)) {
        case StationField::Number:
        case StationField::Elevation:
        case StationField::Latitude:
        case StationField::Longitude:
          records.Bare(field);
          break;
        default:
          records.Text(field);
      }
    }
    records.EndRecord();
  }
  writeUnreadBefore(kEndOfStations);
  records.Number(kEndOfStations).EndRecord();
  return text + records.Take() + list.Trailer();
}

Box StationBox(const StationFinding& finding) {
  std::string place = "Error is at or before ... " + Shortest(finding.Number) + " - ";
  if (finding.Kind == StationTrouble::EndOfFile) {
    place += "end of file or a missing '99999' terminator.";
  }
  Box box{.Title = std::string(kWarning)};
  if (finding.Kind == StationTrouble::Quadrant) {
    box.Text = Joined({"The  VEXA.STN  Locator File has an error.",
                       "The LAT or LONG quadrant indicator is wrong.",
                       "It should be either N, S, E, or W", place});
  } else {
    box.Text = Joined({"The  VEXA.STN  Locator File contains one or more errors.",
                       "Fix or Replace this file from the Distribution Disk.",
                       "Note: WMO numbers must be in numerical sequence.",
                       "          Placement of commas and Lat/Lon decimals are critical.",
                       "          Coordinates must be in Degrees & Minutes.", place});
  }
  if (!finding.Detail.empty()) box.Text += '\n' + finding.Detail;
  return box;
}

Status LoadStations(CurrentSounding& current, const std::filesystem::path& root,
                    StationList& into) {
  const ProcedureScope here(current, "LoadStations");
  into = StationList{};
  const Outcome<std::string> text = ReadFile(root / kStationFileName);
  if (!text) {
    ErrorReport(current, text.Error());
    return Status::Error;
  }
  StationReading reading = ReadStations(text.Value(), kStationFileName);
  into = std::move(reading.List);
  if (reading.Finding.Kind == StationTrouble::None) return Status::Ok;
  current.LastFault =
      Fault{kFaultFormat, "LoadStations", reading.Finding.Detail, std::string(kStationFileName)};
  current.StatusText = "error";
  Tell(current, StationBox(reading.Finding));
  return Status::Error;
}

std::optional<Fault> SaveStations(const std::filesystem::path& root, const StationList& list,
                                  FileOps& ops) {
  return SaveUserFile(
      root / kStationFileName, WriteStations(list),
      [](std::string_view text) { return ReadStations(text, kStationFileName).Finding.Detail; },
      ops);
}

bool FindStation(const StationList& list, int number, SoundingRecord& record) {
  const Station* station = list.Find(number);
  if (station == nullptr) return false;
  if (station->ElevUnknown) {
    SetElevationUnknown(record);
  } else {
    SetElevation(record, station->ElevM);
    record.ElevFt = ToWhole(FeetFromMeters(station->ElevM));
  }
  SetDecimalPosition(record, station->LatSigned(), station->LonSigned());
  record.LatHemi = station->LatHemi;
  record.LonHemi = station->LonHemi;
  record.StationTitle = CutTitle(StationCaption(*station));
  return true;
}

bool NeedsConversion(const StationList& list) {
  if (HasMarker(list.Header(), "decimal degrees")) return false;
  constexpr double kMinutes = 60;
  return std::ranges::none_of(list.All(), [](const Station& station) {
    return std::ranges::any_of(Positions(station), [](double value) {
      return ParseNumber(SplitAngle(Shortest(value)).Minutes).value_or(0) >= kMinutes;
    });
  });
}

StationList ConvertStations(const StationList& list) {
  StationList converted;
  std::vector<std::string> header = StationHeader();
  for (const std::string& line : list.Header()) {
    const bool isReplaced = line.find(kTitleMarker) != std::string::npos ||
                            line.find(kNumberMarker) != std::string::npos;
    if (!isReplaced) header.push_back(line);
  }
  converted.SetHeader(std::move(header));
  for (Station station : list.All()) {
    station.Lat = FromDegreesMinutes(station.Lat);
    station.Lon = FromDegreesMinutes(station.Lon);
    converted.Insert(std::move(station));
  }
  for (const UnreadLine& line : list.Unread()) converted.AddUnread(line);
  converted.SetTrailer(list.Trailer());
  return converted;
}

Status ConvertStationFile(CurrentSounding& current, const std::filesystem::path& root,
                          StationList& list, FileOps& ops) {
  const ProcedureScope here(current, "ConvertStationFile");
  if (!NeedsConversion(list)) return Status::Ok;
  const Box question{
      .Title = std::string(kErrorBoxTitle),
      .Text = Joined({"Your VEXA.STN Locator file needs to be updated.",
                      "Station coordinates are now listed in 'decimal-degrees' format .vs. "
                      "'degress.minutes' format.",
                      "Prior to conversion, your current VEXA.STN file will be renamed as "
                      "VEXASTN.BAK"}),
      .Icon = BoxIcon::Question,
      .Buttons = BoxButtons::OkCancel,
      .WhenSilent = Answer::Cancel};
  if (current.Ask == nullptr || current.Ask->Ask(question) != Answer::Ok) {
    Tell(current, {.Title = std::string(kErrorBoxTitle),
                   .Text = Joined({"WARNING ... VEXA.STN has not been updated",
                                   "Station coordinate values will be used incorrectly.",
                                   "This message will reappear until conversion is complete."})});
    return Status::Error;
  }

  // The old file is copied and then replaced, so that at no time there is none.
  StationList converted = ConvertStations(list);
  std::optional<Fault> fault;
  if (const Outcome<std::string> old = ReadFile(root / kStationFileName)) {
    fault = SaveFile(root / kStationBackupName, old.Value(), ops);
  } else {
    fault = old.Error();
  }
  if (!fault) fault = SaveStations(root, converted, ops);
  if (fault) {
    ErrorReport(current, *fault);
    return Status::Error;
  }
  list = std::move(converted);
  Tell(
      current,
      {.Title = std::string(kErrorBoxTitle),
       .Text = Joined({"VEXA.STN has been updated", "Your prior locator file is now VEXASTN.BAK."}),
       .Icon = BoxIcon::Information});
  return Status::Ok;
}

}  // namespace vexa
