#include "cli/arguments.h"

#include <algorithm>
#include <ranges>

#include "config/catalogue.h"
#include "core/numbers.h"

namespace vexa::cli {

Outcome<Arguments> Arguments::Parse(std::span<const std::string> words,
                                    std::span<const ArgumentRow> known) {
  const auto refuse = [](std::string reason) {
    return Fault{kFaultInvalidValue, "Arguments", std::move(reason)};
  };
  Arguments parsed;
  bool optionsEnded = false;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string& word = words[i];
    if (optionsEnded || word.size() < 2 || word.front() != '-') {
      parsed.files_.push_back(word);
      continue;
    }
    if (word == "--") {
      optionsEnded = true;
      continue;
    }
    const std::size_t equals = word.starts_with("--") ? word.find('=') : std::string::npos;
    const std::string name = word.substr(0, equals);
    const auto row = std::ranges::find_if(known, [&name](const ArgumentRow& candidate) {
      return candidate.Name == name ||
             (!candidate.ShortName.empty() && candidate.ShortName == name);
    });
    if (row == known.end()) return refuse("unknown option " + name);
    std::string value;
    if (row->Value.empty()) {
      if (equals != std::string::npos) return refuse(name + " takes no value");
    } else if (equals != std::string::npos) {
      value = word.substr(equals + 1);
    } else if (i + 1 < words.size()) {
      value = words[++i];
    } else {
      return refuse(name + " needs " + std::string(row->Value));
    }
    parsed.values_.emplace_back(row->Name, std::move(value));
  }
  return parsed;
}

std::optional<std::string> Arguments::Last(std::string_view name) const {
  for (const auto& [key, value] : std::views::reverse(values_)) {
    if (key == name) return value;
  }
  return std::nullopt;
}

std::vector<std::string> Arguments::All(std::string_view name) const {
  std::vector<std::string> all;
  for (const auto& [key, value] : values_) {
    if (key == name) all.push_back(value);
  }
  return all;
}

std::optional<PixelSize> ParseSize(std::string_view text) {
  constexpr int kLeast = 50;
  constexpr int kMost = 20000;
  const std::size_t cross = text.find_first_of("xX");
  if (cross == std::string_view::npos) return std::nullopt;
  const std::optional<int> width = ParseWhole(text.substr(0, cross));
  const std::optional<int> height = ParseWhole(text.substr(cross + 1));
  const auto fits = [](std::optional<int> side) {
    return side && *side >= kLeast && *side <= kMost;
  };
  if (!fits(width) || !fits(height)) return std::nullopt;
  return PixelSize{*width, *height};
}

std::optional<Fault> ApplySettings(const Arguments& arguments, Options& options) {
  for (const std::string& assignment : arguments.All("--set")) {
    if (std::optional<Fault> fault = SetOption(options, assignment)) return fault;
  }
  return std::nullopt;
}

}  // namespace vexa::cli
