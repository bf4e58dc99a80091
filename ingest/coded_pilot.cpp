#include "ingest/coded_pilot.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <utility>

#include "core/numbers.h"
#include "ingest/coded_chain.h"
#include "ingest/coded_groups.h"
#include "ingest/coded_remarks.h"

namespace vexa::ingest {
namespace {

constexpr int kLower[] = {1000, 925, 850, 700, 500, 400, 300, 250, 200, 150, 100};
constexpr int kUpper[] = {70, 50, 30, 20, 10};

constexpr std::string_view kWindMark = "21212";
constexpr double kHighestWind = 45000;  // m, where balloons burst at the latest
constexpr double kTensOfMetres = 10;

// A heading of winds by height.
struct Heading {
  std::size_t At = 0;
  std::vector<std::optional<double>> Heights{};  // m; empty for the ground
};

class PilotReader : PartReader {
 public:
  PilotReader(const CodedReport& report, CodedPart& into) : PartReader(report, into) {}

  void Read() {
    const bool isMandatory = report_.Letter() == 'A' || report_.Letter() == 'C';
    std::size_t end = 0;
    while (end < Count() && !IsMark(end) && At(end) != kWindMark) ++end;
    if (isMandatory) {
      ReadMandatory(end);
    } else {
      ReadHeights(end);
    }
    constexpr double kUnitsMeet = 305;  // m; thousands of feet, then steps of 500 m
    AddOrdered(std::exchange(levels_, {}), isMandatory ? 0 : kUnitsMeet);
    std::ranges::move(aside_, std::back_inserter(part_.Levels));
    if (At(end) == kWindMark) ReadSignificant(end + 1);
    AddOrdered(std::move(levels_));
    part_.End = end;
  }

 private:
  void Take(std::size_t at, CodedLevel level, std::vector<CodedLevel>& into) {
    if (!TakeWind(at, level)) return Skipped(At(at));
    if (level.Values.Spd) into.push_back(std::move(level));
  }

  static CodedLevel LevelAt(LevelKind kind, std::optional<double> press,
                            std::optional<double> height = {}) {
    CodedLevel level{.Kind = kind};
    level.Values.Press = press;
    level.Values.Height = height;
    return level;
  }

  // The winds of a heading: as many as it says, else none of them.
  bool AreAll(std::size_t head, std::size_t begin, std::size_t end, std::size_t count) {
    if (end - begin == count) return true;
    Note("behind " + std::string(At(head)) + " stand " + Shortest(static_cast<int>(end - begin)) +
         " groups instead of " + Shortest(static_cast<int>(count)) + "; they were skipped");
    return false;
  }

  // "55385 34004 32012 06514": three winds from 850 hPa up. "77153 11572 40923": maximum wind.
  void ReadMandatory(std::size_t end) {
    const auto isHead = [this](std::size_t i) {
      return IsGroup(At(i)) && At(i)[0] >= '4' && At(i)[0] <= '9';
    };
    std::size_t at = 0;
    while (at < end) {
      const std::size_t head = at++;
      if (!isHead(head)) {
        Skipped(At(head));
        continue;
      }
      const bool isMaximum = At(head)[0] == '7' || At(head)[0] == '6';
      std::size_t next = at;
      while (next < end && !isHead(next)) ++next;
      if (isMaximum) {
        // The shear above and below the maximum.
        const std::size_t shear = next < end && At(next).starts_with('4') ? next + 1 : next;
        ReadMaximum(head, at, next);
        at = shear;
        continue;
      }
      ReadStandardLevels(head, at, next);
      at = next;
    }
  }

  void ReadMaximum(std::size_t head, std::size_t begin, std::size_t end) {
    const std::string_view group = At(head);
    if (group == "77999" || group == "66999") return Skipped(begin, end);
    const std::optional<int> press = Figures(group, 2, 3), tens = Figures(group, 1, 4);
    std::optional<double> height;
    if (tens) height = *tens * kTensOfMetres;
    const bool isPress = group[0] == group[1] && press && *press > 0;
    if (!isPress && (!height || *height > kHighestWind)) return Skipped(head, end);
    if (!AreAll(head, begin, end, 1)) return;
    const std::optional<double> hPa =
        isPress ? std::optional(report_.IsAloft() ? *press / 10.0 : *press) : std::nullopt;
    Take(begin, LevelAt(LevelKind::MaximumWind, hPa, isPress ? std::nullopt : height), aside_);
  }

  void ReadStandardLevels(std::size_t head, std::size_t begin, std::size_t end) {
    const std::string_view group = At(head);
    const std::span<const int> standard =
        report_.IsAloft() ? std::span<const int>(kUpper) : std::span<const int>(kLower);
    const std::optional<int> count = Figures(group, 2, 1);
    const int code = Figures(group, 3, 2).value_or(-1);
    const auto first = std::ranges::find_if(standard, [&](int press) {
      return report_.IsAloft() ? press == code : press / 10 % 100 == code;
    });
    const bool isHeading = group.starts_with("55") || group.starts_with("44");
    if (!isHeading || first == standard.end() || !count) return Skipped(head, end);
    if (!AreAll(head, begin, end, static_cast<std::size_t>(*count))) return;
    auto level = first;
    for (std::size_t i = begin; i < end && level != standard.end(); ++i, ++level) {
      Take(i, LevelAt(LevelKind::PilotWind, *level), levels_);
    }
  }

  // "90346 11505 04504 30506": 3000, 4000 and 6000 ft. Only counting tells a heading from a wind.
  void ReadHeights(std::size_t end) {
    std::vector<Heading> headings = {{.At = 0}};
    for (std::size_t i = 0; i < end; ++i) {
      if (std::optional<Heading> heading = HeadingAt(i)) headings.push_back(std::move(*heading));
    }
    headings.push_back({.At = end});
    const std::size_t last = headings.size() - 1;
    const auto behind = [&](std::size_t i) { return i == 0 ? 0 : headings[i].At + 1; };
    const std::vector<std::size_t> chain =
        CheapestChain(headings.size(), [&](std::size_t from, std::size_t to) {
          const Heading &a = headings[from], &b = headings[to];
          if (b.At < behind(from)) return kImpossible;
          double cost = CostOfWinds(behind(from), b.At, a.Heights.size());
          if (from == 0 || to == last || b.Heights.empty()) return cost;
          if (a.Heights.back() && b.Heights.front().value_or(0) <= *a.Heights.back()) cost += 1;
          return cost;
        });
    for (std::size_t k = 0; k + 1 < chain.size(); ++k) {
      const std::size_t begin = behind(chain[k]), next = headings[chain[k + 1]].At;
      if (chain[k] == 0) {
        Skipped(begin, next);
        continue;
      }
      const Heading& heading = headings[chain[k]];
      if (!AreAll(heading.At, begin, next, heading.Heights.size())) continue;
      for (std::size_t i = begin; i < next; ++i) TakeAt(heading.Heights[i - begin], i);
    }
  }

  std::optional<Heading> HeadingAt(std::size_t at) const {
    const std::string_view group = At(at);
    const std::optional<int> tens = Figures(group, 1, 1);
    const char kind = group.empty() ? ' ' : group[0];
    const bool isOne = kind == '9' || kind == '8' || (kind == '1' && report_.IsAloft());
    if (!IsGroup(group) || !tens || !isOne) return std::nullopt;
    Heading heading{.At = at};
    for (std::size_t digit = 2; digit < 5; ++digit) {
      const std::optional<int> units = Figures(group, digit, 1);
      const bool isGround = !units && digit == 2 && at == 0;
      const int steps = *tens * 10 + units.value_or(0);
      if (isGround || (units && steps == 0 && kind != '1')) {
        heading.Heights.push_back(std::nullopt);
      } else if (units) {
        heading.Heights.push_back(HeightOf(kind, steps));
      }
    }
    if (heading.Heights.empty()) return std::nullopt;
    return heading;
  }

  double CostOfWinds(std::size_t begin, std::size_t end, std::size_t count) const {
    constexpr double kGarbled = 1.2, kMissing = 1.5;
    const std::size_t taken = std::min(count, end - begin);
    double cost =
        kMissing * static_cast<double>(count - taken) + CostOfSkipping(begin + taken, end);
    for (std::size_t i = begin; i < begin + taken; ++i) {
      if (!WindAt(i)) cost += kGarbled;
    }
    return cost;
  }

  void TakeAt(std::optional<double> height, std::size_t at) {
    CodedLevel level = LevelAt(LevelKind::PilotWind, {}, height);
    level.IsAtSurface = !height;
    if (!height) return Take(at, std::move(level), aside_);
    if (*height > kHighestWind) {
      return Note("a wind at " + Shortest(*height) +
                  " m is higher than balloons rise; it was skipped");
    }
    Take(at, std::move(level), levels_);
  }

  double HeightOf(char kind, int steps) const {
    constexpr double kThousandFeet = 304.8, kInternational = 300, kCoarse = 500;
    constexpr int kHundred = 100;
    if (kind == '8') return steps * kCoarse;
    return (kind == '1' ? steps + kHundred : steps) *
           (report_.InKnots ? kThousandFeet : kInternational);
  }

  // Behind 21212 winds by pressure, "11449 11517", or by tens of metres, "10450 11517".
  void ReadSignificant(std::size_t at) {
    bool byPressure = true;
    for (std::size_t i = at; i < Count() && !IsMark(i); i += 2) {
      byPressure = byPressure && IsGroup(At(i)) && At(i)[0] == At(i)[1];
    }
    for (; at + 1 < Count() && !IsMark(at); at += 2) {
      constexpr int kOver1000 = 100;
      const std::optional<int> press = Figures(At(at), 2, 3), height = Figures(At(at), 1, 4);
      if (byPressure ? !press || *press == 0 : !height) {
        Skipped(At(at));
      } else if (!byPressure) {
        TakeAt(*height * kTensOfMetres, at + 1);
      } else if (report_.IsAloft()) {
        Take(at + 1, LevelAt(LevelKind::Significant, *press / 10.0), levels_);
      } else {
        Take(at + 1, LevelAt(LevelKind::Significant, *press < kOver1000 ? *press + 1000 : *press),
             levels_);
      }
    }
  }

  std::vector<CodedLevel> levels_{};  // one above the other
  std::vector<CodedLevel> aside_{};   // the ground's and the maximum, out of the others' order
};

}  // namespace

void ReadPilot(const CodedReport& report, CodedPart& into) {
  PilotReader(report, into).Read();
}

}  // namespace vexa::ingest
