#include <algorithm>
#include <string>
#include <vector>

#include "analysis/index_table.h"
#include "cli/commands.h"
#include "core/numbers.h"

namespace vexa::cli {
namespace {

constexpr ArgumentRow kOptions[] = {
    {"--format", "", "FORMAT", "text (without it), json or csv"},
    {"--explain", "", "INDEX",
     "tell how an index came about, by its label: KI, SWEAT; may be repeated"},
    {"--set", "", "\"KEY=VALUE\"", "sets an option by its label; may be repeated"},
};

/// How soundings follow each other in one of the formats. One is written and forgotten before the
/// next is read.
class Report {
 public:
  Report(std::string format, bool several, const Options& options, Console& console)
      : format_(std::move(format)), several_(several), options_(options), console_(console) {
    if (format_ == "csv") console_.Out(CsvHeader(options_) + "\n");
    if (format_ == "json" && several_) console_.Out("[");
  }

  void Add(const AnalysedSounding& sounding) {
    if (format_ == "csv") {
      console_.Out(CsvRow(sounding, options_) + "\n");
    } else if (format_ == "json") {
      JsonWriter json;
      WriteJson(json, sounding, options_);
      console_.Out((several_ ? (count_ > 0 ? ",\n" : "\n") : "") + json.Str() +
                   (several_ ? "" : "\n"));
    } else {
      console_.Out((count_ > 0 ? "\n" : "") + TextReport(sounding, options_));
    }
    ++count_;
  }

  void End() {
    if (format_ == "json" && several_) console_.Out("\n]\n");
  }

 private:
  std::string format_;
  bool several_;
  const Options& options_;
  Console& console_;
  int count_ = 0;
};

std::string IndexLabels() {
  std::string labels;
  for (const analysis::IndexRow& row : analysis::IndexTable()) {
    labels += (labels.empty() ? "" : ", ") + std::string(Trim(row.Label));
  }
  return labels;
}

int ExplainAll(const Arguments& arguments, const std::vector<const analysis::IndexRow*>& rows,
               const Options& options, Console& console) {
  int exitCode = kExitOk;
  for (const std::string& file : arguments.Files) {
    const Outcome<AnalysedSounding> sounding = LoadAndAnalyse(file, options);
    if (!sounding) {
      ReportFault(console, file, sounding.Error());
      exitCode = kExitInputFailed;
      continue;
    }
    const SoundingRecord& record = sounding.Value().Record;
    console.Out(record.StationTitle + "\n");
    for (const analysis::IndexRow* row : rows) {
      console.Out(analysis::Explain(
          analysis::ComputeIndex(*row, record, sounding.Value().Results, options)));
    }
  }
  return exitCode;
}

int RunAnalyze(const Arguments& arguments, Console& console) {
  const std::string format = arguments.Value("--format").value_or("text");
  constexpr std::string_view kFormats[] = {"text", "json", "csv"};
  if (std::ranges::find(kFormats, format) == std::end(kFormats)) {
    return UsageError(console, kAnalyzeCommand,
                      "--format takes text, json or csv, not \"" + format + "\"");
  }
  Options options;
  if (const auto fault = SetOptions(options, arguments.Values("--set"))) {
    return UsageError(console, kAnalyzeCommand, fault->Detail);
  }
  std::vector<const analysis::IndexRow*> explained;
  for (const std::string& label : arguments.Values("--explain")) {
    explained.push_back(analysis::FindIndex(label));
    if (explained.back() == nullptr) {
      return UsageError(console, kAnalyzeCommand,
                        "there is no index \"" + label + "\"; there are " + IndexLabels());
    }
  }
  if (!explained.empty()) return ExplainAll(arguments, explained, options, console);
  int exitCode = kExitOk;
  Report report(format, arguments.Files.size() > 1, options, console);
  for (const std::string& file : arguments.Files) {
    const Outcome<AnalysedSounding> sounding = LoadAndAnalyse(file, options);
    if (!sounding) {
      ReportFault(console, file, sounding.Error());
      exitCode = kExitInputFailed;
      continue;
    }
    report.Add(sounding.Value());
  }
  report.End();
  return exitCode;
}

}  // namespace

const Command kAnalyzeCommand = {"analyze", "FILE... [options]",
                                 "Prints the analysis of each sounding.", kOptions, RunAnalyze};

}  // namespace vexa::cli
