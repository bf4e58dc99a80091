// Command lines read by tables of options, the same way for the window program and the commands
// without a window: "--name VALUE", "--name=VALUE", "-n VALUE", "-nVALUE", "-ab" for two flags, and
// "--" ahead of file names that begin with a dash.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "config/options.h"
#include "core/fault.h"

namespace vexa {

struct ArgumentRow {
  std::string_view Name{};   // "--output"
  std::string_view Short{};  // "-o", or empty
  std::string_view Value{};  // what it takes, "OUT"; empty: nothing
  std::string_view Help{};
  std::span<const std::string_view> Words{};  // the only values, in any case; empty: any
  int Least = 0, Most = 0;                    // the range of a whole number; 0 and 0: any text
};

inline constexpr ArgumentRow kSetOption = {"--set", "", "\"KEY=VALUE\"",
                                           "sets an option by its label; may be repeated"};

inline constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);

/// A program, or one of its commands.
struct CommandForm {
  std::string_view Name{};
  std::string_view Usage{};    // what follows the name
  std::string_view Summary{};  // one line
  std::span<const ArgumentRow> Options{};
  std::size_t LeastFiles = 1, MostFiles = kAnyNumber;
  std::string_view Footer{};  // below the help
};

struct Arguments {
  std::vector<std::pair<std::string_view, std::string>> Options{};  // by row name, as given
  std::vector<std::string> Files{};

  bool Has(std::string_view name) const;
  /// The last value given; the last wins where one was repeated.
  std::optional<std::string> Value(std::string_view name) const;
  /// All values given, in order.
  std::vector<std::string> Values(std::string_view name) const;
  /// The last value given of an option with a range.
  std::optional<int> Whole(std::string_view name) const;
};

/// What a command line asks for: work, or a text, or it is wrong.
struct CommandLine {
  const CommandForm* Command = nullptr;  // the chosen one, or the program
  Arguments Given{};
  std::string Answer{};          // help or version, to be printed in place of any work
  std::optional<Fault> Wrong{};  // 380; the detail says why nothing can be done
};

/// Reads words without the program's name. A program with commands takes the first word as one.
CommandLine ReadCommandLine(std::span<const std::string> words, const CommandForm& program,
                            std::span<const CommandForm* const> commands = {});

/// "; did you mean NAME?" for the name that a misspelt one comes closest to; empty when none is
/// close. Letter case does not count.
std::string DidYouMean(std::string_view given, std::span<const std::string_view> names);

/// "a, b, c".
std::string Joined(std::span<const std::string_view> names);

struct PixelSize {
  int Width = 0;
  int Height = 0;
};

/// "1600x1200", each from 16 to 20000. Fault 380 for anything else.
Outcome<PixelSize> ParseSize(std::string_view text);

/// Sets every "KEY=VALUE" in turn, then checks that all of them go together; the first fault ends
/// it.
[[nodiscard]] std::optional<Fault> SetOptions(Options& options,
                                              const std::vector<std::string>& assignments);

/// "0.1.0".
std::string_view ProgramVersion();

}  // namespace vexa
