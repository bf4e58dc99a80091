#include "ingest/sounding_files.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "core/files.h"
#include "core/platform.h"
#include "ingest/decoder.h"
#include "ingest/source_stream.h"

namespace vexa::ingest {
namespace {

namespace fs = std::filesystem;

bool IsHidden(const fs::path& path) {
  return TextFromPath(path.filename()).starts_with('.');
}

enum class Depth { Folder, Below };

void AppendOrdinaryFiles(const fs::path& folder, Depth depth, std::vector<fs::path>& files) {
  for (FolderEntry& entry : EntriesOf(folder)) {
    if (IsHidden(entry.Path)) continue;
    if (entry.Type == fs::file_type::directory) {
      if (depth == Depth::Below) AppendOrdinaryFiles(entry.Path, depth, files);
    } else if (IsOrdinaryFile(entry.Path)) {
      files.push_back(std::move(entry.Path));
    }
  }
}

std::vector<fs::path> OrdinaryFiles(const fs::path& folder, Depth depth) {
  std::vector<fs::path> files;
  AppendOrdinaryFiles(folder, depth, files);
  std::ranges::sort(files);
  return files;
}

}  // namespace

std::vector<fs::path> FilesBelow(const fs::path& given) {
  if (!IsFolder(given)) return {given};
  return OrdinaryFiles(given, Depth::Below);
}

std::vector<fs::path> FilesIn(const fs::path& folder) {
  return OrdinaryFiles(folder, Depth::Folder);
}

bool HoldsSounding(const fs::path& file) {
  Outcome<SourceStream> stream = SourceStream::Open(file);
  if (!stream) return false;
  const Outcome<std::optional<SourceText>> first = stream.Value().Next();
  return first && first.Value() && FindDecoder(*first.Value()) != nullptr;
}

}  // namespace vexa::ingest
