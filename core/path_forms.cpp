#include "core/path_forms.h"

#include <system_error>

#include "core/files.h"

namespace vexa {
namespace fs = std::filesystem;

namespace {

// Nothing else that two separators begin is a path of such a system.
bool IsOfServer(const fs::path& path) {
  constexpr bool kHasServers = fs::path::preferred_separator == '\\';
  const auto isSeparator = [](fs::path::value_type c) { return c == '\\' || c == '/'; };
  const fs::path::string_type& text = path.native();
  return kHasServers && text.size() > 2 && isSeparator(text[0]) && isSeparator(text[1]);
}

}  // namespace

fs::path PathBelow(const fs::path& folder, std::string_view setting) {
  fs::path path = PathFromSetting(setting);
  return IsOfServer(path) ? path : folder / path;
}

fs::path WholePath(const fs::path& path) {
  if (path.empty() || IsOfServer(path)) return path;
  std::error_code failed;
  fs::path whole = fs::absolute(path, failed);
  return failed ? path : whole;
}

fs::path NormalPath(const fs::path& path) {
  fs::path normal = path.lexically_normal();
  if (!IsOfServer(path) || IsOfServer(normal)) return normal;
  return fs::path(fs::path::string_type(1, fs::path::preferred_separator) + normal.native());
}

fs::path LongForm(const fs::path& path) {
  if constexpr (fs::path::preferred_separator != '\\') return path;
  constexpr std::size_t kLongest = 240;  // a folder's own limit is 247, with room for ".tmp100"
  const fs::path plain = NormalPath(WholePath(path)).make_preferred();
  const std::u8string text = plain.u8string();
  if (plain.native().size() < kLongest || text.starts_with(u8R"(\\?\)")) return path;
  if (text.starts_with(u8R"(\\)")) return fs::path(u8R"(\\?\UNC\)" + text.substr(2));
  return fs::path(u8R"(\\?\)" + text);
}

}  // namespace vexa
