#include "core/raw_file.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/error_report.h"
#include "core/letter_case.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/record_text.h"
#include "core/source_text.h"
#include "core/user_file.h"

namespace vexa {
namespace {

// The text of a line behind the last record, where other readers have stopped: so many wind rows
// lie below sea level and are meant so. Without it such a height is an error.
constexpr std::string_view kBelowSea = "WINDS BELOW SEA LEVEL";

int CountBelowSea(const SoundingRecord& record, int rows) {
  int count = 0;
  for (int row = 1; row <= rows; ++row) count += record.WindHgt(row) < 0 ? 1 : 0;
  return count;
}

// A count of a million rows that are not there must not cost memory: rows are added as they come,
// and the end of the data ends the reading.
class RawReader {
 public:
  RawReader(std::string_view text, std::string_view name, SoundingRecord& into)
      : fields_(text, name), into_(into) {}

  std::optional<Fault> Read(RawVariant variant, std::vector<RefusedWind>& refused) {
    if (variant == RawVariant::Quick) Text("the file name");
    into_.FileTag = Text("the file tag");
    into_.StationTitle = CutTitle(Text("the title"));
    Number("the third field");
    const int tempRows = Count("the number of temperature levels");
    const int windRows = Count("the number of wind levels");
    ReadPosition();
    int cloudRows = 0;
    const bool hasClouds = RawFileVersion(into_.FileTag) >= kFirstVersionWithClouds;
    if (hasClouds) {
      into_.CloudMode = Text("the cloud mode");
      cloudRows = Count("the number of cloud layers");
      into_.CloudOption = Text("the cloud option");
      into_.CloudOption.erase(0, into_.CloudOption.find_first_not_of(' '));
      into_.NumExtraRecords = Count("the number of supplementary records");
      for (int spare = 1; spare <= 3; ++spare) Text("a spare field");
      if (variant == RawVariant::Quick) Text("the spare text");
    }
    Reserve(tempRows, into_.Press, into_.Temp, into_.Dewpt);
    for (int row = 1; row <= tempRows && !fault_; ++row) {
      const Row level = Numbers("the pressure", "the temperature", "the dew point");
      if (!fault_) into_.AddTemp(level[0], level[1], level[2]);
    }
    ReadWinds(windRows);
    for (int row = 1; row <= cloudRows && !fault_; ++row) {
      CloudLayer layer;
      layer.Type = Text("the cloud type");
      layer.Base = Number("the cloud base");
      layer.Top = Text("the cloud top");
      layer.Code = ToWhole(Number("the cloud code"));
      if (!fault_) into_.Clouds.Add(std::move(layer));
    }
    if (into_.NumExtraRecords > 0) {
      for (double& value : into_.ExtraRecord1) value = Number("a supplementary value");
      if (into_.NumExtraRecords == 2) {
        for (double& value : into_.ExtraRecord2) value = Number("a supplementary value");
      }
      into_.ExtraRecordsPresent = !fault_;
    }
    refused = KeptBelowSea() ? std::vector<RefusedWind>{} : TakeOutBelowSea();
    return fault_;
  }

 private:
  // No more than what is left of the text can hold.
  template <class... Columns>
  void Reserve(int rows, Columns&... columns) const {
    constexpr std::size_t kShortestRow = 6;  // "0,0,0" and the line's end
    const std::size_t most =
        std::min(static_cast<std::size_t>(std::max(rows, 0)), fields_.Rest().size() / kShortestRow);
    (columns.Values().reserve(most), ...);
  }

  void ReadWinds(int rows) {
    Reserve(rows, into_.WindHgt, into_.WindDir, into_.WindSpd, into_.WorkWindDir,
            into_.WorkWindSpd);
    for (int row = 1; row <= rows && !fault_; ++row) {
      const Row level = Numbers("the wind height", "the wind direction", "the wind speed");
      if (!fault_) into_.AddWind(level[0], level[1], level[2]);
    }
  }

  bool KeptBelowSea() {
    if (fault_ || fields_.AtEnd()) return false;
    const Outcome<RecordField> mark = fields_.Next("");
    if (!mark || !mark.Value().Quoted || mark.Value().Text != kBelowSea) return false;
    const Outcome<int> winds = fields_.Count("the number of winds below sea level");
    return winds && winds.Value() == CountBelowSea(into_, into_.NumWindLevels());
  }

  std::vector<RefusedWind> TakeOutBelowSea() {
    std::vector<RefusedWind> refused;
    if (CountBelowSea(into_, into_.NumWindLevels()) == 0) return refused;
    SoundingRecord read;
    for (int row = 1; row <= into_.NumWindLevels(); ++row) {
      const double height = into_.WindHgt(row);
      if (height < 0) {
        refused.push_back({row, height});
      } else {
        read.AddWind(height, into_.WindDir(row), into_.WindSpd(row));
      }
    }
    into_.WindHgt = std::move(read.WindHgt);
    into_.WindDir = std::move(read.WindDir);
    into_.WindSpd = std::move(read.WindSpd);
    into_.WorkWindDir = std::move(read.WorkWindDir);
    into_.WorkWindSpd = std::move(read.WorkWindSpd);
    return refused;
  }

  void ReadPosition() {
    into_.LatValue = Angle("the latitude", 90);
    into_.LatHemi = Hemisphere("the latitude's hemisphere", "NS");
    into_.LonValue = static_cast<float>(Angle("the longitude", 360));
    into_.LonHemi = Hemisphere("the longitude's hemisphere", "EW");
    const double elevation = Number("the elevation");
    if (elevation == kNone) {
      SetElevationUnknown(into_);
    } else {
      SetElevation(into_, ToWhole(elevation));
    }
    ParseLatLon(into_);
  }

  // A capital letter, or nothing where the position is not known.
  std::string Hemisphere(std::string_view what, std::string_view letters) {
    const int line = fields_.Line();
    const std::string letter = Upper(Trim(Text(what)));
    const bool isOne = letter.size() == 1 && letters.find(letter) != std::string_view::npos;
    if (fault_ || letter.empty() || isOne) return letter;
    fault_ = fields_.DamagedAt(line, std::string(what) + " should be " + letters[0] + " or " +
                                         letters[1] + ", not \"" + letter + '"');
    return {};
  }

  double Angle(std::string_view what, double most) {
    const int line = fields_.Line();
    const double angle = Number(what);
    if (!fault_ && (angle < 0 || angle > most)) {
      fault_ = fields_.DamagedAt(line, std::string(what) + " lies outside 0 to " + Shortest(most));
    }
    return fault_ ? 0 : angle;
  }

  // After the first fault every further field is empty, so that a row of fields reads as one.
  std::string Text(std::string_view what) { return Take(&RecordReader::Text, what, std::string{}); }
  double Number(std::string_view what) {
    if (fault_) return 0;
    if (const std::optional<double> number = fields_.TakeNumber()) return *number;
    return Take(&RecordReader::Number, what, 0.0);
  }
  using Row = std::array<double, 3>;
  Row Numbers(std::string_view first, std::string_view second, std::string_view third) {
    Row row{};
    if (!fault_ && fields_.TakeRow(row)) return row;
    return {Number(first), Number(second), Number(third)};
  }
  int Count(std::string_view what) { return Take(&RecordReader::Count, what, 0); }

  template <class T>
  T Take(Outcome<T> (RecordReader::*read)(std::string_view), std::string_view what, T empty) {
    if (fault_) return empty;
    Outcome<T> field = (fields_.*read)(what);
    if (!field) {
      fault_ = field.Error();
      return empty;
    }
    return std::move(field.Value());
  }

  RecordReader fields_;
  SoundingRecord& into_;
  std::optional<Fault> fault_{};
};

// Decimal degrees as degrees.mmss; a whole number of ten-thousandths, so that the shortest text
// has at most four decimals.
double DegreesMinutesSeconds(double decimalDegrees) {
  const int seconds = ToWhole(std::fabs(decimalDegrees) * 3600);
  const int digits = seconds / 3600 * 10000 + seconds / 60 % 60 * 100 + seconds % 60;
  return digits / 10000.0;
}

Status LoadVariant(CurrentSounding& current, const std::filesystem::path& path,
                   RawVariant variant) {
  ClearData(current.Record);
  const std::string name = TextFromPath(path.filename());
  std::vector<RefusedWind> refused;
  std::optional<Fault> fault = Guarded(current.Procedure, [&]() -> std::optional<Fault> {
    const Outcome<std::string> text = ReadFile(path);
    if (!text) return text.Error();
    return ReadRaw(text.Value(), name, variant, current.Record, refused);
  });
  for (const RefusedWind& wind : refused) {
    if (current.Ask != nullptr) current.Ask->Ask(WindHeightBox(wind));
  }
  if (fault) {
    fault->Procedure = current.Procedure;
    ErrorReport(current, *fault);
    return Status::Error;
  }
  current.StatusText = Text(Status::Ok);
  return Status::Ok;
}

// What a native file holds that loading it does not give.
std::string NotLoaded(std::string_view text, std::string_view name) {
  const std::optional<RawVariant> variant = RecogniseRaw(text);
  if (!variant) return AtLine(name, 1, "no native sounding");
  SoundingRecord record;
  std::vector<RefusedWind> refused;
  const std::optional<Fault> fault = ReadRaw(text, name, *variant, record, refused);
  if (fault) return fault->Detail;
  return refused.empty() ? std::string() : AtLine(name, 1, "winds are left out");
}

Status SaveVariant(CurrentSounding& current, const std::filesystem::path& path, RawVariant variant,
                   FileOps& ops) {
  std::optional<Fault> fault = Guarded(current.Procedure, [&] {
    const std::string name = TextFromPath(path.filename());
    return SaveUserFile(
        path, WriteRaw(current.Record, variant, name),
        [&name](std::string_view text) { return NotLoaded(text, name); }, ops);
  });
  if (fault) {
    fault->Procedure = current.Procedure;
    ErrorReport(current, *fault);
    return Status::Error;
  }
  current.Record.FileFlavour = "Windows";
  current.StatusText = Text(Status::Ok);
  return Status::Ok;
}

}  // namespace

double RawFileVersion(std::string_view fileTag) {
  constexpr std::size_t kVersionLength = 4;
  if (fileTag.size() > kVersionLength) fileTag.remove_prefix(fileTag.size() - kVersionLength);
  return ParseNumber(fileTag).value_or(0);
}

std::optional<RawVariant> RecogniseRaw(std::string_view text) {
  constexpr std::size_t kEnough = 4096;
  RecordReader fields(text.substr(0, kEnough), {});
  const auto isTag = [](const Outcome<RecordField>& field) {
    return field && field.Value().Quoted &&
           (RawFileVersion(field.Value().Text) > 0 || field.Value().Text.starts_with("VEXA"));
  };
  const Outcome<RecordField> first = fields.Next("");
  const Outcome<RecordField> second = fields.Next("");
  const Outcome<RecordField> third = fields.Next("");
  if (!first || !first.Value().Quoted) return std::nullopt;
  if (third && third.Value().Quoted && isTag(second)) return RawVariant::Quick;
  if (isTag(first)) return RawVariant::Plain;
  return std::nullopt;
}

std::optional<Fault> ReadRaw(std::string_view text, std::string_view name, RawVariant variant,
                             SoundingRecord& into, std::vector<RefusedWind>& refused) {
  if (std::optional<Fault> fault = RawReader(text, name, into).Read(variant, refused)) {
    fault->Procedure = "LoadRAW";
    return fault;
  }
  into.DataFormat = kRawTag;
  return std::nullopt;
}

std::string WriteRaw(const SoundingRecord& record, RawVariant variant, std::string_view quickName) {
  const bool isDos = record.FileFlavour == "DOS";
  const auto rows = [isDos](int levels) {
    return isDos ? std::min(levels, kMaxDosLevels) : levels;
  };
  const int tempRows = rows(record.NumTempLevels());
  const int windRows = rows(record.NumWindLevels());
  const bool tagIsOld = RawFileVersion(record.FileTag) < kFirstVersionWithClouds;

  RecordWriter text;
  if (variant == RawVariant::Quick) text.Text(quickName).EndRecord();
  text.Text(tagIsOld ? kProgramFileTag : record.FileTag).Text(record.StationTitle);
  text.Number(1).Number(tempRows).Number(windRows).EndRecord();

  const bool decimal = record.LatLonNotation == "dec";
  const double lat = decimal ? DegreesMinutesSeconds(record.LatSigned) : record.LatValue;
  const float lon =
      decimal ? static_cast<float>(DegreesMinutesSeconds(record.LonSigned)) : record.LonValue;
  text.Number(lat).Text(record.LatHemi).Number(lon).Text(record.LonHemi);
  text.Number(record.ElevUnknown ? static_cast<int>(kNone) : record.ElevM).EndRecord();

  text.Text(record.CloudMode).Number(record.NumCloudLayers()).Text(record.CloudOption);
  text.Number(record.NumExtraRecords).Number(0).Text("").Text("").EndRecord();
  if (variant == RawVariant::Quick) text.Text("").EndRecord();

  for (int i = 1; i <= tempRows; ++i) {
    text.Number(record.Press(i)).Number(record.Temp(i)).Number(record.Dewpt(i)).EndRecord();
  }
  for (int i = 1; i <= windRows; ++i) {
    text.Number(record.WindHgt(i)).Number(record.WindDir(i)).Number(record.WindSpd(i)).EndRecord();
  }
  for (int i = 1; i <= record.NumCloudLayers(); ++i) {
    const CloudLayer& layer = record.Clouds(i);
    text.Text(layer.Type).Number(layer.Base).Text(layer.Top).Number(layer.Code).EndRecord();
  }
  if (record.NumExtraRecords >= 1) {
    for (const double value : record.ExtraRecord1) text.Number(value);
    text.EndRecord();
  }
  if (record.NumExtraRecords == 2) {
    for (const double value : record.ExtraRecord2) text.Number(value);
    text.EndRecord();
  }
  if (const int below = CountBelowSea(record, windRows); below > 0) {
    text.Text(kBelowSea).Number(below).EndRecord();
  }
  return text.Take();
}

Box WindHeightBox(const RefusedWind& refused) {
  return Box{.Title = "Wind height error",
             .Text = "Level #" + Shortest(refused.Row) + " = " + Shortest(refused.Height) +
                     " meters.\nThis wind level will not be used for this sounding."};
}

Status LoadRAW(CurrentSounding& current) {
  const ProcedureScope here(current, "LoadRAW");
  return LoadVariant(current, current.FilePath(), RawVariant::Plain);
}

Status SaveRAW(CurrentSounding& current, FileOps& ops) {
  const ProcedureScope here(current, "SaveRAW");
  return SaveVariant(current, current.FilePath(), RawVariant::Plain, ops);
}

Status LoadRAWquick(CurrentSounding& current, std::string_view name) {
  const ProcedureScope here(current, "LoadRAWquick");
  const Status status =
      LoadVariant(current, current.QuickFolder / PathFromText(name), RawVariant::Quick);
  if (status != Status::Ok || current.Record.NumTempLevels() >= 2) return status;
  const Box box{.Title = "Insufficient Data",
                .Text = std::string(name) + " has insufficient Pressure/Temperature data levels.",
                .Icon = BoxIcon::Stop};
  if (current.Ask != nullptr) current.Ask->Ask(box);
  current.StatusText = Text(Status::Error);
  return Status::Error;
}

Status SaveRAWquick(CurrentSounding& current, std::string_view name, FileOps& ops) {
  const ProcedureScope here(current, "SaveRAWquick");
  return SaveVariant(current, current.QuickFolder / PathFromText(name), RawVariant::Quick, ops);
}

}  // namespace vexa
