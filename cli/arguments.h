// A command's arguments: files, and the options that its table of options knows.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "config/options.h"
#include "core/fault.h"

namespace vexa::cli {

/// One option of a command. Without a value name it is a switch.
struct ArgumentRow {
  std::string_view Name;       // "--size"
  std::string_view ShortName;  // "-o", or empty
  std::string_view Value;      // "WxH", or empty
  std::string_view Help;
};

class Arguments {
 public:
  /// Fault 380 with the reason for an unknown option or one that lacks its value. "--" ends the
  /// options; "--name=value" and "--name value" are the same.
  static Outcome<Arguments> Parse(std::span<const std::string> words,
                                  std::span<const ArgumentRow> known);

  const std::vector<std::string>& Files() const { return files_; }
  bool Has(std::string_view name) const { return Last(name).has_value(); }
  /// The value given last.
  std::optional<std::string> Last(std::string_view name) const;
  std::vector<std::string> All(std::string_view name) const;

 private:
  std::vector<std::string> files_{};
  std::vector<std::pair<std::string, std::string>> values_{};
};

struct PixelSize {
  int Width = 1600;
  int Height = 1200;
};

/// "1600x1200": both from 50 to 20000.
std::optional<PixelSize> ParseSize(std::string_view text);

/// Applies every --set to the options; the first that is refused ends it.
std::optional<Fault> ApplySettings(const Arguments& arguments, Options& options);

}  // namespace vexa::cli
