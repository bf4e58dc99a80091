#include "sounding/sounding_set.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <utility>

namespace vexa {

SoundingSet::SoundingSet(std::vector<Member> members, std::size_t now)
    : members_(std::move(members)), now_(now < members_.size() ? now : 0) {}

bool SoundingSet::IsOfFiles() const {
  std::set<std::filesystem::path> files;
  return std::ranges::all_of(members_, [&files](const Member& member) {
    return member.Index == 0 && files.insert(member.File).second;
  });
}

void SoundingSet::GoTo(std::size_t member) {
  if (member >= members_.size()) throw std::out_of_range("member of a set of soundings");
  now_ = member;
}

Outcome<SharedSounding> SoundingSet::Get(std::size_t member, const LoadPolicy& policy) const {
  SoundingReader reader;
  return Get(member, policy, reader);
}

Outcome<SharedSounding> SoundingSet::Get(std::size_t member, const LoadPolicy& policy,
                                         SoundingReader& reader) const {
  const Member& wanted = members_.at(member);
  const auto known = std::ranges::find(kept_, member, &Kept::Member);
  if (known != kept_.end()) {
    Kept found = std::move(*known);
    kept_.erase(known);
    if (found.Sounding->From().Stamp == StampOf(wanted.File)) {
      kept_.push_back(found);
      return found.Sounding;
    }
  }
  Outcome<SharedSounding> loaded =
      Share(reader.Load({.File = wanted.File, .Index = wanted.Index}, policy));
  if (loaded) {
    if (kept_.size() == kMostKept) kept_.erase(kept_.begin());
    kept_.push_back({member, loaded.Value()});
  }
  return loaded;
}

}  // namespace vexa
