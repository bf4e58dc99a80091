#include "core/session_file.h"

#include <cstdint>
#include <system_error>

#include "core/data_checks.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/platform.h"
#include "core/record_text.h"

namespace vexa {
namespace {

constexpr std::string_view kTag = "VEXA SESSION";
constexpr int kVersion = 2;

// Bytes that a quoted field cannot hold stand as %XX.
constexpr std::string_view kEscaped = "%\"\r\n\x1A";
constexpr std::string_view kHex = "0123456789ABCDEF";

std::string Hex(std::uint32_t value, int digits) {
  std::string text;
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
    text += kHex[(value >> static_cast<unsigned>(shift)) & 0xFU];
  }
  return text;
}

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (kEscaped.find(c) == std::string_view::npos) {
      escaped += c;
    } else {
      escaped += '%' + Hex(static_cast<unsigned char>(c), 2);
    }
  }
  return escaped;
}

std::string Unescaped(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%' || i + 2 >= text.size()) {
      plain += text[i];
      continue;
    }
    plain += static_cast<char>(kHex.find(text[i + 1]) * 16 + kHex.find(text[i + 2]));
    i += 2;
  }
  return plain;
}

// FNV-1a; finds damage, not malice.
std::uint32_t CheckSum(std::string_view bytes) {
  std::uint32_t sum = 2166136261U;
  for (const char c : bytes) sum = (sum ^ static_cast<unsigned char>(c)) * 16777619U;
  return sum;
}

// Every field of a record in the order of the file, for writing and reading alike.
template <class Archive, class Record>
void Visit(Archive& archive, Record& record) {
  archive(record.FileTag, record.StationTitle);
  archive(record.LatValue, record.LatHemi, record.LonValue, record.LonHemi);
  archive(record.LatSigned, record.LonSigned, record.LatLonNotation);
  for (auto* parts : {&record.LatParts, &record.LonParts}) {
    archive(parts->Degrees, parts->Minutes, parts->Seconds);
  }
  archive(record.ElevM, record.ElevFt, record.ElevUnknown);
  archive(record.DataFormat, record.FileFlavour, record.CloudMode, record.CloudOption);
  archive(record.NumExtraRecords, record.ExtraRecordsPresent);
  for (auto& value : record.ExtraRecord1) archive(value);
  for (auto& value : record.ExtraRecord2) archive(value);
  archive(record.WmoNumber, record.Time.Year, record.Time.Month, record.Time.Day, record.Time.Hour,
          record.Time.Minute, record.SurfaceLostBelow);
  archive(record.Press, record.Temp, record.Dewpt);
  archive(record.WindHgt, record.WindDir, record.WindSpd);
  archive(record.Clouds, record.WorkWindDir, record.WorkWindSpd);
}

class Writer {
 public:
  template <class... Fields>
  void operator()(const Fields&... fields) {
    (Put(fields), ...);
    text_.EndRecord();
  }
  std::string Take() { return text_.Take(); }

 private:
  void Put(const std::string& text) { text_.Text(Escaped(text)); }
  void Put(double value) { text_.Number(value); }
  void Put(float value) { text_.Number(value); }
  void Put(int value) { text_.Number(value); }
  void Put(bool value) { text_.Number(value ? 1 : 0); }
  void Put(const CloudLayer& layer) {
    Put(layer.Type);
    Put(layer.Base);
    Put(layer.Top);
    Put(layer.Code);
  }
  template <class T>
  void Put(const Levels<T>& levels) {
    Put(levels.Count());
    for (const T& value : levels.Values()) Put(value);
    text_.EndRecord();
  }

  RecordWriter text_{};
};

// After the first fault nothing more is read.
class Reader {
 public:
  Reader(std::string_view text, std::string_view name) : fields_(text, name) {}

  template <class... Fields>
  void operator()(Fields&... fields) {
    (Get(fields), ...);
  }
  bool Good() const { return !fault_; }
  const std::string& Reason() const { return fault_->Detail; }
  void Refuse(std::string_view reason) {
    if (!fault_) fault_ = fields_.DamagedAt(fields_.Line(), reason);
  }

 private:
  template <class T>
  T Take(Outcome<T> taken) {
    if (taken) return std::move(taken.Value());
    if (!fault_) fault_ = taken.Error();
    return T{};
  }
  double Number() { return Good() ? Take(fields_.Number("a number")) : 0; }

  void Get(std::string& text) {
    if (Good()) text = Unescaped(Take(fields_.Text("a text")));
  }
  void Get(double& value) { value = Number(); }
  void Get(float& value) { value = static_cast<float>(Number()); }
  void Get(int& value) { value = ToWhole(Number()); }
  void Get(bool& value) { value = Number() != 0; }
  void Get(CloudLayer& layer) {
    Get(layer.Type);
    Get(layer.Base);
    Get(layer.Top);
    Get(layer.Code);
  }
  template <class T>
  void Get(Levels<T>& levels) {
    int count = 0;
    Get(count);
    for (int i = 0; i < count && Good(); ++i) {
      T value{};
      Get(value);
      levels.Add(std::move(value));
    }
  }

  RecordReader fields_;
  std::optional<Fault> fault_{};
};

bool LevelsAgree(const SoundingRecord& record) {
  const int temps = record.Press.Count();
  const int winds = record.WindHgt.Count();
  return record.Temp.Count() == temps && record.Dewpt.Count() == temps &&
         record.WindDir.Count() == winds && record.WindSpd.Count() == winds &&
         record.WorkWindDir.Count() == record.WorkWindSpd.Count();
}

void ReadBody(Reader& archive, Session& session) {
  std::string tag;
  int version = 0;
  archive(tag, version);
  if (archive.Good() && (tag != kTag || version != kVersion)) {
    return archive.Refuse("is of another version");
  }
  int files = 0;
  archive(files);
  for (int i = 0; i < files && archive.Good(); ++i) archive(session.Files.emplace_back());
  int settings = 0;
  archive(settings);
  for (int i = 0; i < settings && archive.Good(); ++i) {
    auto& setting = session.Settings.emplace_back();
    archive(setting.first, setting.second);
  }
  bool isEdited = false;
  archive(isEdited);
  if (!isEdited || !archive.Good()) return;
  Visit(archive, session.Edited.emplace());
  if (!LevelsAgree(*session.Edited)) archive.Refuse("holds levels of unequal number");
}

SessionReading None(std::string_view reason) {
  return {std::nullopt, "The last session cannot be restored: " + std::string(reason) + '.'};
}

}  // namespace

std::string WriteSession(const Session& session) {
  Writer archive;
  archive(std::string(kTag), kVersion);
  archive(static_cast<int>(session.Files.size()));
  for (const std::string& file : session.Files) archive(file);
  archive(static_cast<int>(session.Settings.size()));
  for (const auto& [key, value] : session.Settings) archive(key, value);
  archive(session.Edited.has_value());
  if (session.Edited) Visit(archive, *session.Edited);
  std::string text = archive.Take();
  return text + '"' + Hex(CheckSum(text), 8) + "\"\r\n";
}

SessionReading ReadSession(std::string_view text, std::string_view name) {
  constexpr std::size_t kSumLength = 12;  // eight digits in quotes and a line end
  if (text.size() < kSumLength) return None(std::string(name) + " is damaged");
  const std::string_view body = text.substr(0, text.size() - kSumLength);
  if (text.substr(body.size()) != '"' + Hex(CheckSum(body), 8) + "\"\r\n") {
    return None(std::string(name) + " is damaged");
  }
  Reader archive(body, name);
  Session session;
  ReadBody(archive, session);
  if (!archive.Good()) return None(archive.Reason());
  SessionReading reading{std::move(session), {}};
  if (!reading.Found->Edited) return reading;
  for (const std::string& note : KeepPossible(*reading.Found->Edited)) {
    reading.Note += (reading.Note.empty() ? "The last session: " : " ") + note;
  }
  return reading;
}

namespace {

enum class Wanted { SessionFirst, None };

SessionPlace TakePlace(const std::filesystem::path& folder, Wanted wanted) {
  constexpr int kMostPrograms = 8;
  SessionPlace place;
  for (int number = 1; number <= kMostPrograms; ++number) {
    const std::filesystem::path file =
        folder / ("VEXA" + (number == 1 ? std::string{} : Shortest(number)) + ".SES");
    std::filesystem::path lock = file;
    lock += ".lck";
    if (wanted == Wanted::None && IsThere(file)) continue;
    std::unique_ptr<FileHold> held = HoldFile(lock);
    if (held == nullptr) continue;
    const bool hasSession = IsThere(file);
    if (place.File.empty() || hasSession) place = {file, std::move(held)};
    if (hasSession || wanted == Wanted::None) break;
  }
  return place;
}

}  // namespace

SessionPlace TakeSessionPlace(const std::filesystem::path& folder) {
  return TakePlace(folder, Wanted::SessionFirst);
}

SessionPlace TakeFreeSessionPlace(const std::filesystem::path& folder) {
  return TakePlace(folder, Wanted::None);
}

std::optional<Fault> SaveSession(const std::filesystem::path& file, const Session& session,
                                 FileOps& ops) {
  return SaveFile(file, WriteSession(session), ops);
}

SessionReading LoadSession(const std::filesystem::path& file) {
  const Outcome<std::string> text = ReadFile(file);
  if (text) return ReadSession(text.Value(), TextFromPath(file.filename()));
  if (text.Error().Number == kFaultFileNotFound) return {};
  return None(text.Error().Detail);
}

std::optional<Fault> ForgetSession(const std::filesystem::path& file) {
  const std::error_code failed = Remove(file);
  if (!failed) return std::nullopt;
  return Fault{FaultNumber(failed), "ForgetSession", TextFromPath(file) + ": " + failed.message(),
               TextFromPath(file.filename())};
}

}  // namespace vexa
