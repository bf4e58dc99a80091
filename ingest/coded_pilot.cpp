#include "ingest/coded_pilot.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "ingest/coded_groups.h"
#include "ingest/coded_remarks.h"

namespace vexa::ingest {
namespace {

constexpr int kLower[] = {1000, 925, 850, 700, 500, 400, 300, 250, 200, 150, 100};
constexpr int kUpper[] = {70, 50, 30, 20, 10};

class PilotReader {
 public:
  PilotReader(const CodedReport& report, double toKnots, CodedPart& into)
      : report_(report), toKnots_(toKnots), part_(into) {}

  void Read() {
    const bool isMandatory = report_.Letter() == 'A' || report_.Letter() == 'C';
    std::size_t at = 0;
    while (at < report_.Groups.size() && !IsSectionMark(At(at))) {
      if (At(at) == "21212") return ReadSignificant(at + 1);
      at = isMandatory ? ReadMandatory(at) : ReadHeights(at);
    }
  }

 private:
  std::string_view At(std::size_t index) const {
    return index < report_.Groups.size() ? std::string_view(report_.Groups[index])
                                         : std::string_view();
  }
  void Skipped(std::string_view group) {
    part_.Notes.push_back(report_.Name() + ": group " + std::string(group) +
                          " is garbled and was skipped.");
  }

  void Take(std::string_view group, LevelKind kind, std::optional<double> press,
            std::optional<double> height, bool isAtSurface = false) {
    const std::optional<GroupWind> wind = ReadWindGroup(group, toKnots_);
    if (!wind) return Skipped(group);
    if (!wind->Spd) return;
    CodedLevel level{.Kind = kind, .IsAtSurface = isAtSurface};
    level.Values.Press = press;
    level.Values.Height = height;
    level.Values.Dir = wind->Dir;
    level.Values.Spd = wind->Spd;
    part_.Levels.push_back(level);
  }

  // "55385 34004 32012 06514": three winds from 850 hPa up. "77153 11572 40923": maximum wind.
  std::size_t ReadMandatory(std::size_t at) {
    const std::string_view group = At(at);
    if (group == "77999" || group == "66999") return at + 1;
    const std::optional<int> figures = Figures(group, 2, 3);
    if ((group.starts_with("77") || group.starts_with("66")) && figures && *figures > 0) {
      Take(At(at + 1), LevelKind::MaximumWind, report_.IsAloft() ? *figures / 10.0 : *figures, {});
      const bool hasShear = At(at + 2).starts_with('4') && IsGroup(At(at + 2)) &&
                            !At(at + 2).starts_with("44") && At(at + 2) != "41414";
      return at + (hasShear ? 3 : 2);
    }
    const bool isHeading = IsGroup(group) && (group.starts_with("55") || group.starts_with("44"));
    const std::span<const int> levels =
        report_.IsAloft() ? std::span<const int>(kUpper) : std::span<const int>(kLower);
    const int code = Figures(group, 3, 2).value_or(-1);
    const auto first = std::ranges::find_if(levels, [&](int press) {
      return report_.IsAloft() ? press == code : press / 10 % 100 == code;
    });
    if (!isHeading || first == levels.end() || !figures) {
      Skipped(group);
      return at + 1;
    }
    const auto count = static_cast<std::size_t>(*figures / 100);
    for (std::size_t i = 0; i < count; ++i) {
      const auto index = static_cast<std::size_t>(first - levels.begin()) + i;
      if (index >= levels.size() || at + 1 + i >= report_.Groups.size()) break;
      Take(At(at + 1 + i), LevelKind::PilotWind, levels[index], {});
    }
    return at + 1 + count;
  }

  // "90346 11505 04504 30506": 3000, 4000 and 6000 ft. Only counting tells a heading from a wind.
  std::size_t ReadHeights(std::size_t at) {
    const std::string_view group = At(at);
    const std::optional<int> tens = Figures(group, 1, 1);
    const char kind = group.empty() ? ' ' : group[0];
    if (!IsGroup(group) || !tens || (kind != '9' && kind != '8' && kind != '1')) {
      Skipped(group);
      return at + 1;
    }
    ++at;
    for (std::size_t digit = 2; digit < 5; ++digit) {
      const std::optional<int> units = Figures(group, digit, 1);
      const bool isGround = !units && isFirst_ && digit == 2;
      if (!units && !isGround) continue;
      if (at >= report_.Groups.size() || IsSectionMark(At(at))) {
        Skipped(group);
        break;
      }
      const int steps = *tens * 10 + units.value_or(0);
      if (isGround || (steps == 0 && kind != '1')) {
        Take(At(at), LevelKind::PilotWind, {}, {}, true);
      } else {
        Take(At(at), LevelKind::PilotWind, {}, HeightOf(kind, steps));
      }
      ++at;
    }
    isFirst_ = false;
    return at;
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
    for (std::size_t i = at; i < report_.Groups.size() && !IsSectionMark(At(i)); i += 2) {
      byPressure = byPressure && IsGroup(At(i)) && At(i)[0] == At(i)[1];
    }
    for (; at + 1 < report_.Groups.size() && !IsSectionMark(At(at)); at += 2) {
      constexpr double kTensOfMetres = 10;
      const std::optional<int> press = Figures(At(at), 2, 3), height = Figures(At(at), 1, 4);
      if (byPressure ? !press || *press == 0 : !height) {
        Skipped(At(at));
      } else if (!byPressure) {
        Take(At(at + 1), LevelKind::PilotWind, {}, *height * kTensOfMetres);
      } else if (report_.IsAloft()) {
        Take(At(at + 1), LevelKind::Significant, *press / 10.0, {});
      } else {
        Take(At(at + 1), LevelKind::Significant, *press < 100 ? *press + 1000 : *press, {});
      }
    }
  }

  const CodedReport& report_;
  double toKnots_;
  CodedPart& part_;
  bool isFirst_ = true;
};

}  // namespace

void ReadPilot(const CodedReport& report, double toKnots, CodedPart& into) {
  PilotReader(report, toKnots, into).Read();
}

}  // namespace vexa::ingest
