#include "program/session_memory.h"

#include <utility>
#include "config/system_file.h"

#include "core/files.h"

namespace vexa {

std::vector<std::string> ReadList(const std::filesystem::path& root, std::string_view name) {
  const Outcome<std::string> bytes = ReadFile(root / PathFromText(name));
  std::vector<std::string> texts;
  if (!bytes || !bytes.Value().starts_with('"' + std::string(kSystemHeader))) return texts;
  SystemReader reader(std::string(name), bytes.Value());
  while (std::optional<std::string> text = reader.TextRecord("a name")) {
    texts.push_back(std::move(*text));
  }
  return texts;
}

std::optional<Fault> WriteList(const std::filesystem::path& root, std::string_view name,
                               const std::vector<std::string>& texts) {
  if (ReadList(root, name) == texts) return std::nullopt;
  SystemWriter writer;
  for (const std::string& text : texts) writer.TextRecord(text);
  return SaveFile(root / PathFromText(name), writer.Take());
}

}  // namespace vexa
