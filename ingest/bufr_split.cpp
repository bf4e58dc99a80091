#include <cstddef>
#include <optional>

#include "core/numbers.h"
#include "ingest/bufr_messages.h"

namespace vexa::ingest {
namespace {

constexpr std::string_view kBegin = "BUFR";
constexpr std::string_view kEnd = "7777";

std::size_t Octets(std::string_view bytes, std::size_t at, std::size_t count) {
  std::size_t value = 0;
  for (std::size_t i = 0; i < count; ++i) {
    value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
  }
  return value;
}

// How many subsets a whole message holds; empty for any other. The sections must fill the message
// exactly: the library trusts their lengths.
std::optional<std::size_t> SubsetsOf(std::string_view message) {
  constexpr std::size_t kIndicator = 8, kShortest = 4, kFlags3 = 7, kFlags4 = 9;
  if (message.size() < kIndicator + kEnd.size() || !message.ends_with(kEnd)) return {};
  const auto edition = static_cast<unsigned char>(message[7]);
  if (edition < 2 || edition > 4) return {};
  const std::size_t end = message.size() - kEnd.size();
  std::size_t at = kIndicator, subsets = 0;
  bool hasOptional = false;
  for (int section = 1; section <= 4; ++section) {
    if (section == 2 && !hasOptional) continue;
    if (end - at < kShortest) return {};
    const std::size_t length = Octets(message, at, 3);
    const std::size_t flags = edition == 4 ? kFlags4 : kFlags3;
    if (length < kShortest || length > end - at || (section == 1 && length <= flags + 8)) {
      return {};
    }
    if (section == 1) {
      constexpr unsigned kOptionalBit = 0x80;
      hasOptional = (static_cast<unsigned char>(message[at + flags]) & kOptionalBit) != 0;
    }
    constexpr std::size_t kShortestDescription = 9, kSubsetsAt = 4;
    if (section == 3) {
      if (length < kShortestDescription) return {};
      subsets = Octets(message, at + kSubsetsAt, 2);
    }
    at += length;
  }
  return at == end ? std::optional(subsets) : std::nullopt;
}

}  // namespace

bool HoldsOneReport(std::string_view bytes) {
  std::vector<std::string> unused;
  const std::vector<std::string_view> messages = SplitBufr(bytes, unused);
  return messages.size() == 1 && SubsetsOf(messages.front()) == 1U;
}

std::vector<std::string_view> SplitBufr(std::string_view bytes, std::vector<std::string>& notes) {
  constexpr std::size_t kLengthAt = 4, kIndicator = 8;
  std::vector<std::string_view> messages;
  int damaged = 0;
  for (std::size_t at = bytes.find(kBegin); at != std::string_view::npos;) {
    std::size_t next = at + kBegin.size();
    if (bytes.size() - at >= kIndicator) {
      const std::size_t length = Octets(bytes, at + kLengthAt, 3);
      const std::string_view message = bytes.substr(at, length);
      if (message.size() == length && SubsetsOf(message)) {
        messages.push_back(message);
        next = at + length;
      } else {
        ++damaged;
      }
    } else {
      ++damaged;
    }
    at = bytes.find(kBegin, next);
  }
  if (damaged > 0) {
    notes.push_back("Messages that are damaged or cut off, left out: " + Shortest(damaged));
  }
  return messages;
}

}  // namespace vexa::ingest
