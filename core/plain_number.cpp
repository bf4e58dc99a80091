#include "core/plain_number.h"

namespace vexa {
namespace {

const char* TakeDigits(const char* at, const char* end, std::uint64_t& number) {
  for (; at != end; ++at) {
    const auto digit = static_cast<unsigned>(*at) - '0';
    if (digit > 9) break;
    number = 10 * number + digit;
  }
  return at;
}

}  // namespace

PlainFigures FiguresAt(const char* at, const char* end) {
  PlainFigures figures;
  const char* next = TakeDigits(at, end, figures.Digits);
  figures.Count = next - at;
  if (next != end && *next == '.') {
    const char* const stop = next;
    next = TakeDigits(stop + 1, end, figures.Digits);
    figures.Decimals = next - stop - 1;
    figures.Count += figures.Decimals;
  }
  figures.End = next;
  return figures;
}

}  // namespace vexa
