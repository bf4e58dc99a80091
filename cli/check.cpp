// `vexa-cli check`: what each file is and whether it can be used, one line a file.
#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/commands.h"
#include "core/data_checks.h"
#include "core/error_report.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "ingest/sounding_files.h"
#include "sounding/sounding_reader.h"

namespace vexa::cli {
namespace {

namespace fs = std::filesystem;

constexpr ArgumentRow kCheckOptions[] = {
    {"--notes", "-n", "", "what was left out, changed or worked out, below each file"},
    {"--quiet", "-q", "", "only the files with a fault"},
};

std::string Counts(const SoundingRecord& record) {
  return Shortest(record.NumTempLevels()) + " temperatures, " + Shortest(record.NumWindLevels()) +
         " winds";
}

struct Verdict {
  bool IsFault = false;
  bool IsStrange = false;  // a text in none of the known formats
  std::string Text{};
  std::vector<std::string> Notes{};
};

Verdict Refused(const Fault& fault) {
  CurrentSounding nobody;
  std::string text = fault.Detail.empty() ? FaultMessage(nobody, fault) : fault.Detail;
  std::ranges::replace(text, '\n', ' ');
  return {.IsFault = true, .Text = "FAULT: " + std::move(text)};
}

// An empty file was to be a sounding; it is a fault wherever it stands.
bool IsBlank(const SourceText& source) {
  return source.Members().empty() && Trim(source.Bytes()).empty();
}

// "3 files".
std::string Count(int number, std::string_view what) {
  return Shortest(number) + " " + std::string(what) + (number == 1 ? "" : "s");
}

// What the checks find nothing against.
std::string Passed(int garbled) {
  if (garbled == 0) return "OK";
  return "OK, but " + Count(garbled, "place") + " may be garbled";
}

// text  null of a file that cannot be read
Verdict VerdictOf(Loading loading, const SourceText* text) {
  if (loading.Failed) {
    Verdict refused = Refused(*loading.Failed);
    refused.IsStrange =
        loading.Failed->Number == kFaultFormat && (text == nullptr || !IsBlank(*text));
    refused.Notes = std::move(loading.Sounding ? loading.Sounding->Notes : loading.Notes);
    return refused;
  }
  LoadedSounding& sounding = *loading.Sounding;
  const SoundingRecord& record = sounding.Record;
  const bool isFault = sounding.Finding.Number != 0;
  return {.IsFault = isFault,
          .Text = record.DataFormat + ", " + record.StationTitle + ", " +
                  (record.Time.Known() ? TimeText(record.Time) : "no time") + ", " +
                  Counts(record) + ", " +
                  (isFault ? "FAULT: " + FindingText(sounding.Finding) : Passed(sounding.Garbled)),
          .Notes = std::move(sounding.Notes)};
}

// What is shown of the verdicts: what is not need not be kept, of a hundred thousand soundings.
struct CheckView {
  bool Notes = false;
  bool OnlyFaults = false;
};

// A file's soundings one after the other, of a long one with the memory of a piece; of a format
// with one sounding a file that one. A text in no known format has one verdict.
std::vector<Verdict> CheckFile(const fs::path& path, const CheckView& view,
                               SoundingReader& reader) {
  const LoadPolicy policy{.Stations = &Stations()};
  if (NamedSounding(path)) return {VerdictOf(reader.Load({.File = path}, policy), nullptr)};
  SoundingWalk walk(path);
  std::vector<Verdict> verdicts;
  while (std::optional<Loading> loading = walk.Next(policy)) {
    Verdict& verdict = verdicts.emplace_back(VerdictOf(*std::move(loading), walk.Text()));
    if (!view.Notes) verdict.Notes = {};
    if (view.OnlyFaults && !verdict.IsFault) verdict.Text = {};
  }
  if (verdicts.size() > 1) {
    const std::string count = Shortest(static_cast<int>(verdicts.size()));
    for (std::size_t i = 0; i < verdicts.size(); ++i) {
      verdicts[i].Text.insert(0, '[' + Shortest(static_cast<int>(i) + 1) + '/' + count + "] ");
    }
  }
  return verdicts;
}

int RunCheck(const Arguments& arguments, Console& console) {
  const bool isQuiet = arguments.Has("--quiet"), showsNotes = arguments.Has("--notes");
  int files = 0, soundings = 0, faults = 0, others = 0;
  SoundingReader reader;
  for (const std::string& given : arguments.Files) {
    for (const fs::path& path : ingest::FilesBelow(PathFromText(given))) {
      const std::string name = TextFromPath(path);
      const std::vector<Verdict> verdicts =
          CheckFile(path, {.Notes = showsNotes, .OnlyFaults = isQuiet}, reader);
      // What stands in a folder beside the soundings is no fault; a file that was named is one.
      if (verdicts.front().IsStrange && name != given) {
        ++others;
        if (showsNotes) console.Out(name + ": no sounding\n");
        continue;
      }
      ++files;
      for (const Verdict& verdict : verdicts) {
        ++soundings;
        faults += verdict.IsFault ? 1 : 0;
        if (isQuiet && !verdict.IsFault) continue;
        std::string text = name + ": " + verdict.Text + '\n';
        if (showsNotes) {
          for (const std::string& note : verdict.Notes) text += "    " + note + '\n';
        }
        console.Out(text);
      }
    }
  }
  console.Out(Count(files, "file") + ", " + Count(soundings, "sounding") + ", " +
              Count(faults, "fault") +
              (others == 0 ? "" : "; " + Count(others, "other file") + " passed over") + "\n");
  return faults == 0 && files > 0 ? kExitOk : kExitInputFailed;
}

}  // namespace

const Command kCheckCommand = {
    {"check", "FILE-OR-FOLDER... [options]",
     "Tells of each file its format, station, time, levels and faults.", kCheckOptions},
    RunCheck};

}  // namespace vexa::cli
