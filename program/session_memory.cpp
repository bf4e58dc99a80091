#include "program/session_memory.h"

#include <utility>

#include "config/system_file.h"
#include "core/user_file.h"

namespace vexa {
namespace {

struct Reading {
  std::vector<std::string> Texts{};
  std::string Problem{};  // empty when all was understood
};

Reading ReadTexts(std::string_view name, std::string_view bytes) {
  if (!bytes.starts_with('"' + std::string(kSystemHeader))) {
    return {.Problem = AtLine(name, 1, "it is no list of the program's")};
  }
  SystemReader reader{std::string(name), std::string(bytes)};
  Reading reading;
  while (!reader.AtEnd()) {
    std::optional<std::string> text = reader.TextRecord("a name");
    if (!text) break;
    reading.Texts.push_back(std::move(*text));
  }
  reading.Problem = reader.Problem();
  return reading;
}

}  // namespace

std::vector<std::string> ReadList(const std::filesystem::path& root, std::string_view name,
                                  std::vector<std::string>* notes) {
  std::vector<std::string> faults;
  const std::optional<std::string> bytes = ReadUserFile(root / PathFromText(name), faults);
  Reading reading;
  if (bytes) reading = ReadTexts(name, *bytes);
  if (!reading.Problem.empty()) faults.push_back(reading.Problem + '.');
  if (notes != nullptr) notes->insert(notes->end(), faults.begin(), faults.end());
  return std::move(reading.Texts);
}

std::optional<Fault> WriteList(const std::filesystem::path& root, std::string_view name,
                               const std::vector<std::string>& texts) {
  const std::filesystem::path path = root / PathFromText(name);
  const Outcome<std::string> before = ReadFile(path);
  if (texts.empty() && !before && before.Error().Number == kFaultFileNotFound) return std::nullopt;
  SystemWriter writer;
  for (const std::string& text : texts) writer.TextRecord(text);
  return SaveUserFile(path, writer.Take(),
                      [name](std::string_view bytes) { return ReadTexts(name, bytes).Problem; });
}

}  // namespace vexa
