#include "download/cache.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>
#include <system_error>
#include <vector>

#include "core/files.h"
#include "core/platform.h"

namespace vexa::download {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kExtension = ".answer";
// Answers that were kept under "answer kept until " may be cut: their ends were not looked at then.
constexpr std::string_view kMark = "whole answer kept until ";

// FNV-1a, 64 bits; two addresses of one hash share a file, whose heading tells them apart.
std::string HashOf(std::string_view text) {
  std::uint64_t hash = 14695981039346656037ULL;
  for (const char c : text) {
    hash ^= static_cast<unsigned char>(c);
    hash *= 1099511628211ULL;
  }
  std::array<char, 17> figures{};
  const auto end = std::to_chars(figures.data(), figures.data() + figures.size(), hash, 16).ptr;
  return std::string(figures.data(), end);
}

std::optional<std::int64_t> Whole(std::string_view text) {
  std::int64_t value = 0;
  const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (failed != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

// A kept file: until when, its address and the number of bytes, a line each, then the bytes.
struct Kept {
  Instant Until{};
  std::string_view Address{};
  std::string_view Bytes{};
};

std::optional<std::string_view> NextLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end + 1);
  return line;
}

std::optional<Kept> ReadKept(std::string_view text) {
  std::optional<std::string_view> until = NextLine(text);
  if (!until || !until->starts_with(kMark)) return std::nullopt;
  const std::optional<std::int64_t> seconds = Whole(until->substr(kMark.size()));
  const std::optional<std::string_view> address = NextLine(text);
  const std::optional<std::string_view> count = NextLine(text);
  if (!seconds || !address || !count) return std::nullopt;
  if (Whole(*count) != static_cast<std::int64_t>(text.size())) return std::nullopt;
  return Kept{Instant(std::chrono::seconds(*seconds)), *address, text};
}

}  // namespace

std::optional<std::chrono::seconds> KeepingTime(const Source& source, const Request& request,
                                                Instant now) {
  const std::string& address = source.Address;
  const auto has = [&address](std::string_view token) {
    return address.find(token) != std::string::npos;
  };
  const bool hasFullTime =
      (has("@Y") || has("@y")) && has("@M") && has("@D") && has("@H") && request.Time.Known();
  if (!hasFullTime) return std::nullopt;
  const std::chrono::year_month_day date{
      std::chrono::year(request.Time.Year),
      std::chrono::month(static_cast<unsigned>(request.Time.Month)),
      std::chrono::day(static_cast<unsigned>(request.Time.Day))};
  const Instant hour = std::chrono::sys_days(date) + std::chrono::hours(request.Time.Hour);
  constexpr auto kComplete = std::chrono::hours(24);
  constexpr auto kForGood = std::chrono::hours(24 * 365 * 10);
  constexpr auto kWhileItComesIn = std::chrono::minutes(15);
  return now - hour > kComplete ? std::chrono::seconds(kForGood)
                                : std::chrono::seconds(kWhileItComesIn);
}

fs::path Cache::PathOf(const std::string& address) const {
  return folder_ / (HashOf(address) + std::string(kExtension));
}

std::optional<std::string> Cache::Find(const std::string& address, Instant now) const {
  const Outcome<std::string> text = ReadFile(PathOf(address));
  if (!text) return std::nullopt;
  const std::optional<Kept> kept = ReadKept(text.Value());
  if (!kept || kept->Address != address || kept->Until <= now) return std::nullopt;
  return std::string(kept->Bytes);
}

std::optional<Fault> Cache::Store(const std::string& address, const std::string& bytes,
                                  Instant until) const {
  if (address.find('\n') != std::string::npos) {
    return Fault{kFaultBadUrl, "Store", "an address of several lines"};
  }
  const std::error_code failed = MakeFolders(folder_);
  if (failed) return Fault{FaultNumber(failed), "Store", TextFromPath(folder_)};
  const auto number = [](std::int64_t value) { return std::to_string(value); };
  return SaveFile(PathOf(address),
                  std::string(kMark) + number(until.time_since_epoch().count()) + '\n' + address +
                      '\n' + number(static_cast<std::int64_t>(bytes.size())) + '\n' + bytes);
}

void Cache::Sweep(Instant now) const {
  std::vector<fs::path> old;
  for (const FolderEntry& entry : EntriesOf(folder_)) {
    if (entry.Path.extension() != kExtension) continue;
    const Outcome<std::string> text = ReadFile(entry.Path);
    const std::optional<Kept> kept = text ? ReadKept(text.Value()) : std::nullopt;
    if (!kept || kept->Until <= now) old.push_back(entry.Path);
  }
  for (const fs::path& path : old) Remove(path);
  RemoveLeftovers(folder_);
}

}  // namespace vexa::download
