#ifdef _WIN32
#define _CRT_SECURE_NO_WARNINGS
#endif

#include "core/platform.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

namespace vexa {
namespace {

const char* endingProgram = "";  // the handler can reach nothing else

// Nothing here asks for memory.
[[noreturn]] void EndWithASentence() {
  const char* reason = "an error that nobody expected";
  try {
    if (std::current_exception()) throw;
  } catch (const std::bad_alloc&) {
    reason = "there is not enough memory";
  } catch (...) {
    static_cast<void>(reason);
  }
  std::fflush(stdout);
  for (const char* part : {endingProgram, ": ", reason, "\n"}) std::fputs(part, stderr);
  std::_Exit(EXIT_FAILURE);
}

}  // namespace

std::optional<std::chrono::sys_days> LocalDay(std::time_t at) {
  std::tm local{};
#ifdef _WIN32
  const bool isKnown = ::localtime_s(&local, &at) == 0;
#else
  const bool isKnown = ::localtime_r(&at, &local) != nullptr;
#endif
  if (!isKnown) return std::nullopt;
  constexpr int kFirstYear = 1900;
  return std::chrono::sys_days(std::chrono::year(kFirstYear + local.tm_year) /
                               std::chrono::month(static_cast<unsigned>(local.tm_mon + 1)) /
                               std::chrono::day(static_cast<unsigned>(local.tm_mday)));
}

void EndInWords(const char* program) {
  endingProgram = program;
  std::set_terminate(EndWithASentence);
}

}  // namespace vexa
