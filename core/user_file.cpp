#include "core/user_file.h"

namespace vexa {

namespace fs = std::filesystem;

std::optional<std::string> ReadUserFile(const fs::path& path, std::vector<std::string>& notes) {
  Outcome<std::string> text = ReadFile(path);
  if (text) return std::move(text.Value());
  if (text.Error().Number != kFaultFileNotFound) notes.push_back(text.Error().Detail + '.');
  return std::nullopt;
}

std::optional<Fault> SaveUserFile(const fs::path& path, std::string_view bytes,
                                  const Objection& objects, FileOps& ops, Links links) {
  const Outcome<std::string> before = ReadFile(path);
  if (!before && before.Error().Number != kFaultFileNotFound) return before.Error();
  if (before && before.Value() == bytes) return std::nullopt;
  if (before && !objects(before.Value()).empty()) {
    fs::path copy = path;
    copy += ".bak";
    if (auto fault = SaveFile(copy, before.Value(), ops, Links::Replace)) return fault;
  }
  return SaveFile(path, bytes, ops, links);
}

}  // namespace vexa
