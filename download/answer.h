// What a server answered, and whether it may be a sounding: most refuse with a page that looks like
// any other answer. What passes here is still judged by the decoders before it counts as data.
#pragma once

#include <optional>
#include <string>

#include "core/fault.h"

namespace vexa::download {

struct Answer {
  int Status = 0;             // of HTTP, 200 as a rule
  std::string ContentType{};  // "text/html; charset=UTF-8"
  std::string Address{};      // after redirects
  std::string Body{};
};

/// Why an answer holds no sounding; empty when it may hold one. Fault 62 with the server's own
/// words: another status than 200, no bytes, a picture or another kind that no sounding comes in, a
/// page without a table, the known openings of refusals.
std::optional<Fault> Refusal(const Answer& answer);

}  // namespace vexa::download
