#include "program/export_batch.h"

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "analysis/adiabat_table.h"
#include "core/error_report.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/platform.h"
#include "sounding/sounding_reader.h"

namespace vexa {
namespace {

constexpr std::size_t kAheadPerThread = 4;  // soundings that wait for their turn

/// One file's share of the dump, or why it has none.
struct Piece {
  std::string Text{};
  std::string DataType{};
  std::optional<Fault> Failed{};
  QcFinding Finding{};
};

/// What is kept from one file to the next.
struct Bench {
  analysis::AdiabatTable Adiabats{};
  SoundingReader Reader{};
};

Piece MakePiece(const std::string& file, const ExportRequest& request, const Options& options,
                Bench& bench) {
  const output::DumpKind kind = request.Kind;
  Piece piece;
  piece.Failed = Guarded("ExportBatch", [&]() -> std::optional<Fault> {
    const Loading loading = bench.Reader.Load({.File = PathFromText(file), .Index = request.Index},
                                              {.Stations = request.Stations});
    if (loading.Failed) return loading.Failed;
    piece.Finding = loading.Sounding->Finding;
    if (piece.Finding.Number != 0) {
      return Fault{kFaultUnusable, "BadSounding", FindingText(piece.Finding)};
    }
    const SoundingRecord& record = loading.Sounding->Record;
    piece.Text =
        output::DumpSounding(record, output::AnalyseForDump(record, options, kind, &bench.Adiabats),
                             options, options.System.Dump, kind);
    piece.DataType = record.DataFormat;
    return std::nullopt;
  });
  return piece;
}

/// Pieces in the order of the files, made by several threads a little ahead of their use.
class PieceSource {
 public:
  PieceSource(const ExportRequest& request, const Options& options)
      : request_(request), options_(options) {
    const auto threads = static_cast<std::size_t>(std::max(1, request.Jobs));
    if (threads == 1) return;
    slots_.resize(threads * kAheadPerThread);
    for (std::size_t i = 0; i < threads; ++i) {
      workers_.emplace_back([this] { Work(); });
    }
  }
  ~PieceSource() {
    {
      const std::lock_guard lock(mutex_);
      stopped_ = true;
    }
    changed_.notify_all();
    for (std::thread& worker : workers_) worker.join();
  }
  PieceSource(const PieceSource&) = delete;
  PieceSource& operator=(const PieceSource&) = delete;

  Piece Next() {
    if (workers_.empty()) return MakePiece(request_.Files[used_++], request_, options_, bench_);
    std::unique_lock lock(mutex_);
    std::unique_ptr<Piece>& slot = slots_[used_ % slots_.size()];
    changed_.wait(lock, [&slot] { return slot != nullptr; });
    Piece piece = std::move(*slot);
    slot.reset();
    ++used_;
    lock.unlock();
    changed_.notify_all();
    return piece;
  }

 private:
  void Work() {
    Bench bench;
    std::unique_lock lock(mutex_);
    while (true) {
      changed_.wait(lock, [this] { return stopped_ || begun_ < used_ + slots_.size(); });
      if (stopped_ || begun_ >= request_.Files.size()) return;
      const std::size_t mine = begun_++;
      lock.unlock();
      auto piece =
          std::make_unique<Piece>(MakePiece(request_.Files[mine], request_, options_, bench));
      lock.lock();
      slots_[mine % slots_.size()] = std::move(piece);
      changed_.notify_all();
    }
  }

  const ExportRequest& request_;
  const Options& options_;
  Bench bench_{};  // without threads; each of these has its own
  std::mutex mutex_{};
  std::condition_variable changed_{};
  std::vector<std::unique_ptr<Piece>> slots_{};
  std::size_t begun_ = 0;  // files that a thread has taken
  std::size_t used_ = 0;   // pieces handed out
  bool stopped_ = false;
  std::vector<std::thread> workers_{};
};

std::filesystem::path RejectPath(const std::filesystem::path& output) {
  return output.parent_path() /
         PathFromText(std::string(kRejectPrefix) + TextFromPath(output.filename()));
}

// Refuses outputs that are among the files to read.
std::optional<Fault> NoInput(const ExportRequest& request,
                             std::initializer_list<std::filesystem::path> outputs) {
  for (const std::filesystem::path& output : outputs) {
    for (const std::string& file : request.Files) {
      if (!AreOne(PathFromText(file), output)) continue;
      return Fault{kFaultBadFileName, "ExportBatch",
                   TextFromPath(output) + " is a file to read and would be lost",
                   TextFromPath(output)};
    }
  }
  return std::nullopt;
}

}  // namespace

Outcome<ExportRange> ParseExportRange(std::string_view first, std::string_view last, int count) {
  constexpr std::size_t kDigits = 4;
  const auto number = [](std::string_view text) {
    const std::string_view digits = Trim(text);
    const bool isDigits = digits.size() == kDigits &&
                          digits.find_first_not_of("0123456789") == std::string_view::npos;
    return isDigits ? ParseWhole(digits) : std::nullopt;
  };
  const std::optional<int> from = number(first);
  const std::optional<int> to = number(last);
  if (!from || !to || *from < 1 || *to < *from || *to > count) {
    return Fault{kFaultInvalidValue, "ParseExportRange", std::string(kRangeInvalid)};
  }
  return ExportRange{*from, *to};
}

ExportReport ExportBatch(const ExportRequest& request, const Options& given, Progress progress,
                         const OnReject& onReject, FileOps& ops) {
  const Options options = given;  // the window's may change while it works
  ExportReport report;
  const DumpOptions& dump = options.System.Dump;
  const std::filesystem::path rejectPath = RejectPath(request.Output);
  if ((report.Failed = NoInput(request, {request.Output, rejectPath}))) return report;
  AtomicFile file(request.Output, ops);
  std::optional<AtomicFile> rejects;
  output::DumpSummary summary{.FileName = TextFromPath(request.Output.filename())};
  const auto keep = [&report](std::optional<Fault> fault) {
    if (fault && !report.Failed) report.Failed = std::move(fault);
  };
  keep(file.Write(output::DumpOpening(dump, request.Kind)));
  const std::string total = Shortest(static_cast<int>(request.Files.size()));
  PieceSource pieces(request, options);
  for (std::size_t i = 0; i < request.Files.size() && !report.Failed; ++i) {
    const double done = static_cast<double>(i) / static_cast<double>(request.Files.size());
    if (!progress.Begin("Processing: " + Shortest(static_cast<int>(i) + 1) + " of " + total,
                        done)) {
      report.Cancelled = true;
      report.Left = static_cast<int>(request.Files.size() - i);
      report.FirstLeft = TextFromPath(PathFromText(request.Files[i]).filename());
      break;
    }
    const Piece piece = pieces.Next();
    const std::string& name = request.Files[i];
    if (!piece.Failed) {
      keep(file.Write(piece.Text));
      summary.DataTypes.insert(piece.DataType);
      ++summary.Count;
      continue;
    }
    const std::string reason = FaultLine(name, *piece.Failed);
    if (report.Rejected++ == 0) report.FirstReason = reason;
    if (!rejects) rejects.emplace(rejectPath, ops);
    keep(rejects->Write(name + "    Error = " + reason + "\r\n"));
    if (onReject) onReject({.File = name, .Why = *piece.Failed, .Finding = piece.Finding});
  }
  if (!report.Failed && summary.Count > 0) {
    keep(file.Write(output::DumpClosing(summary, dump, request.Kind)));
    keep(file.Commit());
  }
  if (report.Failed) return report;
  report.Written = summary.Count;
  if (summary.Count > 0) report.Output = request.Output;
  if (rejects) {
    keep(rejects->Commit());
    report.RejectFile = rejectPath;
  }
  return report;
}

std::optional<Fault> ExportSounding(const SoundingRecord& sounding, const Options& options,
                                    const std::filesystem::path& output, output::DumpKind kind) {
  const DumpOptions& dump = options.System.Dump;
  const output::DumpSummary summary{
      .FileName = TextFromPath(output.filename()), .DataTypes = {sounding.DataFormat}, .Count = 1};
  return SaveFile(
      output, output::DumpOpening(dump, kind) +
                  output::DumpSounding(sounding, output::AnalyseForDump(sounding, options, kind),
                                       options, dump, kind) +
                  output::DumpClosing(summary, dump, kind));
}

Box ExportSummary(const ExportReport& report) {
  std::string text;
  if (!report.Output.empty()) {
    text = "File " + TextFromPath(report.Output.filename()) + " has been created\nwith " +
           Shortest(report.Written) +
           (report.Written == 1 ? " sounding processed." : " soundings processed.");
  }
  if (!report.RejectFile.empty()) {
    if (!text.empty()) text += "\n\n";
    text += "Note: " + Shortest(report.Rejected) +
            " soundings were not processed,\nwhich will be displayed next.\n" +
            TextFromPath(report.RejectFile.filename()) + " contains rejected soundings.";
  }
  if (report.Cancelled) {
    if (!text.empty()) text += "\n\n";
    text += "The export was stopped: " + Shortest(report.Left) +
            (report.Left == 1 ? " file was" : " files were") + " not processed,\nfrom " +
            report.FirstLeft + " on.";
  }
  return {.Title = std::string(kExportTitle), .Text = text, .Icon = BoxIcon::Information};
}

std::string FaultLine(const std::string& file, const Fault& fault) {
  SilentInteraction quiet;
  CurrentSounding nobody;
  nobody.FileName = file;
  nobody.Ask = &quiet;
  std::string text = FaultMessage(nobody, fault);
  if (!fault.Detail.empty()) text += " (" + fault.Detail + ")";
  std::ranges::replace(text, '\n', ' ');
  return text;
}

}  // namespace vexa
