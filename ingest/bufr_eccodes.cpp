// BUFR messages whose descriptors the program's own tables do not hold, unpacked by ecCodes.
#include <eccodes.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <stdexcept>

#include "core/late_library.h"
#include "ingest/bufr_messages.h"

namespace vexa::ingest {
namespace {

#ifdef VEXA_ECCODES_LIBRARY
VEXA_LATE_LIBRARY(Bufr, VEXA_ECCODES_LIBRARY);
VEXA_LATE_FUNCTION(BufrLibrary, codes_bufr_keys_iterator_delete);
VEXA_LATE_FUNCTION(BufrLibrary, codes_bufr_keys_iterator_get_name);
VEXA_LATE_FUNCTION(BufrLibrary, codes_bufr_keys_iterator_new);
VEXA_LATE_FUNCTION(BufrLibrary, codes_bufr_keys_iterator_next);
VEXA_LATE_FUNCTION(BufrLibrary, codes_context_get_default);
VEXA_LATE_FUNCTION(BufrLibrary, codes_context_set_logging_proc);
VEXA_LATE_FUNCTION(BufrLibrary, codes_get_double_array);
VEXA_LATE_FUNCTION(BufrLibrary, codes_get_error_message);
VEXA_LATE_FUNCTION(BufrLibrary, codes_get_long);
VEXA_LATE_FUNCTION(BufrLibrary, codes_get_native_type);
VEXA_LATE_FUNCTION(BufrLibrary, codes_get_size);
VEXA_LATE_FUNCTION(BufrLibrary, codes_get_string);
VEXA_LATE_FUNCTION(BufrLibrary, codes_handle_delete);
VEXA_LATE_FUNCTION(BufrLibrary, codes_handle_new_from_message_copy);
VEXA_LATE_FUNCTION(BufrLibrary, codes_set_codes_assertion_failed_proc);
VEXA_LATE_FUNCTION(BufrLibrary, codes_set_long);
#else
constexpr bool HasBufr() {
  return true;
}
#endif

struct HandleEnd {
  void operator()(codes_handle* handle) const { codes_handle_delete(handle); }
  void operator()(codes_bufr_keys_iterator* keys) const { codes_bufr_keys_iterator_delete(keys); }
};
using Handle = std::unique_ptr<codes_handle, HandleEnd>;
using Keys = std::unique_ptr<codes_bufr_keys_iterator, HandleEnd>;

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

std::string TextOf(codes_handle* handle, const char* key) {
  std::array<char, 256> text{};
  std::size_t length = text.size();
  if (codes_get_string(handle, key, text.data(), &length) != CODES_SUCCESS) return {};
  return MessageText(std::string_view(text.data(), length));
}

// The library multiplies by a hundredth where others divide by a hundred: 90 degrees become
// 90.00000000000001, which no pole has.
double WithoutNoise(double value) {
  constexpr double kFigures = 1e9, kLargest = 1e6;
  return std::fabs(value) < kLargest ? std::nearbyint(value * kFigures) / kFigures : value;
}

// Which of a message's subsets a key of packed subsets names; all share their keys when compressed.
struct Reading {
  codes_handle* From;
  std::vector<BufrSubset>& Into;
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
  std::vector<BufrSubset>& subsets = reading.Into;
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
    if (numbers[at] != CODES_MISSING_DOUBLE) value.Number = WithoutNoise(numbers[at]);
    subsets[i].push_back(std::move(value));
  }
}

void ReadValues(Reading& reading) {
  const Keys keys(codes_bufr_keys_iterator_new(reading.From, 0));
  if (!keys) return;
  std::string codeKey;
  std::size_t begun = 0;
  while (codes_bufr_keys_iterator_next(keys.get()) != 0) {
    const char* key = codes_bufr_keys_iterator_get_name(keys.get());
    const std::string_view name(key);
    if (name == "subsetNumber") {  // one stands before each, but asked for all tell the last
      reading.Current = begun++;
      continue;
    }
    // Values are "#2#pressure"; what has no number is the message's heading, what has an arrow
    // speaks of the quality of a value.
    if (!name.starts_with('#') || name.find("->") != name.npos) continue;
    if (reading.Current >= reading.Into.size()) continue;
    codeKey.assign(name).append("->code");
    const int descriptor = Whole(reading.From, codeKey.c_str());
    if (descriptor > 0) AddValue(reading, key, descriptor);
  }
}

Outcome<std::vector<BufrSubset>> Unpacked(std::string_view message) {
  Prepare();
  const Handle handle(codes_handle_new_from_message_copy(nullptr, message.data(), message.size()));
  if (!handle) return DamagedMessage("a message cannot be read");
  // Units, scales and widths of the values are not asked for; a library that does not know the key
  // unpacks them all the same.
  codes_set_long(handle.get(), "skipExtraKeyAttributes", 1);
  if (const int failed = codes_set_long(handle.get(), "unpack", 1); failed != CODES_SUCCESS) {
    return DamagedMessage(std::string("a message cannot be unpacked: ") +
                          codes_get_error_message(failed));
  }
  std::vector<BufrSubset> subsets(static_cast<std::size_t>(Whole(handle.get(), "numberOfSubsets")));
  Reading reading{handle.get(), subsets, Whole(handle.get(), "compressedData") != 0};
  ReadValues(reading);
  return subsets;
}

}  // namespace

Outcome<std::vector<BufrSubset>> UnpackByLibrary(std::string_view message) {
  if (!HasBufr()) {
    return NoLibrary("UnpackByLibrary",
                     "a message has elements that are known to the BUFR library (ecCodes) alone, "
                     "which this system lacks");
  }
  try {
    return Unpacked(message);
  } catch (const std::runtime_error&) {  // see ThrowAssertion; what it says is for its makers
    return DamagedMessage("a message cannot be unpacked: the BUFR library gave up on it");
  }
}

}  // namespace vexa::ingest
