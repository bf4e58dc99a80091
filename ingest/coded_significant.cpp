#include "ingest/coded_significant.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "ingest/coded_chain.h"
#include "ingest/coded_groups.h"
#include "ingest/coded_remarks.h"

namespace vexa::ingest {
namespace {

// What a reading costs, counted in groups that have to be taken for damaged.
constexpr double kGarbled = 1.2;       // a group in the place of a value that is none
constexpr double kMissingValue = 1.5;  // no group there
constexpr double kMissingLevel = 0.6;  // for each level that the count passes over
constexpr double kNotFalling = 1.5;    // a pressure not below that of the level before
constexpr double kOfRise = 5;          // and for each unit of ln p that it lies above
constexpr double kNoMark = 2;          // winds without the mark ahead of them
constexpr double kSamePress = 0.3;

constexpr std::string_view kWindMark = "21212";

enum class Head { Start, Temp, WindMark, Wind, End, Finish };

struct Place {
  Head Kind = Head::Start;
  std::size_t At = 0;
  int Count = 0;                  // 0 for the surface, then 1 to 9 over and over
  std::optional<double> Press{};  // empty for "11///", a layer without data
  std::size_t Behind() const { return Kind == Head::Start ? 0 : At + 1; }
  bool IsLevel() const { return Kind == Head::Temp || Kind == Head::Wind; }
};

class SignificantReader : PartReader {
 public:
  SignificantReader(const CodedReport& report, CodedPart& into) : PartReader(report, into) {}

  void Read() {
    FindPlaces();
    const std::vector<std::size_t> chain = CheapestChain(
        places_.size(),
        [this](std::size_t from, std::size_t to) { return CostOf(places_[from], places_[to]); });
    std::vector<CodedLevel> temps, winds;
    for (std::size_t i = 0; i + 1 < chain.size(); ++i) {
      const Place &place = places_[chain[i]], &next = places_[chain[i + 1]];
      if (place.Kind == Head::End) break;
      part_.End = next.At;
      const bool isGap =
          i > 0 && place.IsLevel() && MissingBetween(places_[chain[i - 1]], place) > 0;
      gap_ = gap_ || isGap;
      Take(place, next.At, place.Kind == Head::Wind ? winds : temps);
    }
    AddOrdered(std::move(temps));
    AddOrdered(std::move(winds));
  }

 private:
  void FindPlaces() {
    places_.push_back({});
    for (std::size_t i = 0; i < Count(); ++i) {
      const std::string_view group = At(i);
      if (IsMark(i)) places_.push_back({.Kind = Head::End, .At = i});
      if (group == kWindMark) places_.push_back({.Kind = Head::WindMark, .At = i});
      const std::optional<int> count = Figures(group, 0, 1);
      if (!IsGroup(group) || !count || group[0] != group[1]) continue;
      Place place{.Kind = Head::Temp, .At = i, .Count = *count, .Press = PressOf(group)};
      if (!place.Press && !group.ends_with("///")) continue;
      places_.push_back(place);
      place.Kind = Head::Wind;
      places_.push_back(place);
    }
    places_.push_back({.Kind = Head::End, .At = Count()});
    places_.push_back({.Kind = Head::Finish, .At = Count()});
  }

  std::optional<double> PressOf(std::string_view group) const {
    constexpr int kOver1000 = 100;
    const std::optional<int> figures = Figures(group, 2, 3);
    if (!figures) return std::nullopt;
    if (report_.IsAloft()) return *figures == 0 ? std::nullopt : std::optional(*figures / 10.0);
    return *figures < kOver1000 ? *figures + 1000 : *figures;
  }

  double CostOf(const Place& from, const Place& to) const {
    if (from.Kind == Head::End) return to.Kind == Head::Finish ? 0 : kImpossible;
    if (to.Kind == Head::Finish || to.At < from.Behind()) return kImpossible;
    const bool isInWinds = from.Kind == Head::WindMark || from.Kind == Head::Wind;
    if (isInWinds && (to.Kind == Head::Temp || to.Kind == Head::WindMark)) return kImpossible;
    double cost = 0;
    if (!isInWinds && to.Kind == Head::Wind) {
      const int first = report_.IsAloft() ? 1 : 0;
      if (from.Kind != Head::Temp || to.Count != first) return kImpossible;
      cost += kNoMark;
    } else if (to.IsLevel()) {
      if (to.Count == 0 && from.IsLevel()) return kImpossible;
      cost += kMissingLevel * MissingBetween(from, to) + CostOfPressures(from, to);
    }
    return cost + CostOfValue(from, ValueOf(from, to.At), to.At);
  }

  static double CostOfPressures(const Place& from, const Place& to) {
    if (!from.Press || !to.Press || *to.Press < *from.Press) return 0;
    if (*to.Press == *from.Press) return kSamePress;
    return kNotFalling + kOfRise * std::log(*to.Press / *from.Press);
  }

  int MissingBetween(const Place& from, const Place& to) const {
    constexpr int kRound = 9;
    if (!from.IsLevel()) {
      const int first = report_.IsAloft() ? 1 : 0;
      return to.Count >= first ? to.Count - first : 0;
    }
    return (to.Count - from.Count % kRound - 1 + kRound) % kRound;
  }

  // The group among those up to the next head that is the level's value; `end` for none.
  std::size_t ValueOf(const Place& head, std::size_t end) const {
    std::size_t best = end;
    double least = CostOfValue(head, end, end);
    if (!head.IsLevel()) return best;
    constexpr std::size_t kMost = 4;
    for (std::size_t i = head.Behind(); i < std::min(end, head.Behind() + kMost); ++i) {
      const double cost = CostOfValue(head, i, end);
      if (cost >= least) continue;
      least = cost;
      best = i;
    }
    return best;
  }

  double CostOfValue(const Place& head, std::size_t value, std::size_t end) const {
    const double all = CostOfSkipping(head.Behind(), end);
    if (!head.IsLevel()) return all;
    if (value == end) return all + kMissingValue;
    return all - CostOfSkipping(value) + (IsValue(head, value) ? 0 : kGarbled);
  }

  bool IsValue(const Place& head, std::size_t at) const {
    return head.Kind == Head::Wind ? WindAt(at).has_value() : IsTempOf(head.Press, at);
  }

  void Take(const Place& head, std::size_t end, std::vector<CodedLevel>& into) {
    if (!head.IsLevel()) {
      gap_ = end > head.Behind();
      return Skipped(head.Behind(), end);
    }
    const std::size_t value = ValueOf(head, end);
    const std::string group(At(head.At));
    bool isWhole = value != end;
    for (std::size_t i = head.Behind(); i < end; ++i) {
      if (i == value) continue;
      Skipped(i, i + 1);
      // Of two groups in the place of one either may be wrong.
      isWhole = isWhole && IsDoubled(i);
    }
    const bool isValue = isWhole && IsValue(head, value);
    if (!isValue) Skipped(value == end ? group : group + ' ' + std::string(At(value)));
    if (!isValue || !head.Press) {
      gap_ = true;
      return;
    }
    CodedLevel level{.Kind = head.Count == 0 ? LevelKind::Surface : LevelKind::Significant,
                     .HeightGroup = group,
                     .IsBehindGap = std::exchange(gap_, false)};
    level.Values.Press = head.Press;
    if (head.Kind == Head::Wind) {
      TakeWind(value, level);
    } else {
      TakeTemp(value, level);
    }
    into.push_back(std::move(level));
  }

  std::vector<Place> places_{};
  bool gap_ = false;  // something was lost since the last level that was taken
};

}  // namespace

void ReadSignificantLevels(const CodedReport& report, CodedPart& into) {
  SignificantReader(report, into).Read();
}

}  // namespace vexa::ingest
