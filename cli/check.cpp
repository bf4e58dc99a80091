// `vexa-cli check`: what each file is and whether it can be used, one line a file.
#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "cli/commands.h"
#include "core/data_checks.h"
#include "core/error_report.h"
#include "core/files.h"
#include "core/numbers.h"
#include "ingest/decoder.h"
#include "ingest/source_header.h"

namespace vexa::cli {
namespace {

namespace fs = std::filesystem;

constexpr ArgumentRow kOptions[] = {
    {"--notes", "-n", "", "what was left out, changed or worked out, below each file"},
    {"--quiet", "-q", "", "only the files with a fault"},
};

// Ordinary files below a folder, in the order of their names; a file is itself.
std::vector<fs::path> FilesOf(const fs::path& given) {
  std::error_code failed;
  if (!fs::is_directory(given, failed)) return {given};
  std::vector<fs::path> files;
  const auto options = fs::directory_options::skip_permission_denied;
  for (fs::recursive_directory_iterator at(given, options, failed), end; !failed && at != end;
       at.increment(failed)) {
    std::error_code ignored;
    if (at->is_regular_file(ignored)) files.push_back(at->path());
  }
  std::ranges::sort(files);
  return files;
}

std::string TimeText(const ObservationTime& time) {
  if (!time.Known()) return "no time";
  return Mask(time.Year, "0000") + '-' + Mask(time.Month, "00") + '-' + Mask(time.Day, "00") + ' ' +
         Mask(time.Hour, "00") + ':' + Mask(time.Minute, "00");
}

std::string Counts(const SoundingRecord& record) {
  return Shortest(record.NumTempLevels()) + " temperatures, " + Shortest(record.NumWindLevels()) +
         " winds";
}

struct Verdict {
  bool IsFault = false;
  std::string Text{};
  std::vector<std::string> Notes{};
};

Verdict Refused(const Fault& fault) {
  CurrentSounding nobody;
  std::string text = fault.Detail.empty() ? FaultMessage(nobody, fault) : fault.Detail;
  std::ranges::replace(text, '\n', ' ');
  return {.IsFault = true, .Text = "FAULT: " + std::move(text)};
}

Verdict CheckSounding(const SourceText& source, ingest::LoadContext& context) {
  SoundingRecord record;
  if (const std::optional<Fault> fault = ingest::DecodeSounding(source, context, record)) {
    return Refused(*fault);
  }
  const QcFinding found = CheckRecord(record);
  Verdict verdict{.IsFault = found.Number != 0};
  verdict.Text = record.DataFormat + ", " + record.StationTitle + ", " + TimeText(record.Time) +
                 ", " + Counts(record) + ", ";
  if (found.Number == 0) {
    verdict.Text += "OK";
  } else {
    verdict.Text += "FAULT: " + std::string(QcText(found.Number));
    if (found.Level != 0) verdict.Text += " Level " + Shortest(found.Level) + '.';
  }
  return verdict;
}

// A file's soundings one after the other; of a format with one sounding a file that one.
std::vector<Verdict> CheckFile(const fs::path& path) {
  std::vector<std::string> notes;
  const Outcome<SourceText> source = ingest::ReadSource(path, notes);
  if (!source) return {Refused(source.Error())};
  std::vector<Verdict> verdicts;
  SilentInteraction quiet;
  // One context for all: what it keeps of the text spares looking for the soundings again.
  ingest::LoadContext context{.Ask = &quiet, .Stations = &Stations()};
  do {
    context.Notes = std::exchange(notes, {});  // those of the file with its first sounding
    Verdict verdict = CheckSounding(source.Value(), context);
    verdict.Notes = std::move(context.Notes);
    if (context.Count > 1) {
      verdict.Text.insert(0,
                          '[' + Shortest(context.Index + 1) + '/' + Shortest(context.Count) + "] ");
    }
    verdicts.push_back(std::move(verdict));
  } while (++context.Index < context.Count);
  return verdicts;
}

int RunCheck(const Arguments& arguments, Console& console) {
  const bool isQuiet = arguments.Has("--quiet"), showsNotes = arguments.Has("--notes");
  int files = 0, soundings = 0, faults = 0;
  for (const std::string& given : arguments.Files) {
    for (const fs::path& path : FilesOf(PathFromText(given))) {
      ++files;
      for (const Verdict& verdict : CheckFile(path)) {
        ++soundings;
        faults += verdict.IsFault ? 1 : 0;
        if (isQuiet && !verdict.IsFault) continue;
        std::string text = TextFromPath(path) + ": " + verdict.Text + '\n';
        if (showsNotes) {
          for (const std::string& note : verdict.Notes) text += "    " + note + '\n';
        }
        console.Out(text);
      }
    }
  }
  console.Out(Shortest(files) + (files == 1 ? " file, " : " files, ") + Shortest(soundings) +
              (soundings == 1 ? " sounding, " : " soundings, ") + Shortest(faults) +
              (faults == 1 ? " fault\n" : " faults\n"));
  return faults == 0 && files > 0 ? kExitOk : kExitInputFailed;
}

}  // namespace

const Command kCheckCommand = {"check", "FILE-OR-FOLDER...",
                               "Tells of each file its format, station, time, levels and faults.",
                               kOptions, RunCheck};

}  // namespace vexa::cli
