#include "map/lines.h"

#include <cstdint>
#include <optional>

#include "core/numbers.h"

namespace vexa::map {
namespace {

constexpr std::string_view kMark = "VEXA MAP 1\n";
constexpr double kStepsPerDegree = 100;

class Bytes {
 public:
  Bytes(std::string_view bytes, std::size_t at) : bytes_(bytes), at_(at) {}
  bool AtEnd() const { return at_ >= bytes_.size(); }
  std::size_t At() const { return at_; }

  std::optional<std::uint32_t> Number() {
    std::uint32_t number = 0;
    for (int shift = 0; shift < 32; shift += 7) {
      if (AtEnd()) return std::nullopt;
      const auto byte = static_cast<unsigned char>(bytes_[at_++]);
      number |= static_cast<std::uint32_t>(byte & 0x7FU) << shift;
      if (byte < 0x80U) return number;
    }
    return std::nullopt;
  }
  std::optional<int> Step() {
    const auto number = Number();
    if (!number) return std::nullopt;
    const int half = static_cast<int>(*number / 2);
    return *number % 2 == 0 ? half : -half - 1;
  }

 private:
  std::string_view bytes_;
  std::size_t at_;
};

}  // namespace

Outcome<std::vector<MapLine>> ReadLines(std::string_view bytes, std::string_view name) {
  const auto damaged = [&](std::size_t at, std::string_view reason) {
    return Fault{
        kFaultEndOfFile, "ReadLines",
        std::string(name) + ", byte " + Shortest(static_cast<int>(at)) + ": " + std::string(reason),
        std::string(name)};
  };
  if (!bytes.starts_with(kMark)) return damaged(0, "is no file of map lines");
  const std::size_t origin = bytes.find('\n', kMark.size());
  if (origin == std::string_view::npos) return damaged(kMark.size(), "is cut in its heading");
  Bytes from(bytes, origin + 1);
  std::vector<MapLine> lines;
  while (!from.AtEnd()) {
    const auto kind = from.Number();
    const auto count = from.Number();
    if (!kind || !count || *kind > 2 || *count > bytes.size()) {
      return damaged(from.At(), "no line begins here");
    }
    MapLine line{static_cast<LineKind>(*kind)};
    int lon = 0;
    int lat = 0;
    for (std::uint32_t i = 0; i < *count; ++i) {
      const auto east = from.Step();
      const auto north = from.Step();
      if (!east || !north) return damaged(from.At(), "is cut in a line");
      lon += *east;
      lat += *north;
      line.Points.push_back({lat / kStepsPerDegree, lon / kStepsPerDegree});
    }
    lines.push_back(std::move(line));
  }
  return lines;
}

}  // namespace vexa::map
