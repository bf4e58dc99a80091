// Soundings in an order, with a place among them: what was opened together, and what is looked at
// side by side. Members are loaded and analysed when somebody asks for them.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "core/fault.h"
#include "sounding/analysed_sounding.h"
#include "sounding/sounding_reader.h"

namespace vexa {

class SoundingSet {
 public:
  struct Member {
    std::filesystem::path File{};
    int Index = 0;        // which of the file's soundings, from 0
    std::string Title{};  // empty: not read yet
  };

  SoundingSet() = default;
  /// now  the member in work; the first when there is no such member
  explicit SoundingSet(std::vector<Member> members, std::size_t now = 0);

  std::size_t Size() const { return members_.size(); }
  /// Members are counted from 0; one that is not there throws std::out_of_range.
  const Member& At(std::size_t member) const { return members_.at(member); }
  const std::vector<Member>& Members() const { return members_; }
  /// Whether each member is a file of its own.
  bool IsOfFiles() const;

  std::size_t Now() const { return now_; }
  void GoTo(std::size_t member);
  void SetTitle(std::size_t member, std::string title) {
    members_.at(member).Title = std::move(title);
  }

  /// A member, loaded anew when its file has changed since. The last kMostKept are kept.
  ///
  /// reader  keeps its place from one member to the next: many of a long file are one pass through
  /// it
  Outcome<SharedSounding> Get(std::size_t member, const LoadPolicy& policy,
                              SoundingReader& reader) const;
  Outcome<SharedSounding> Get(std::size_t member, const LoadPolicy& policy) const;
  static constexpr std::size_t kMostKept = 64;

 private:
  struct Kept {
    std::size_t Member = 0;
    SharedSounding Sounding{};
  };

  std::vector<Member> members_{};
  std::size_t now_ = 0;
  mutable std::vector<Kept> kept_{};  // the one asked for last at the end
};

}  // namespace vexa
