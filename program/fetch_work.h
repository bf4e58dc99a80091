// What fetching soundings needs besides the net: the list of sources, the judgement whether an
// answer opens as the sounding that was asked for, and the saving of answers. The windows and the
// command line fetch by this alike.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "core/data_checks.h"
#include "core/station_list.h"
#include "download/batch.h"
#include "download/template_file.h"
#include "sounding/analysed_sounding.h"

namespace vexa {

/// The sources of a root's file; where it has none, those that come with the program.
Outcome<download::SourceList> LoadSources(const std::filesystem::path& root,
                                          const std::filesystem::path& programFolder);

/// Reads one file of sources.
Outcome<download::SourceList> LoadSourcesFile(const std::filesystem::path& path);

/// A request with the number of a station named by its letters, where a list knows it.
download::Request Completed(const download::Request& request, const StationList* stations);

/// The sounding of an answer that was asked for: that of the station and hour; a release within two
/// hours is that of the hour. Messages without month and year are of the month asked for. In an
/// answer of several stations the one asked for must be named. Fault 62 when none is the one, and
/// of the reading when nothing opens.
Outcome<LoadedSounding> AskedSounding(const std::string& bytes, const download::Request& request,
                                      const LoadPolicy& policy = {});

/// The same of a source's answer. Fault 62 too where nothing in it and in the source's address
/// tells month and year of a time that is more than two days away from now.
Outcome<LoadedSounding> JudgeSounding(const std::string& bytes, const download::Source& source,
                                      const download::Request& request, download::Instant now,
                                      const LoadPolicy& policy = {});

/// What was saved of an answer.
struct SavedSounding {
  std::string File{};
  int Index = 0;        // of the sounding in that file
  QcFinding Finding{};  // what the check of the data found
};

/// "FILE", or "FILE  (sounding 2 of the file)".
std::string SavedText(const SavedSounding& saved);

/// The clock, to the second, UTC.
download::Instant SystemNow();

/// Fetches through a fetcher, saves as received (".txt") or as native file (".RAW"). The folder is
/// made where it is missing. A file of the name that holds something else is replaced only where
/// the watch says so, with fault 58 when it does not; where nobody is to be asked both are kept,
/// the new one as "NAME-2".
class FetchWork : public download::BatchWork {
 public:
  struct Watch {
    std::function<void(const download::Source&, const download::Request&, const Fault&)> Failed{};
    std::function<void(const SavedSounding& saved)> Saved{};
    std::function<bool(int done, int total, const download::Request& next)> Continue{};
    std::function<bool(const std::filesystem::path& file)> MayReplace{};
  };

  /// cache     null: answers are neither taken from it nor kept
  /// stations  for numbers of stations named by letters, and for native files of soundings that
  ///           name their station by number only
  FetchWork(download::Fetcher& fetcher, const download::Cache* cache, const StationList* stations,
            Watch watch)
      : fetcher_(fetcher), cache_(cache), stations_(stations), watch_(std::move(watch)) {}

  download::FetchResult Fetch(const download::Source& source,
                              const download::Request& request) override;
  Outcome<std::string> Save(const download::BatchPlan& plan, const download::Request& request,
                            const download::FetchResult& result) override;
  bool Continue(int done, int total, const download::Request& next) override;

 private:
  /// An answer that was found to be the sounding asked for, so that it is not decoded again.
  struct Judged {
    std::string Body{};
    download::Request Wanted{};
    LoadedSounding Sounding{};
  };

  /// judged  what the answer must be; the request may have more to put into the address
  Outcome<SavedSounding> SaveAnswer(const download::BatchPlan& plan,
                                    const download::Request& request, const std::string& body);
  Outcome<LoadedSounding> Decoded(const std::string& body, const download::Request& request);
  download::FetchResult Ask(const download::Source& source, const download::Request& request,
                            const download::Request& judged);

  download::Fetcher& fetcher_;
  const download::Cache* cache_;
  const StationList* stations_;
  Watch watch_;
  std::optional<Judged> judged_{};  // the last
  download::FetchResult last_{};    // of an address that serves several stations
  std::string lastAddress_{};
  const download::Source* source_ = nullptr;  // the one asked last
};

}  // namespace vexa
