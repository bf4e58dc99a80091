// `vexa-cli archive`: the catalogue of soundings, filled, asked, checked and put together.
#include <algorithm>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "analysis/adiabat_table.h"
#include "archive/add.h"
#include "archive/merge.h"
#include "archive/query.h"
#include "cli/answers.h"
#include "cli/archive_parts.h"
#include "cli/archive_table.h"
#include "cli/commands.h"
#include "cli/inputs.h"
#include "cli/loaded_program.h"
#include "core/files.h"
#include "core/numbers.h"
#include "report/profiles_netcdf.h"
#include "sounding/sounding_reader.h"

namespace vexa::cli {
namespace {

namespace fs = std::filesystem;
using archive::Catalogue;
using archive::Column;
using archive::GroupedCount;

constexpr std::string_view kQueryFormats[] = {"text", "csv", "json", "list"};

constexpr ArgumentRow kArchiveOptions[] = {
    {"--format", "", "FORMAT", "query, climate, analogues: form of the answer, text without it",
     kQueryFormats},
    {"--columns", "-c", "A,B,...",
     "query, analogues: what to tell of each sounding; \"all\" for everything"},
    {"--output", "-o", "OUT.nc", "export: netCDF file to write"},
    {"--sort", "", "COLUMN", "query: order, smallest first; by station and time without it"},
    {"--descending", "", "", "query: largest first"},
    {"--most", "", "N", "query, analogues: not more soundings than these", {}, 1, 2'000'000'000},
    kShardOption,
    {"--station", "", "N", "climate, analogues: WMO number", {}, 1, 99999},
    {"--month", "", "M", "climate: month, from 1", {}, 1, 12},
    {"--day", "", "MM-DD", "climate: the days around this one in place of a month"},
    {"--window",
     "",
     "DAYS",
     "climate, analogues: days to each side; 15 and 45 without it",
     {},
     0,
     183},
    {"--hour", "", "H", "climate: UTC; ascents within an hour of it", {}, 0, 23},
    {"--hours", "", "H", "analogues: hours to each side, 3 without it", {}, 1, 12},
    {"--least",
     "",
     "N",
     "climate: no percentiles of fewer values, 30 without it",
     {},
     2,
     1'000'000},
    {"--files", "", "", "check: compares the files with what was entered of them"},
    {"--wait", "", "S", "seconds to wait for another process, 5 without it", {}, 0, 86400},
    kRootOption,
    kSetOption,
};

using Work = ArchiveWork;

// What can be done with a catalogue.
struct Part {
  std::string_view Name;
  std::span<const std::string_view> Options;  // that it takes beside --wait
  std::size_t LeastWords;                     // behind the catalogue
  std::size_t MostWords;
  int (*Run)(const Work& work);
};

// "1,240 soundings", "1 sounding".
std::string Count(std::int64_t number, std::string_view what) {
  return GroupedCount(number) + " " + std::string(what) + (number == 1 ? "" : "s");
}

// The share that is asked for; all without one.
Outcome<archive::Shard> ShareOf(const Work& work) {
  const auto text = work.Given.Value("--shard");
  if (!text) return archive::Shard{};
  const auto share = archive::ParseShard(*text);
  if (share) return *share;
  return Fault{kFaultInvalidValue, "ShareOf",
               "--shard is I/N with I from 1 to N, not \"" + *text + "\""};
}

int RunAdd(const Work& work) {
  const Outcome<CommandSetup> setup = SetupOf(work.Given, work.Out);
  if (!setup) return WrongWords(work, setup.Error().Detail);
  archive::AddRequest request{.Given = work.Words,
                              .Settings = setup.Value().Settings.Set,
                              .Stations = &setup.Value().Stations};
  const auto share = ShareOf(work);
  if (!share) return WrongWords(work, share.Error().Detail);
  request.Share = share.Value();
  Inputs inputs(work.Out, setup.Value().Stations, 0);
  request.OnTrouble = [&](const std::string& name, const std::string& reason) {
    inputs.Fail(name, reason);
  };
  request.OnNote = [&](const std::string& name, const std::string& note) {
    work.Out.Err("vexa-cli: " + name + ": " + note + "\n");
  };
  Outcome<Catalogue> catalogue = OpenCatalogue(work, {.MayMake = true});
  if (!catalogue) return CatalogueFailed(work, work.Name, catalogue.Error());
  const Outcome<archive::AddReport> done = archive::AddFiles(catalogue.Value(), request);
  if (!done) return CatalogueFailed(work, work.Name, done.Error());
  const archive::AddReport& report = done.Value();
  std::string text = Count(report.Soundings, "sounding") + " entered from " +
                     Count(report.Files, "file") + ", " + Count(report.UnchangedFiles, "file") +
                     " unchanged, " + GroupedCount(report.Refused) + " refused, " +
                     GroupedCount(report.Doubtful) + " doubtful, " +
                     Count(report.TroubledFiles, "file") + " with a fault";
  if (report.OtherFiles > 0) text += "; " + Count(report.OtherFiles, "other file") + " passed over";
  work.Out.Out(text + "\n");
  return inputs.ExitCode();
}

// The names between commas; those with a comma of their own stand between quotation marks.
std::vector<std::string> NamesIn(std::string_view text) {
  std::vector<std::string> names(1);
  bool isQuoted = false;
  for (const char c : text) {
    if (c == '"') {
      isQuoted = !isQuoted;
    } else if (c == ',' && !isQuoted) {
      names.emplace_back();
    } else {
      names.back() += c;
    }
  }
  for (std::string& name : names) name = std::string(Trim(name));
  return names;
}

std::string NoColumn(const std::string& name) {
  std::vector<std::string_view> names;
  for (const Column& column : archive::Columns()) names.push_back(column.Name);
  return "there is no column \"" + name + "\"" + DidYouMean(name, names) +
         "; vexa-cli archive columns lists them";
}

std::vector<const Column*> AllColumns() {
  std::vector<const Column*> columns;
  for (const Column& column : archive::Columns()) columns.push_back(&column);
  return columns;
}

// The condition, which may have come as several words.
std::string Spoken(const Work& work) {
  std::string text;
  for (const std::string& word : work.Words) text += (text.empty() ? "" : " ") + word;
  return text;
}

int RunQuery(const Work& work) {
  const std::string text = Spoken(work);
  const Outcome<archive::Condition> condition = archive::ParseCondition(text);
  if (!condition) return WrongWords(work, condition.Error().Detail + "\n  " + text);
  const std::string format = work.Given.Value("--format").value_or("text");
  archive::Question question{.Where = condition.Value(),
                             .IsDescending = work.Given.Has("--descending"),
                             .Most = work.Given.Whole("--most").value_or(0)};
  const std::string wanted = work.Given.Value("--columns").value_or("");
  if (format == "list") {
    for (const char* name : {"file", "sounding"}) {
      question.Columns.push_back(archive::FindColumn(name));
    }
  } else if (wanted.empty() && format == "text") {
    question.Columns = archive::UsualColumns(question.Where);
  } else {
    const auto named = ColumnsNamed(wanted.empty() ? "all" : wanted);
    if (!named) return WrongWords(work, named.Error().Detail);
    question.Columns = named.Value();
  }
  if (const auto name = work.Given.Value("--sort")) {
    question.SortBy = archive::FindColumn(*name);
    if (question.SortBy == nullptr) return WrongWords(work, NoColumn(*name));
  }
  Outcome<Catalogue> catalogue = OpenCatalogue(work, {.MayWrite = false});
  if (!catalogue) return CatalogueFailed(work, work.Name, catalogue.Error());
  const auto table = MakeArchiveTable(format, question.Columns, work.Out);
  const std::optional<Fault> fault =
      archive::Ask(catalogue.Value(), question, [&](std::span<const archive::Cell> cells) {
        table->Add(cells);
        return true;
      });
  table->End();
  return fault ? CatalogueFailed(work, work.Name, *fault) : kExitOk;
}

// The soundings are read again: the catalogue has their indices, not their levels.
int RunExportArchive(const Work& work) {
  const Outcome<CommandSetup> setup = SetupOf(work.Given, work.Out);
  if (!setup) return WrongWords(work, setup.Error().Detail);
  const Outcome<archive::Condition> condition = archive::ParseCondition(Spoken(work));
  if (!condition) return WrongWords(work, condition.Error().Detail + "\n  " + Spoken(work));
  const std::optional<std::string> output = work.Given.Value("--output");
  if (!output) return WrongWords(work, "archive export wants a file with -o");
  const auto share = ShareOf(work);
  if (!share) return WrongWords(work, share.Error().Detail);
  Outcome<Catalogue> catalogue = OpenCatalogue(work, {.MayWrite = false});
  if (!catalogue) return CatalogueFailed(work, work.Name, catalogue.Error());
  const Options& options = setup.Value().Settings.Set;
  auto file = report::ProfilesNetcdf::Begin(PathFromText(*output), archive::SettingsText(options));
  if (!file) return CatalogueFailed(work, *output, file.Error());
  archive::Question question{.Where = condition.Value(), .SortBy = archive::FindColumn("file")};
  question.Columns = ColumnsNamed("file,sounding").Value();
  Inputs inputs(work.Out, setup.Value().Stations, 0);
  analysis::AdiabatTable adiabats;
  SoundingReader reader;
  std::int64_t count = 0;
  const auto fault =
      archive::Ask(catalogue.Value(), question, [&](std::span<const archive::Cell> cells) {
        const std::string name = archive::CellText(cells[0]);
        if (!share.Value().Holds(name)) return true;
        const auto index = static_cast<int>(std::get<std::int64_t>(cells[1])) - 1;
        Loading loading = reader.Load({.File = PathFromText(name), .Index = index},
                                      {.Stations = &setup.Value().Stations});
        const std::string numbered = name + "#" + archive::CellText(cells[1]);
        if (loading.Failed) {
          inputs.Fail(numbered, *loading.Failed);
          return true;
        }
        const AnalysedSounding sounding(*std::move(loading.Sounding));
        ReportedSounding reported = report::ReportOf(sounding, name, options, &adiabats);
        file.Value().Add(reported, numbered);
        ++count;
        return true;
      });
  if (fault) return CatalogueFailed(work, work.Name, *fault);
  if (const auto failed = file.Value().End()) return CatalogueFailed(work, *output, *failed);
  work.Out.Out(Count(count, "sounding") + " written to " + *output + "\n");
  return inputs.ExitCode();
}

int RunCheckArchive(const Work& work) {
  Outcome<Catalogue> catalogue = OpenCatalogue(work, {.MayWrite = false});
  if (!catalogue) return CatalogueFailed(work, work.Name, catalogue.Error());
  const auto found = archive::CheckCatalogue(catalogue.Value(), work.Given.Has("--files"));
  if (!found) return CatalogueFailed(work, work.Name, found.Error());
  for (const std::string& line : found.Value()) {
    work.Out.Err("vexa-cli: " + work.Name + ": " + line + "\n");
  }
  archive::CatalogueCounts counts;
  const auto fault = archive::Stored([&] { counts = catalogue.Value().Counts(); });
  if (fault) return CatalogueFailed(work, work.Name, *fault);
  work.Out.Out(
      Count(counts.Soundings, "sounding") + " of " + Count(counts.Files, "file") + ", " +
      GroupedCount(counts.Refused) + " refused, " + Count(counts.Troubled, "file") +
      " with a fault; " +
      (found.Value().empty()
           ? "the catalogue is sound"
           : Count(static_cast<std::int64_t>(found.Value().size()), "thing") + " to tell") +
      "\n");
  return found.Value().empty() ? kExitOk : kExitInputFailed;
}

int RunMerge(const Work& work) {
  std::vector<fs::path> from;
  for (const std::string& name : work.Words) from.push_back(PathFromText(name));
  const auto fault = archive::Merge(PathFromText(work.Name), from);
  if (fault) return CatalogueFailed(work, work.Name, *fault);
  Outcome<Catalogue> made = OpenCatalogue(work, {.MayWrite = false});
  if (!made) return CatalogueFailed(work, work.Name, made.Error());
  archive::CatalogueCounts counts;
  const auto unread = archive::Stored([&] { counts = made.Value().Counts(); });
  if (unread) return CatalogueFailed(work, work.Name, *unread);
  work.Out.Out(Count(counts.Soundings, "sounding") + " of " + Count(counts.Files, "file") +
               " merged\n");
  return kExitOk;
}

int RunColumns(const Work& work) {
  std::string text;
  for (const Column& column : archive::Columns()) {
    text += PadRight(column.Name, 14) + PadRight(column.Unit, 14) +
            PadRight(column.Kind == archive::ColumnKind::Text ? "text" : "number", 8) +
            column.LongName + "\n";
  }
  work.Out.Out(text);
  return kExitOk;
}

constexpr std::string_view kAddTakes[] = {"--shard", "--root", "--set"};
constexpr std::string_view kQueryTakes[] = {"--format", "--columns", "--sort", "--descending",
                                            "--most"};
constexpr std::string_view kExportTakes[] = {"--output", "--shard", "--root", "--set"};
constexpr std::string_view kClimateTakes[] = {"--format", "--station", "--month",
                                              "--day",    "--window",  "--hour",
                                              "--least",  "--root",    "--set"};
constexpr std::string_view kAnaloguesTakes[] = {"--format", "--columns", "--most", "--station",
                                                "--window", "--hours",   "--root", "--set"};
constexpr std::string_view kCheckTakes[] = {"--files"};

constexpr Part kParts[] = {
    {"add", kAddTakes, 1, kAnyNumber, RunAdd},
    {"query", kQueryTakes, 0, kAnyNumber, RunQuery},
    {"export", kExportTakes, 0, kAnyNumber, RunExportArchive},
    {"climate", kClimateTakes, 0, 1, RunClimate},
    {"analogues", kAnaloguesTakes, 1, 1, RunAnalogues},
    {"check", kCheckTakes, 0, 0, RunCheckArchive},
    {"merge", {}, 1, kAnyNumber, RunMerge},
};

int RunArchive(const Arguments& arguments, Console& console) {
  std::vector<std::string_view> names;
  for (const Part& part : kParts) names.push_back(part.Name);
  names.push_back("columns");
  Work work{arguments, console};
  const std::string& name = arguments.Files.front();
  if (name == "columns") return RunColumns(work);
  const auto part = std::ranges::find(kParts, std::string_view(name), &Part::Name);
  if (part == std::end(kParts)) {
    return WrongWords(work, "\"" + name + "\" is nothing that can be done with an archive" +
                                DidYouMean(name, names) + "; there are " + Joined(names));
  }
  for (const auto& [option, value] : arguments.Options) {
    if (option != "--wait" && std::ranges::find(part->Options, option) == part->Options.end()) {
      return WrongWords(work, "archive " + name + " takes no " + std::string(option));
    }
  }
  if (arguments.Files.size() < 2) return WrongWords(work, "archive " + name + " wants a catalogue");
  work.Name = arguments.Files[1];
  work.Words.assign(arguments.Files.begin() + 2, arguments.Files.end());
  if (work.Words.size() < part->LeastWords) {
    return WrongWords(work, "archive " + name + " wants a file behind the catalogue");
  }
  if (work.Words.size() > part->MostWords) {
    return WrongWords(work, "archive " + name + " takes " +
                                (part->MostWords == 0 ? "nothing" : "one file") +
                                " behind the catalogue");
  }
  return part->Run(work);
}

}  // namespace

int WrongWords(const ArchiveWork& work, std::string_view reason) {
  return UsageError(work.Out, kArchiveCommand, reason);
}

// A job that is to be done again has to tell this from inputs that cannot be read.
int CatalogueFailed(const ArchiveWork& work, const std::string& name, const Fault& fault) {
  constexpr int kExitCatalogueFailed = 3;
  const std::string& at = fault.File.empty() ? name : fault.File;
  work.Out.Err("vexa-cli: " + at + ": " + fault.Detail + "\n");
  return kExitCatalogueFailed;
}

Outcome<std::vector<const Column*>> ColumnsNamed(const std::string& names) {
  if (names == "all") return AllColumns();
  std::vector<const Column*> columns;
  for (const std::string& name : NamesIn(names)) {
    columns.push_back(archive::FindColumn(name));
    if (columns.back() == nullptr) return Fault{kFaultInvalidValue, "ColumnsNamed", NoColumn(name)};
  }
  return columns;
}

Outcome<Catalogue> OpenCatalogue(const ArchiveWork& work, archive::Opening opening) {
  constexpr int kMs = 1000;
  if (const auto seconds = work.Given.Whole("--wait")) opening.WaitMs = *seconds * kMs;
  return Catalogue::Open(PathFromText(work.Name), opening);
}

const Command kArchiveCommand = {
    {"archive", "add|query|export|climate|analogues|check|merge|columns CATALOGUE ... [options]",
     "Keeps a catalogue of soundings with all their indices, and asks it.", kArchiveOptions, 1,
     kAnyNumber,
     "archive add CATALOGUE FILE-OR-FOLDER...   enters what is new or has changed\n"
     "archive query CATALOGUE [CONDITION]       station=72558 and month=6 and \"CAPE total\">3000\n"
     "archive export CATALOGUE [CONDITION] -o OUT.nc   its soundings, levels and indices\n"
     "archive climate CATALOGUE [FILE]          what is usual, and how usual a sounding is\n"
     "archive analogues CATALOGUE FILE          the soundings that are most like it\n"
     "archive check CATALOGUE                   whether it is sound\n"
     "archive merge NEW CATALOGUE...            several made one\n"
     "archive columns                           what is kept of every sounding"},
    RunArchive};

}  // namespace vexa::cli
