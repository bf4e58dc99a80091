#include "download/batch.h"

#include <algorithm>
#include <utility>

#include "core/numbers.h"

namespace vexa::download {
namespace {

using std::chrono::days;
using std::chrono::hours;

std::vector<Request> RequestsOf(const BatchPlan& plan) {
  std::vector<Request> requests;
  for (const ObservationTime& time : plan.Times) {
    if (plan.Stations.empty()) requests.push_back({.Time = time});
    for (const std::string& station : plan.Stations) {
      Request request = RequestFor(station, time);
      if (std::ranges::find(requests, request) == requests.end()) {
        requests.push_back(std::move(request));
      }
    }
  }
  return requests;
}

// Asks the sources in turn until one gives the sounding; false when the user cancelled.
bool Serve(const BatchPlan& plan, BatchWork& work, BatchItem& item) {
  for (const Source& source : plan.Sources) {
    item.SourceName = source.Name;
    const FetchResult result = work.Fetch(source, item.Wanted);
    item.Failed = result.Failed;
    if (result.End == FetchEnd::Cancelled) return false;
    if (result.End == FetchEnd::Done) {
      Outcome<std::string> file = work.Save(plan, item.Wanted, result);
      if (file) {
        item.File = std::move(file.Value());
        item.Failed.reset();
      } else {
        item.Failed = file.Error();
      }
      return true;
    }
    if (plan.Failing != OnFailure::NextSource) return true;
  }
  return true;
}

Instant DueAt(std::chrono::sys_days day, int hour, std::chrono::minutes delay) {
  return day + hours(hour) + delay;
}

Fault BadPlan(std::string reason) {
  return Fault{kFaultInvalidValue, "CheckPlan", std::move(reason)};
}

}  // namespace

int BatchReport::Saved() const {
  return static_cast<int>(
      std::ranges::count_if(Items, [](const BatchItem& item) { return !item.File.empty(); }));
}

std::string BatchSummary(const BatchReport& report) {
  constexpr std::size_t kNamed = 8;
  std::string text =
      Shortest(report.Saved()) + " of " + Shortest(report.Asked) + " soundings saved.";
  if (!report.WasStopped) return text;
  text += " The batch was stopped";
  for (std::size_t i = 0; i < report.Left.size() && i < kNamed; ++i) {
    text += (i == 0 ? "; not done: " : ", ") + FileStem(report.Left[i]);
  }
  if (report.Left.size() > kNamed) {
    text += " and " + Shortest(static_cast<int>(report.Left.size() - kNamed)) + " more";
  }
  return text + '.';
}

std::optional<Fault> CheckPlan(const BatchPlan& plan) {
  if (plan.Sources.empty()) return BadPlan("no source is chosen");
  if (plan.Times.empty()) return BadPlan("no date and hour is given");
  if (plan.Stations.empty() && std::ranges::any_of(plan.Sources, NeedsStation)) {
    return BadPlan("no station is given");
  }
  // What a source lacks for one station it may have for the next; only addresses that can never be
  // made are faults of the plan.
  for (const Source& source : plan.Sources) {
    const Request whole{.Number = 1, .Letters = "ABCD", .Time = plan.Times.front()};
    if (const Outcome<std::string> address = AddressOf(source, whole); !address) {
      return address.Error();
    }
  }
  return std::nullopt;
}

BatchReport RunBatch(const BatchPlan& plan, BatchWork& work) {
  BatchReport report;
  const std::vector<Request> requests = RequestsOf(plan);
  const auto total = static_cast<int>(requests.size());
  report.Asked = total;
  const auto stop = [&](int from) {
    report.WasStopped = true;
    report.Left.assign(requests.begin() + from, requests.end());
  };
  for (int done = 0; done < total; ++done) {
    const Request& request = requests[static_cast<std::size_t>(done)];
    if (!work.Continue(done, total, request)) {
      stop(done);
      break;
    }
    BatchItem item{.Wanted = request};
    const bool goesOn = Serve(plan, work, item);
    const bool hasFailed = item.Failed.has_value();
    report.Items.push_back(std::move(item));
    if (!goesOn || (hasFailed && plan.Failing == OnFailure::Stop)) {
      stop(goesOn ? done + 1 : done);
      break;
    }
  }
  return report;
}

std::optional<ObservationTime> LatestDue(Instant now, std::span<const int> hoursOfDay,
                                         std::chrono::minutes delay) {
  std::optional<Instant> latest;
  const auto today = std::chrono::floor<days>(now);
  // A delay of more than a day reaches back that much further.
  const auto back = days(1) + std::chrono::ceil<days>(delay);
  for (auto day = today - back; day <= today; day += days(1)) {
    for (const int hour : hoursOfDay) {
      if (DueAt(day, hour, delay) > now) continue;
      const Instant at = day + hours(hour);
      if (!latest || at > *latest) latest = at;
    }
  }
  if (!latest) return std::nullopt;
  const auto day = std::chrono::floor<days>(*latest);
  const std::chrono::year_month_day date{day};
  return ObservationTime{.Year = static_cast<int>(date.year()),
                         .Month = static_cast<int>(static_cast<unsigned>(date.month())),
                         .Day = static_cast<int>(static_cast<unsigned>(date.day())),
                         .Hour = static_cast<int>((*latest - day) / hours(1))};
}

std::optional<Instant> NextDue(Instant now, std::span<const int> hoursOfDay,
                               std::chrono::minutes delay) {
  std::optional<Instant> next;
  const auto today = std::chrono::floor<days>(now);
  const auto back = days(1) + std::chrono::ceil<days>(delay);
  for (auto day = today - back; day <= today + days(1); day += days(1)) {
    for (const int hour : hoursOfDay) {
      const Instant due = DueAt(day, hour, delay);
      if (due > now && (!next || due < *next)) next = due;
    }
  }
  return next;
}

}  // namespace vexa::download
