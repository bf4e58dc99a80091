// Command lines read by a table of options, the same way for the window program and the commands
// without a window: "--name VALUE", "--name=VALUE", "-n VALUE", and "--" ahead of file names that
// begin with a dash.
#pragma once

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
};

struct Arguments {
  std::vector<std::pair<std::string_view, std::string>> Options{};  // by row name, as given
  std::vector<std::string> Files{};

  bool Has(std::string_view name) const;
  /// The last value given; the last wins where one was repeated.
  std::optional<std::string> Value(std::string_view name) const;
  /// All values given, in order.
  std::vector<std::string> Values(std::string_view name) const;
};

/// Reads arguments without the program's name. Fault 380 says in its detail what is wrong.
Outcome<Arguments> ParseArguments(std::span<const std::string> given,
                                  std::span<const ArgumentRow> rows);

/// A help text's list of options, one a line.
std::string OptionHelp(std::span<const ArgumentRow> rows);

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
