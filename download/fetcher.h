// Asking a source for a sounding: address, cache, the way over the net, and the judgement of the
// answer. The net itself is behind an interface; what it takes to open an answer as a sounding is
// the caller's to say.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "core/fault.h"
#include "download/answer.h"
#include "download/cache.h"
#include "download/sources.h"

namespace vexa::download {

enum class FetchEnd {
  Done,
  Refused,    // the server answered, and not with the sounding; asking again is of no use
  NoAnswer,   // no connection, time over, answer cut off or endless, server failing
  Cancelled,  // by the user
};

struct FetchResult {
  FetchEnd End = FetchEnd::NoAnswer;
  Answer Got{};  // whole when Done
  std::optional<Fault>
      Failed{};  // unless Done: 62 refused, 68 no answer or cancelled, 35752 address
  int Attempts = 0;
  bool IsFromCache = false;
};

/// Fetches one address, with as many attempts as it thinks right.
class Fetcher {
 public:
  virtual ~Fetcher() = default;
  virtual FetchResult Fetch(const std::string& address) = 0;
};

/// Why an answer's bytes are not the sounding that was asked for; empty when they are.
using Judge = std::function<std::optional<Fault>(const std::string& bytes, const Request& request)>;

/// The answer of a source to a request. Only what the judge accepts is Done and is kept.
///
/// cache  null: nothing is kept
FetchResult FetchSounding(const Source& source, const Request& request, Fetcher& fetcher,
                          const Judge& judge, const Cache* cache, Instant now);

}  // namespace vexa::download
