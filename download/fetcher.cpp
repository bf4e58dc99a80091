#include "download/fetcher.h"

#include <utility>

namespace vexa::download {
namespace {

FetchResult Ended(FetchEnd end, Fault fault, FetchResult result = {}) {
  result.End = end;
  result.Failed = std::move(fault);
  return result;
}

}  // namespace

FetchResult FetchSounding(const Source& source, const Request& request, Fetcher& fetcher,
                          const Judge& judge, const Cache* cache, Instant now) {
  const Outcome<std::string> address = AddressOf(source, request);
  if (!address) return Ended(FetchEnd::Refused, address.Error());
  const std::optional<std::chrono::seconds> keeping = KeepingTime(source, request, now);
  if (cache != nullptr && keeping) {
    if (std::optional<std::string> bytes = cache->Find(address.Value(), now)) {
      if (!judge(*bytes, request)) {
        constexpr int kFine = 200;
        return {.End = FetchEnd::Done,
                .Got = {.Status = kFine, .Address = address.Value(), .Body = std::move(*bytes)},
                .IsFromCache = true};
      }
    }
  }
  FetchResult result = fetcher.Fetch(address.Value());
  if (result.End != FetchEnd::Done) return result;
  std::optional<Fault> fault = Refusal(result.Got);
  if (!fault) fault = judge(result.Got.Body, request);
  if (fault) return Ended(FetchEnd::Refused, std::move(*fault), std::move(result));
  if (cache != nullptr && keeping) {
    // An answer that cannot be kept is as good as one that can.
    static_cast<void>(cache->Store(address.Value(), result.Got.Body, now + *keeping));
  }
  return result;
}

}  // namespace vexa::download
