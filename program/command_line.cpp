#include "program/command_line.h"

#include <algorithm>
#include <cstddef>

#include "config/catalogue.h"
#include "core/numbers.h"

namespace vexa {
namespace {

constexpr int kLeastPixels = 16;
constexpr int kMostPixels = 20000;

Fault Wrong(std::string reason) {
  return {kFaultInvalidValue, "ParseArguments", std::move(reason)};
}

const ArgumentRow* FindRow(std::span<const ArgumentRow> rows, std::string_view name) {
  const auto row = std::ranges::find_if(rows, [name](const ArgumentRow& candidate) {
    return candidate.Name == name || (!candidate.Short.empty() && candidate.Short == name);
  });
  return row == rows.end() ? nullptr : &*row;
}

}  // namespace

bool Arguments::Has(std::string_view name) const {
  return Value(name).has_value();
}

std::optional<std::string> Arguments::Value(std::string_view name) const {
  std::optional<std::string> last;
  for (const auto& [row, value] : Options) {
    if (row == name) last = value;
  }
  return last;
}

std::vector<std::string> Arguments::Values(std::string_view name) const {
  std::vector<std::string> values;
  for (const auto& [row, value] : Options) {
    if (row == name) values.push_back(value);
  }
  return values;
}

Outcome<Arguments> ParseArguments(std::span<const std::string> given,
                                  std::span<const ArgumentRow> rows) {
  Arguments parsed;
  bool filesOnly = false;
  for (std::size_t i = 0; i < given.size(); ++i) {
    const std::string& word = given[i];
    if (filesOnly || word.size() < 2 || word.front() != '-') {
      parsed.Files.push_back(word);
      continue;
    }
    if (word == "--") {
      filesOnly = true;
      continue;
    }
    const std::size_t equals = word.starts_with("--") ? word.find('=') : std::string::npos;
    const std::string name = word.substr(0, equals);
    const ArgumentRow* row = FindRow(rows, name);
    if (row == nullptr) return Wrong("unknown option " + name);
    if (row->Value.empty()) {
      if (equals != std::string::npos) return Wrong(name + " takes no value");
      parsed.Options.emplace_back(row->Name, "");
    } else if (equals != std::string::npos) {
      parsed.Options.emplace_back(row->Name, word.substr(equals + 1));
    } else if (i + 1 < given.size()) {
      parsed.Options.emplace_back(row->Name, given[++i]);
    } else {
      return Wrong(name + " needs a value: " + std::string(row->Value));
    }
  }
  return parsed;
}

std::string OptionHelp(std::span<const ArgumentRow> rows) {
  constexpr int kHelpColumn = 28;
  std::string text;
  for (const ArgumentRow& row : rows) {
    std::string head = "  ";
    if (!row.Short.empty()) head += std::string(row.Short) + ", ";
    head += row.Name;
    if (!row.Value.empty()) head += " " + std::string(row.Value);
    text += PadRight(head + " ", kHelpColumn) + std::string(row.Help) + "\n";
  }
  return text;
}

Outcome<PixelSize> ParseSize(std::string_view text) {
  const std::size_t cross = text.find_first_of("xX");
  if (cross != std::string_view::npos) {
    const std::optional<int> width = ParseWhole(text.substr(0, cross));
    const std::optional<int> height = ParseWhole(text.substr(cross + 1));
    const auto fits = [](const std::optional<int>& pixels) {
      return pixels && *pixels >= kLeastPixels && *pixels <= kMostPixels;
    };
    if (fits(width) && fits(height)) return PixelSize{*width, *height};
  }
  return Wrong("a size is WIDTHxHEIGHT in pixels from " + Shortest(kLeastPixels) + " to " +
               Shortest(kMostPixels) + ", not \"" + std::string(text) + "\"");
}

std::optional<Fault> SetOptions(Options& options, const std::vector<std::string>& assignments) {
  for (const std::string& assignment : assignments) {
    if (std::optional<Fault> fault = SetOption(options, assignment)) return fault;
  }
  return CheckOptions(options);
}

std::string_view ProgramVersion() {
  return VEXA_VERSION;
}

}  // namespace vexa
