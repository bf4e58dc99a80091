#include <algorithm>
#include <cstddef>
#include <optional>

#include "core/numbers.h"
#include "ingest/bufr_messages.h"
#include "ingest/source_header.h"

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

// Where section 1 has what, from its first octet.
struct Identification {
  std::size_t Update, Flags, Category, Version, Year, YearOctets, Month, Shortest;
};
constexpr Identification kEdition3{6, 7, 8, 10, 12, 1, 13, 17};  // and edition 2
constexpr Identification kEdition4{8, 9, 10, 13, 15, 2, 17, 21};

ObservationTime TimeOf(std::string_view section, const Identification& at) {
  int year = static_cast<int>(Octets(section, at.Year, at.YearOctets));
  if (at.YearOctets == 1) {
    // A year of the century; the code came into use in 1988.
    constexpr int kCentury = 100, kNineteenHundred = 1900, kFirst = 80;
    year = kNineteenHundred + year % kCentury + (year % kCentury < kFirst ? kCentury : 0);
  }
  const auto next = [&](std::size_t i) {
    return static_cast<int>(Octets(section, at.Month + i, 1));
  };
  return MakeTime(year, next(0), next(1), next(2), next(3)).value_or(ObservationTime{});
}

}  // namespace

int BufrHead::DescriptorAt(std::size_t index) const {
  constexpr int kF = 100000, kX = 1000;
  const int packed = static_cast<int>(Octets(Descriptors, 2 * index, 2));
  return (packed >> 14) * kF + (packed >> 8 & 0x3F) * kX + (packed & 0xFF);
}

std::optional<BufrHead> ReadHead(std::string_view message) {
  constexpr std::size_t kIndicator = 8, kShortest = 4;
  if (message.size() < kIndicator + kEnd.size() || !message.ends_with(kEnd)) return {};
  const auto edition = static_cast<unsigned char>(message[7]);
  if (edition < 2 || edition > 4) return {};
  const Identification& in = edition == 4 ? kEdition4 : kEdition3;
  const std::size_t end = message.size() - kEnd.size();
  std::size_t at = kIndicator;
  bool hasOptional = false;
  BufrHead head;
  for (int section = 1; section <= 4; ++section) {
    if (section == 2 && !hasOptional) continue;
    if (end - at < kShortest) return {};
    const std::size_t length = Octets(message, at, 3);
    if (length < kShortest || length > end - at) return {};
    const std::string_view bytes = message.substr(at, length);
    const auto whole = [&](std::size_t i) { return static_cast<int>(Octets(bytes, i, 1)); };
    if (section == 1) {
      constexpr int kOptionalBit = 0x80;
      if (length < in.Shortest) return {};
      hasOptional = (whole(in.Flags) & kOptionalBit) != 0;
      head.MasterTable = whole(3);
      head.TableVersion = whole(in.Version);
      head.Category = whole(in.Category);
      head.Update = whole(in.Update);
      head.Time = TimeOf(bytes, in);
    } else if (section == 3) {
      constexpr std::size_t kHead = 7, kShortestDescription = 9, kSubsetsAt = 4, kFlags = 6;
      constexpr int kCompressedBit = 0x40;
      if (length < kShortestDescription) return {};
      head.Subsets = Octets(bytes, kSubsetsAt, 2);
      head.IsCompressed = (whole(kFlags) & kCompressedBit) != 0;
      head.Descriptors = bytes.substr(kHead);
      if (!HaveBitmaps(head.Descriptors)) return {};
    } else if (section == 4) {
      head.Data = bytes.substr(kShortest);
    }
    at += length;
  }
  return at == end ? std::optional(head) : std::nullopt;
}

Fault DamagedMessage(std::string_view reason) {
  return Fault{kFaultEndOfFile, "UnpackBufr", std::string(reason)};
}

std::string MessageText(std::string_view octets) {
  const std::string_view text = octets.substr(0, octets.find('\0'));
  const bool isText = std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
  return isText ? std::string(Trim(text)) : std::string();
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
      if (message.size() == length && ReadHead(message)) {
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
