#include "ingest/plain_zip.h"

#include <algorithm>

#include "core/gzip.h"

namespace vexa::ingest {
namespace {

// PKWARE's description of the format, 4.3: the numbers of each record by their places,
// little-endian.
constexpr std::string_view kLocalMark = "PK\x03\x04", kListMark = "PK\x01\x02",
                           kEndMark = "PK\x05\x06";
constexpr std::size_t kLocalBytes = 30, kListBytes = 46, kEndBytes = 22;
constexpr unsigned kFlagLength = 1U << 3;  // sum and sizes stand behind the member
constexpr unsigned kFlagsKnown = 1U << 1 | 1U << 2 | kFlagLength | 1U << 11;
constexpr unsigned kStored = 0, kDeflated = 8;
constexpr std::uint32_t kElsewhere = 0xFFFFFFFF;  // the number stands in a longer record

std::uint32_t NumberAt(std::string_view record, std::size_t at, std::size_t bytes) {
  std::uint32_t number = 0;
  for (std::size_t i = bytes; i > 0; --i) {
    number = number << 8U | static_cast<unsigned char>(record[at + i - 1]);
  }
  return number;
}

unsigned Short(std::string_view record, std::size_t at) {
  return NumberAt(record, at, 2);
}
std::uint32_t Long(std::string_view record, std::size_t at) {
  return NumberAt(record, at, 4);
}

// A packer's own alphabet would have to be known for other letters.
bool IsPlainName(std::string_view name) {
  return !name.empty() && std::ranges::all_of(name, [](char c) { return c >= ' ' && c <= '~'; });
}

std::optional<std::chrono::sys_days> DayOf(unsigned date) {
  using namespace std::chrono;
  const year_month_day day(year(1980 + static_cast<int>(date >> 9U)), month(date >> 5U & 15U),
                           std::chrono::day(date & 31U));
  if (!day.ok()) return std::nullopt;
  return sys_days(day);
}

// What is told of a member in the archive's list and once more ahead of it.
struct Told {
  unsigned Flags, Method;
  std::uint32_t Written, CheckSum, PackedSize, Size;
  bool operator==(const Told&) const = default;
};

Told ToldAt(std::string_view record, std::size_t flagsAt) {
  return {Short(record, flagsAt),    Short(record, flagsAt + 2), Long(record, flagsAt + 4),
          Long(record, flagsAt + 8), Long(record, flagsAt + 12), Long(record, flagsAt + 16)};
}

bool IsPlain(const Told& told) {
  const bool isKnown =
      (told.Flags & ~kFlagsKnown) == 0 && (told.Method == kStored || told.Method == kDeflated);
  return isKnown && told.PackedSize != kElsewhere && told.Size != kElsewhere &&
         (told.Method == kDeflated || told.PackedSize == told.Size);
}

// The packed bytes behind the record ahead of them, which says the same as the list.
std::optional<std::string_view> PackedAt(std::string_view bytes, std::size_t at, const Told& told,
                                         std::string_view name) {
  if (at > bytes.size() || bytes.size() - at < kLocalBytes) return std::nullopt;
  const std::string_view record = bytes.substr(at);
  Told here = ToldAt(record, 6);
  if ((here.Flags & kFlagLength) != 0) {
    here.CheckSum = told.CheckSum;
    here.PackedSize = told.PackedSize;
    here.Size = told.Size;
  }
  const std::size_t nameBytes = Short(record, 26),
                    before = kLocalBytes + nameBytes + Short(record, 28);
  if (!record.starts_with(kLocalMark) || here != told || record.size() < before ||
      record.size() - before < told.PackedSize || record.substr(kLocalBytes, nameBytes) != name) {
    return std::nullopt;
  }
  return record.substr(before, told.PackedSize);
}

}  // namespace

std::optional<std::vector<PlainMember>> MembersOfPlainZip(std::string_view bytes) {
  if (bytes.size() < kEndBytes) return std::nullopt;
  const std::string_view end = bytes.substr(bytes.size() - kEndBytes);
  const unsigned count = Short(end, 10);
  const std::size_t listBytes = Long(end, 12), listAt = Long(end, 16);
  const bool isWhole = end.starts_with(kEndMark) && Long(end, 4) == 0 && Short(end, 8) == count &&
                       Short(end, 20) == 0 && listAt + listBytes == bytes.size() - kEndBytes;
  if (!isWhole) return std::nullopt;
  std::string_view list = bytes.substr(listAt, listBytes);
  const std::string_view before = bytes.substr(0, listAt);
  std::vector<PlainMember> members;
  std::size_t free = 0;  // where the next member may begin
  for (unsigned i = 0; i < count; ++i) {
    if (list.size() < kListBytes || !list.starts_with(kListMark)) return std::nullopt;
    const Told told = ToldAt(list, 8);
    const std::size_t nameBytes = Short(list, 28);
    const std::size_t record = kListBytes + nameBytes + Short(list, 30) + Short(list, 32);
    if (list.size() < record || !IsPlain(told)) return std::nullopt;
    const std::string_view name = list.substr(kListBytes, nameBytes);
    const std::optional<std::chrono::sys_days> day = DayOf(told.Written >> 16U);
    const std::size_t at = Long(list, 42);
    const auto packed = PackedAt(before, at, told, name);
    if (at < free || !packed || !day || !IsPlainName(name)) return std::nullopt;
    free = static_cast<std::size_t>(packed->data() + packed->size() - bytes.data());
    members.push_back({name, *day, told.Size, told.CheckSum, told.Method == kDeflated, *packed});
    list.remove_prefix(record);
  }
  if (!list.empty()) return std::nullopt;
  return members;
}

std::optional<std::string> Unpacked(const PlainMember& member) {
  std::optional<std::string> bytes =
      member.IsDeflated ? Inflated(member.Packed, member.Size) : std::string(member.Packed);
  if (bytes && Crc32(*bytes) != member.CheckSum) bytes.reset();
  return bytes;
}

}  // namespace vexa::ingest
