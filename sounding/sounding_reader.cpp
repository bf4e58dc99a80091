#include "sounding/sounding_reader.h"

#include <string>
#include <string_view>
#include <vector>

#include "core/no_such_sounding.h"
#include "core/numbers.h"

namespace vexa {
namespace {

// A long file is not read to its end for the sake of a number.
std::string NumberNote(int index, const Loading& loading) {
  return "This is number " + Shortest(index + 1) + " of the file's " +
         (loading.HasMore ? "soundings, " + Shortest(loading.Count) + " or more."
                          : Shortest(loading.Count) + " soundings.");
}

}  // namespace

std::optional<Source> NamedSounding(const std::filesystem::path& file) {
  const std::string name = TextFromPath(file);
  const std::size_t mark = name.rfind('#');
  if (mark == std::string::npos || mark == 0) return std::nullopt;
  const std::optional<int> number = ParseWhole(std::string_view(name).substr(mark + 1));
  if (!number || *number < 1 || IsThere(file)) return std::nullopt;
  Source source{.File = PathFromText(std::string_view(name).substr(0, mark)), .Index = *number - 1};
  if (!IsThere(source.File)) return std::nullopt;
  return source;
}

Loading SoundingReader::Load(const Source& from, const LoadPolicy& policy) {
  const std::optional<Source> named = NamedSounding(from.File);
  if (named && from.Index != 0) {
    return {.Failed = Fault{kFaultNoSuchSounding, "LoadSounding", "one sounding was named by #"}};
  }
  const Source& wanted = named ? *named : from;
  const std::optional<FileStamp> stamp = StampOf(wanted.File);
  if (!walk_ || file_ != wanted.File || stamp_ != stamp) {
    file_ = wanted.File;
    stamp_ = stamp;
    walk_.emplace(file_, piece_);
  }
  Loading loading = walk_->Load(wanted.Index, policy);
  if (loading.Sounding) loading.Sounding->From = {wanted.File, wanted.Index, stamp};
  if (named) {
    loading.Count = 1;
    loading.HasMore = false;
  } else if (loading.Sounding && (loading.Count > 1 || loading.HasMore)) {
    std::vector<std::string>& notes = loading.Sounding->Notes;
    notes.insert(notes.begin(), NumberNote(wanted.Index, loading));
  }
  return loading;
}

}  // namespace vexa
