// BUFR messages unpacked by ecCodes.
#include <eccodes.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <stdexcept>

#include "core/numbers.h"
#include "ingest/bufr_messages.h"
#include "ingest/source_header.h"

namespace vexa::ingest {
namespace {

constexpr std::size_t kMostSubsets = 10000;

struct HandleEnd {
  void operator()(codes_handle* handle) const { codes_handle_delete(handle); }
  void operator()(codes_bufr_keys_iterator* keys) const { codes_bufr_keys_iterator_delete(keys); }
};
using Handle = std::unique_ptr<codes_handle, HandleEnd>;
using Keys = std::unique_ptr<codes_bufr_keys_iterator, HandleEnd>;

Fault Damaged(std::string_view reason) {
  return Fault{kFaultEndOfFile, "UnpackBufr", std::string(reason)};
}

// The library would end the program where a message breaks one of its assumptions; thrown through
// its frames this costs some memory and keeps the user's work.
[[noreturn]] void ThrowAssertion(const char* message) {
  throw std::runtime_error(message);
}

// The library writes to the standard error stream; its answers say all that is needed.
void SayNothing(const codes_context*, int, const char*) {}

void Prepare() {
  codes_set_codes_assertion_failed_proc(ThrowAssertion);
  codes_context_set_logging_proc(codes_context_get_default(), SayNothing);
}

int Whole(codes_handle* handle, const char* key) {
  long value = 0;
  return codes_get_long(handle, key, &value) == CODES_SUCCESS ? static_cast<int>(value) : 0;
}

ObservationTime NominalTime(codes_handle* handle) {
  constexpr int kYearUnit = 10000, kUnit = 100;
  const int date = Whole(handle, "typicalDate"), time = Whole(handle, "typicalTime");
  return MakeTime(date / kYearUnit, date / kUnit % kUnit, date % kUnit, time / kYearUnit,
                  time / kUnit % kUnit)
      .value_or(ObservationTime{});
}

std::string TextOf(codes_handle* handle, const char* key) {
  std::array<char, 256> text{};
  std::size_t length = text.size();
  if (codes_get_string(handle, key, text.data(), &length) != CODES_SUCCESS) return {};
  const auto* end = std::find(text.begin(), text.end(), '\0');
  const std::string_view whole(text.data(), static_cast<std::size_t>(end - text.begin()));
  // All bits set stand for a missing text.
  const bool isText = std::ranges::all_of(whole, [](char c) { return c >= ' ' && c <= '~'; });
  return isText ? std::string(Trim(whole)) : std::string();
}

// Which of a message's subsets a key of packed subsets names; all share their keys when compressed.
struct Reading {
  codes_handle* From;
  BufrMessage& Into;
  bool IsCompressed;
  std::size_t Current = 0;
};

void AddValue(Reading& reading, const char* key, int descriptor) {
  int type = CODES_TYPE_UNDEFINED;
  std::size_t count = 0;
  if (codes_get_native_type(reading.From, key, &type) != CODES_SUCCESS ||
      codes_get_size(reading.From, key, &count) != CODES_SUCCESS) {
    return;
  }
  std::vector<BufrSubset>& subsets = reading.Into.Subsets;
  const auto add = [&](const BufrValue& value, std::size_t from, std::size_t to) {
    for (std::size_t i = from; i < to; ++i) subsets[i].push_back(value);
  };
  const std::size_t first = reading.IsCompressed ? 0 : reading.Current;
  const std::size_t end = reading.IsCompressed ? subsets.size() : reading.Current + 1;
  if (type == CODES_TYPE_STRING) {
    // Texts that differ between compressed subsets are not told apart; none of ours do.
    add({.Descriptor = descriptor, .Text = count == 1 ? TextOf(reading.From, key) : std::string()},
        first, end);
    return;
  }
  std::vector<double> numbers(count);
  if (codes_get_double_array(reading.From, key, numbers.data(), &count) != CODES_SUCCESS) return;
  for (std::size_t i = first; i < end; ++i) {
    const std::size_t at = count == 1 ? 0 : i - first;
    if (at >= count) continue;
    BufrValue value{.Descriptor = descriptor};
    if (numbers[at] != CODES_MISSING_DOUBLE) value.Number = numbers[at];
    subsets[i].push_back(std::move(value));
  }
}

void ReadValues(Reading& reading) {
  const Keys keys(codes_bufr_keys_iterator_new(reading.From, 0));
  if (!keys) return;
  std::string codeKey;
  while (codes_bufr_keys_iterator_next(keys.get()) != 0) {
    const char* key = codes_bufr_keys_iterator_get_name(keys.get());
    const std::string_view name(key);
    if (name == "subsetNumber" || (name.starts_with('#') && name.ends_with("#subsetNumber"))) {
      const int number = Whole(reading.From, key);
      if (number >= 1) reading.Current = static_cast<std::size_t>(number) - 1;
      continue;
    }
    // Values are "#2#pressure"; what has no number is the message's heading, what has an arrow
    // speaks of the quality of a value.
    if (!name.starts_with('#') || name.find("->") != name.npos) continue;
    if (reading.Current >= reading.Into.Subsets.size()) continue;
    codeKey.assign(name).append("->code");
    const int descriptor = Whole(reading.From, codeKey.c_str());
    if (descriptor > 0) AddValue(reading, key, descriptor);
  }
}

Outcome<BufrMessage> Unpacked(std::string_view message) {
  Prepare();
  const Handle handle(codes_handle_new_from_message_copy(nullptr, message.data(), message.size()));
  if (!handle) return Damaged("a message cannot be read");
  BufrMessage into;
  into.Category = Whole(handle.get(), "dataCategory");
  // Others are not unpacked at all.
  constexpr int kVerticalSoundings = 2, kUndefined = 255;
  if (into.Category != kVerticalSoundings && into.Category != kUndefined) {
    return Damaged("a message holds no vertical sounding, its category is " +
                   Shortest(into.Category));
  }
  into.Update = Whole(handle.get(), "updateSequenceNumber");
  into.Time = NominalTime(handle.get());
  const int subsets = Whole(handle.get(), "numberOfSubsets");
  if (subsets < 1 || static_cast<std::size_t>(subsets) > kMostSubsets) {
    return Damaged("a message has no subsets or too many");
  }
  if (const int failed = codes_set_long(handle.get(), "unpack", 1); failed != CODES_SUCCESS) {
    return Damaged(std::string("a message cannot be unpacked: ") + codes_get_error_message(failed));
  }
  into.Subsets.resize(static_cast<std::size_t>(subsets));
  Reading reading{handle.get(), into, Whole(handle.get(), "compressedData") != 0};
  ReadValues(reading);
  return into;
}

}  // namespace

Outcome<BufrMessage> UnpackBufr(std::string_view message) {
  try {
    return Unpacked(message);
  } catch (const std::runtime_error&) {  // see ThrowAssertion; what it says is for its makers
    return Damaged("a message cannot be unpacked: the BUFR library gave up on it");
  }
}

}  // namespace vexa::ingest
