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

// A descriptor as section 3 packs it: F in 2 bits, X in 6, Y in 8.
constexpr std::size_t Packed(std::size_t f, std::size_t x, std::size_t y) {
  return f << 14 | x << 8 | y;
}

// Whether each operator that speaks of earlier values (quality, substitutes, statistics) is
// followed by the bitmap that says of which: the library follows it unseen. Takes the descriptors
// of section 3.
bool HaveBitmaps(std::string_view descriptors) {
  constexpr std::size_t kReuse = Packed(2, 37, 0), kDefine = Packed(2, 36, 0);
  constexpr std::size_t kPresent = Packed(0, 31, 31);
  const std::size_t count = descriptors.size() / 2;
  const auto at = [&](std::size_t i) { return i < count ? Octets(descriptors, 2 * i, 2) : 0; };
  for (std::size_t i = 0; i < count; ++i) {
    const bool isOperator = at(i) >> 14 == 2 && (at(i) & 0xFF) == 0;
    const std::size_t x = at(i) >> 8 & 0x3F;
    if (!isOperator || !((x >= 22 && x <= 25) || x == 32)) continue;
    std::size_t next = i + 1;
    if (at(next) == kReuse) continue;
    if (at(next) == kDefine) ++next;
    const bool isReplication = at(next) >> 8 == Packed(1, 1, 0) >> 8;  // of one descriptor
    const bool isDelayed = (at(next) & 0xFF) == 0;
    if (!isReplication || at(next + (isDelayed ? 2 : 1)) != kPresent) return false;
  }
  return true;
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
    constexpr std::size_t kHead = 7, kShortestDescription = 9, kSubsetsAt = 4;
    if (section == 3) {
      if (length < kShortestDescription) return {};
      subsets = Octets(message, at + kSubsetsAt, 2);
      if (!HaveBitmaps(message.substr(at + kHead, length - kHead))) return {};
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
