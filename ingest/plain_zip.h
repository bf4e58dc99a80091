// ZIP archives as nearly all packers write them: files stored or deflated one behind the other,
// with nothing around them. To load the library for all other kinds, and what it brings along,
// takes longer and more memory than the sounding inside.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vexa::ingest {

struct PlainMember {
  std::string_view Name{};  // as the archive has it; a folder's ends with a slash
  std::chrono::sys_days WrittenOn{};
  std::size_t Size = 0;  // unpacked
  std::uint32_t CheckSum = 0;
  bool IsDeflated = false;
  std::string_view Packed{};
};

/// The members of an archive, views into its bytes. None where anything in it is locked, packed or
/// told otherwise, or contradicts itself: that is the library's to read, or to say what is wrong.
std::optional<std::vector<PlainMember>> MembersOfPlainZip(std::string_view bytes);

/// A member's bytes; none where they are not those of which the archive tells the size and sum.
std::optional<std::string> Unpacked(const PlainMember& member);

}  // namespace vexa::ingest
