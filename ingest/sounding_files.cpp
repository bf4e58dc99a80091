#include "ingest/sounding_files.h"

#include <algorithm>
#include <string>
#include <system_error>

#include "core/files.h"
#include "core/platform.h"
#include "ingest/decoder.h"

namespace vexa::ingest {
namespace {

namespace fs = std::filesystem;

constexpr auto kPassingOver = fs::directory_options::skip_permission_denied;

bool IsHidden(const fs::path& path) {
  return TextFromPath(path.filename()).starts_with('.');
}

template <class Iterator>
std::vector<fs::path> OrdinaryFiles(const fs::path& folder) {
  std::error_code failed;
  std::vector<fs::path> files;
  const fs::path start = ReachablePath(folder);
  for (Iterator at(start, kPassingOver, failed), end; !failed && at != end; at.increment(failed)) {
    std::error_code ignored;
    const bool isHidden = IsHidden(at->path());
    if constexpr (requires { at.disable_recursion_pending(); }) {
      if (isHidden) at.disable_recursion_pending();
    }
    if (!isHidden && at->is_regular_file(ignored)) files.push_back(at->path());
  }
  std::ranges::sort(files);
  return files;
}

}  // namespace

std::vector<fs::path> FilesBelow(const fs::path& given) {
  std::error_code failed;
  if (!fs::is_directory(ReachablePath(given), failed)) return {given};
  return OrdinaryFiles<fs::recursive_directory_iterator>(given);
}

std::vector<fs::path> FilesIn(const fs::path& folder) {
  return OrdinaryFiles<fs::directory_iterator>(folder);
}

bool HoldsSounding(const fs::path& file) {
  std::vector<std::string> notes;
  const Outcome<SourceText> source = ReadSource(file, notes);
  return source && FindDecoder(source.Value()) != nullptr;
}

}  // namespace vexa::ingest
