// A list of stations and hours fetched one after the other, by hand or when their hour has come.
// Pure: what is fetched and saved goes through an interface, the time is given.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "download/fetcher.h"

namespace vexa::download {

enum class BatchFormat { AsReceived, Native };
enum class OnFailure { Skip, NextSource, Stop };

struct BatchPlan {
  std::vector<Source> Sources{};        // asked in this order; all but the first for NextSource
  std::vector<std::string> Stations{};  // "72357", "OUN"
  std::vector<ObservationTime> Times{};
  std::string Folder{};
  BatchFormat Format = BatchFormat::AsReceived;
  OnFailure Failing = OnFailure::Skip;
};

struct BatchItem {
  Request Wanted{};
  std::string File{};             // where it was saved; empty: it was not
  std::string SourceName{};       // that gave it, or failed last
  std::optional<Fault> Failed{};  // of the last source asked
};

struct BatchReport {
  int Asked = 0;  // how many the plan asks for; stopped, the report has fewer items
  std::vector<BatchItem> Items{};  // in the order of the plan, those not reached left out
  bool WasStopped = false;         // by the user, or by a failure
  std::vector<Request> Left{};     // what was not done then, the one that was broken off among it
  int Saved() const;
};

/// What the user is told at the end: how many were saved and, after a stop, what was not done.
std::string BatchSummary(const BatchReport& report);

class BatchWork {
 public:
  virtual ~BatchWork() = default;
  virtual FetchResult Fetch(const Source& source, const Request& request) = 0;
  /// Saves an answer in the plan's folder and format; gives the file's path.
  virtual Outcome<std::string> Save(const BatchPlan& plan, const Request& request,
                                    const FetchResult& result) = 0;
  /// Before each item; false stops the batch.
  virtual bool Continue(int done, int total, const Request& next) = 0;
};

/// Why a plan cannot run: no source, no station where a source needs one, no hour, a bad address.
/// Fault 380, or 35752 of the address.
std::optional<Fault> CheckPlan(const BatchPlan& plan);

/// Every station for every hour, hour by hour; without stations, of sources whose addresses name
/// none, every hour. Equal requests are made once.
BatchReport RunBatch(const BatchPlan& plan, BatchWork& work);

/// The last of some hours of the day whose data are due: its hour lies at least `delay` back.
///
/// hours  0 to 23, in any order; none gives nothing
std::optional<ObservationTime> LatestDue(Instant now, std::span<const int> hours,
                                         std::chrono::minutes delay);

/// When the next of these hours falls due, strictly after now.
std::optional<Instant> NextDue(Instant now, std::span<const int> hours, std::chrono::minutes delay);

}  // namespace vexa::download
