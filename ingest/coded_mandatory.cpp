#include "ingest/coded_mandatory.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "ingest/coded_chain.h"
#include "ingest/coded_groups.h"
#include "ingest/coded_heights.h"
#include "ingest/coded_remarks.h"

namespace vexa::ingest {
namespace {

struct MandatoryLevel {
  std::string_view Code;
  double Press;
  char WindTop;  // the header's figure when this is the highest level with a wind
};

constexpr MandatoryLevel kLower[] = {{"00", 1000, '0'}, {"92", 925, '9'}, {"85", 850, '8'},
                                     {"70", 700, '7'},  {"50", 500, '5'}, {"40", 400, '4'},
                                     {"30", 300, '3'},  {"25", 250, '2'}, {"20", 200, '2'},
                                     {"15", 150, '1'},  {"10", 100, '1'}};
constexpr MandatoryLevel kUpper[] = {
    {"70", 70, '7'}, {"50", 50, '5'}, {"30", 30, '3'}, {"20", 20, '2'}, {"10", 10, '1'},
    {"07", 7, ' '},  {"05", 5, ' '},  {"03", 3, ' '},  {"02", 2, ' '},  {"01", 1, ' '}};

// What a reading costs, counted in groups that have to be taken for damaged.
constexpr double kGarbled = 1.2;       // a group in the place of a value that is none
constexpr double kMissingTemp = 1.5;   // no group in the place of a temperature
constexpr double kMissingWind = 0.75;  // the same for a wind, which some stations leave out
constexpr double kWindTooMany = 0.5;   // a wind where the header speaks of none
constexpr double kLevelLeftOut = 0.4;  // a mandatory level not sent
constexpr double kNoSurface = 1.5;
constexpr double kUnlikelyMark = 2;   // the mark of a section that could be a temperature
constexpr double kUnlikelyOrder = 1;  // a mandatory level behind a tropopause

// A group with which a level begins, or the levels end.
enum class Head { Start, Surface, Mandatory, Nothing, Tropopause, MaximumWind, End, Finish };

struct Place {
  Head Kind = Head::Start;
  std::size_t At = 0;
  std::size_t Row = 0;  // of a mandatory level in its table
  std::optional<double> Press{};
  /// The first group behind the head.
  std::size_t Behind() const { return Kind == Head::Start ? 0 : At + 1; }
};

// What the groups between two heads are.
struct Block {
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  double Cost = 0;
  std::size_t Temp = kNone, Wind = kNone;
  bool IsDoubtful = false;
};

class MandatoryReader : PartReader {
 public:
  MandatoryReader(const CodedReport& report, CodedPart& into)
      : PartReader(report, into),
        table_(report.IsAloft() ? std::span<const MandatoryLevel>(kUpper)
                                : std::span<const MandatoryLevel>(kLower)) {
    const auto top =
        std::ranges::find(table_.rbegin(), table_.rend(), report.WindTop, &MandatoryLevel::WindTop);
    if (top != table_.rend()) windTop_ = report.IsAloft() && top->Press == 10 ? 0 : top->Press;
  }

  void Read() {
    FindPlaces();
    const std::vector<std::size_t> chain = CheapestChain(
        places_.size(),
        [this](std::size_t from, std::size_t to) { return CostOf(places_[from], places_[to]); });
    std::size_t end = 0;
    for (std::size_t i = 0; i + 1 < chain.size(); ++i) {
      const Place& place = places_[chain[i]];
      if (place.Kind == Head::End) break;
      end = places_[chain[i + 1]].At;
      Take(place, end);
    }
    part_.End = end;
    if (end < Count() && !IsSectionMark(At(end))) {
      std::string words;
      for (; end < Count(); ++end) words += (words.empty() ? "" : " ") + std::string(At(end));
      Note("says \"" + words + '"');
    }
  }

 private:
  std::optional<double> TropopausePress(std::string_view group) const {
    constexpr double kLowest = 600;  // hPa
    const std::optional<double> press = SpecialPress(group);
    return press && *press <= kLowest && (*press >= 100) != report_.IsAloft() ? press
                                                                              : std::nullopt;
  }

  // Pressure of a tropopause or wind maximum: whole hPa in part A, tenths in part C.
  std::optional<double> SpecialPress(std::string_view group) const {
    const std::optional<int> figures = Figures(group, 2, 3);
    if (!figures || *figures == 0) return std::nullopt;
    return report_.IsAloft() ? *figures / 10.0 : *figures;
  }

  void FindPlaces() {
    places_.push_back({});
    for (std::size_t i = 0; i < Count(); ++i) {
      if (IsMark(i)) places_.push_back({.Kind = Head::End, .At = i});
      if (IsGroup(At(i))) FindHead(i);
    }
    places_.push_back({.Kind = Head::End, .At = Count()});
    places_.push_back({.Kind = Head::Finish, .At = Count()});
  }

  void FindHead(std::size_t at) {
    const std::string_view group = At(at);
    if (group == "88999" || group == "77999" || group == "66999") {
      places_.push_back({.Kind = Head::Nothing, .At = at});
      return;
    }
    if (group.starts_with("88")) {
      places_.push_back({.Kind = Head::Tropopause, .At = at, .Press = TropopausePress(group)});
    }
    if (group.starts_with("77") || group.starts_with("66")) {
      places_.push_back({.Kind = Head::MaximumWind, .At = at, .Press = SpecialPress(group)});
    }
    constexpr int kOver1000 = 500, kHighestPress = 1100;  // hPa
    const std::optional<int> figures = Figures(group, 2, 3);
    if (!report_.IsAloft() && (group.starts_with("99") || IsMistakenSurface(at))) {
      Place surface{.Kind = Head::Surface, .At = at};
      const int press = figures.value_or(0) < kOver1000 ? figures.value_or(0) + 1000 : *figures;
      if (figures && press <= kHighestPress) surface.Press = press;
      places_.push_back(surface);
    }
    const auto row = std::ranges::find_if(
        table_, [group](const MandatoryLevel& level) { return group.starts_with(level.Code); });
    if (row == table_.end()) return;
    places_.push_back({.Kind = Head::Mandatory,
                       .At = at,
                       .Row = static_cast<std::size_t>(row - table_.begin()),
                       .Press = row->Press});
  }

  // "00987 25814 35007" at the beginning: as the height of 1000 hPa far below the sea.
  bool IsMistakenSurface(std::size_t at) const {
    constexpr int kLeastMistaken = 850;
    const std::optional<int> figures = Figures(At(at), 2, 3);
    return at == 0 && At(at).starts_with("00") && figures && *figures >= kLeastMistaken &&
           TempAt(1) && WindAt(2);
  }

  double CostOf(const Place& from, const Place& to) const {
    if (from.Kind == Head::End) return to.Kind == Head::Finish ? 0 : kImpossible;
    if (to.Kind == Head::Finish || to.At < from.Behind()) return kImpossible;
    const double order = CostOfOrder(from, to);
    if (order == kImpossible) return order;
    return order + BlockOf(from, to.At).Cost + CostOfHeights(from, to);
  }

  double CostOfOrder(const Place& from, const Place& to) const {
    switch (to.Kind) {
      case Head::Surface:
        return from.Kind == Head::Start ? 0 : kImpossible;
      case Head::Mandatory: {
        if (from.Kind == Head::Mandatory && to.Row <= from.Row) return kImpossible;
        const std::size_t next = from.Kind == Head::Mandatory ? from.Row + 1 : 0;
        double cost = kLevelLeftOut * static_cast<double>(to.Row - next);
        if (from.Kind == Head::Start && !report_.IsAloft()) cost += kNoSurface;
        if (from.Kind == Head::Surface && from.Press) cost = CostFromSurface(*from.Press, to);
        const bool isFromSpecial = from.Kind == Head::Tropopause ||
                                   from.Kind == Head::MaximumWind || from.Kind == Head::Nothing;
        return isFromSpecial ? kUnlikelyOrder : cost;
      }
      case Head::End:
        return IsLikelyMark(to.At) ? 0 : kUnlikelyMark;
      case Head::Tropopause:
      case Head::MaximumWind:
        return to.Press ? 0 : kGarbled;
      default:
        return 0;
    }
  }

  // Levels beneath the ground are left out by many.
  double CostFromSurface(double surface, const Place& to) const {
    double cost = 0;
    for (std::size_t row = 0; row < to.Row; ++row) {
      if (table_[row].Press < surface) cost += kLevelLeftOut;
    }
    return cost;
  }

  // A temperature may look like the mark of a section: "31313", "51515". Behind the mark stand the
  // instruments and the time of the release, or groups that are no wind.
  bool IsLikelyMark(std::size_t at) const {
    const std::string_view mark = At(at);
    if (mark != "31313" && mark != "51515") return true;
    if (at + 1 >= Count() || IsMark(at + 1)) return true;
    const std::string_view next = At(at + 1);
    if (mark == "51515") return next.starts_with("101") || !WindAt(at + 1);
    for (std::size_t i = at + 1; i < at + 3; ++i) {
      const std::optional<int> hour = Figures(At(i), 1, 2), minute = Figures(At(i), 3, 2);
      if (At(i).starts_with('8') && hour && minute && *hour < 24 && *minute < 60) return true;
    }
    return !WindAt(at + 1);
  }

  bool IsWindExpected(const Place& place) const {
    return place.Kind == Head::Tropopause || place.Kind == Head::MaximumWind ||
           (windTop_ && place.Press && *place.Press >= *windTop_);
  }

  // The cheapest choice of a temperature and a wind among the groups between two heads.
  Block BlockOf(const Place& head, std::size_t end) const {
    const std::size_t begin = head.Behind();
    Block best{.Cost = CostOfSkipping(begin, end)};
    const bool hasTemp =
        head.Kind == Head::Surface || head.Kind == Head::Mandatory || head.Kind == Head::Tropopause;
    const bool hasWind = hasTemp || head.Kind == Head::MaximumWind;
    if (!hasWind) return best;
    const bool isExpected = IsWindExpected(head);
    const double noTemp = hasTemp ? kMissingTemp : 0;
    const double noWind = head.Kind == Head::MaximumWind ? kMissingTemp
                          : isExpected                   ? kMissingWind
                                                         : 0;
    const double all = best.Cost;
    best.Cost += noTemp + noWind;
    constexpr std::size_t kMost = 4;
    const std::size_t last = std::min(end, begin + kMost);
    const auto consider = [&](std::size_t temp, std::size_t wind) {
      Block block{.Cost = all, .Temp = temp, .Wind = wind};
      block.Cost += temp == Block::kNone ? noTemp : CostOfTemp(temp, head) - CostOfSkipping(temp);
      block.Cost +=
          wind == Block::kNone ? noWind : CostOfWind(wind, isExpected) - CostOfSkipping(wind);
      if (block.Cost < best.Cost) best = block;
    };
    for (std::size_t temp = begin; hasTemp && temp < last; ++temp) {
      for (std::size_t wind = temp + 1; wind < last; ++wind) consider(temp, wind);
      consider(temp, Block::kNone);
    }
    for (std::size_t wind = begin; wind < last; ++wind) consider(Block::kNone, wind);
    if (head.Kind == Head::MaximumWind && best.Wind + 1 < end &&
        At(best.Wind + 1).starts_with('4')) {
      best.Cost -= CostOfSkipping(best.Wind + 1);  // the shear above and below
    }
    best.IsDoubtful = IsDoubtful(best, head, end, isExpected);
    return best;
  }

  // A temperature that could as well be the wind, or one of three groups of which two were meant.
  bool IsDoubtful(const Block& block, const Place& head, std::size_t end, bool isExpected) const {
    if (block.Temp == Block::kNone) return false;
    if (block.Wind == Block::kNone && isExpected && IsLikelyWind(block.Temp, head)) {
      return true;
    }
    // More groups are those of a level without its code.
    std::size_t tooMany = 0;
    for (std::size_t i = head.Behind(); i < end; ++i) {
      if (i != block.Temp && i != block.Wind && !IsDoubled(i)) ++tooMany;
    }
    return tooMany == 1;
  }

  // Near the ground no wind is as strong as in the jet.
  bool IsLikelyWind(std::size_t at, const Place& head) const {
    constexpr double kAt1000 = 80, kOfHpa = 0.35;  // knots; and for each hPa above
    const std::optional<GroupWind>& wind = WindAt(at);
    return wind && wind->Spd.value_or(0) <= kAt1000 + kOfHpa * (1000 - head.Press.value_or(0));
  }

  double CostOfTemp(std::size_t at, const Place& head) const {
    const double mark = IsSectionMark(At(at)) && IsLikelyMark(at) ? kUnlikelyMark : 0;
    return (IsTempOf(head.Press, at) ? 0 : kGarbled) + mark;
  }

  double CostOfWind(std::size_t at, bool isExpected) const {
    if (IsMark(at)) return kGarbled + kUnlikelyMark;
    if (At(at) == kNotObserved) return 0;
    if (!WindAt(at)) return kGarbled;
    return isExpected ? 0 : kWindTooMany;
  }

  // Heights of two mandatory levels that the air between them does not bear out.
  double CostOfHeights(const Place& from, const Place& to) const {
    if (from.Kind != Head::Mandatory || to.Kind != Head::Mandatory) return 0;
    const std::optional<int> below = Figures(At(from.At), 2, 3), above = Figures(At(to.At), 2, 3);
    if (!below || !above) return 0;
    const double layers = std::log(*from.Press / *to.Press);
    constexpr double kLeast = 60, kOfLayer = 250, kMuch = 2.5;  // m; m of each unit of ln p
    const double tolerance = kLeast + kOfLayer * layers;
    const double apart = std::fabs(ThicknessMisfit({*from.Press, *below, TempBehind(from)},
                                                   {*to.Press, *above, TempBehind(to)}));
    if (apart < tolerance) return 0;
    return apart < kMuch * tolerance ? 1 : kGarbled;
  }

  std::optional<double> TempBehind(const Place& place) const {
    return IsTempOf(place.Press, place.Behind()) ? TempAt(place.Behind())->Temp : std::nullopt;
  }

  void Take(const Place& head, std::size_t end) {
    if (head.Kind == Head::Start || head.Kind == Head::Nothing) {
      return Skipped(head.Behind(), end);
    }
    const Block block = BlockOf(head, end);
    CodedLevel level{.Kind = KindOf(head.Kind), .IsDoubtful = block.IsDoubtful};
    level.Values.Press = head.Press;
    const std::string_view group = At(head.At);
    if (head.Kind == Head::Mandatory) {
      level.HeightGroup = group;
      level.HeightFigures = Figures(group, 2, 3);
    }
    const bool isWhole = head.Kind == Head::Mandatory
                             ? level.HeightFigures || group.ends_with("///")
                             : head.Press || group.ends_with("///");
    if (!isWhole) Skipped(group);
    if (head.Kind == Head::Surface && group.starts_with("00")) {
      Note("group " + std::string(group) + " was taken as the surface");
    }
    if (block.Temp != Block::kNone && !TakeTemp(block.Temp, level)) Skipped(At(block.Temp));
    if (block.Wind != Block::kNone && !TakeWind(block.Wind, level)) Skipped(At(block.Wind));
    const bool hasShear = head.Kind == Head::MaximumWind && block.Wind != Block::kNone;
    for (std::size_t i = head.Behind(); i < end; ++i) {
      const bool isShear = hasShear && i == block.Wind + 1 && At(i).starts_with('4');
      if (i != block.Temp && i != block.Wind && !isShear) Skipped(At(i));
    }
    // What only its temperature tells to be there.
    const bool isLost =
        !level.Values.Press || (level.Kind == LevelKind::Tropopause && block.Temp == Block::kNone);
    if (!isLost) part_.Levels.push_back(level);
  }

  static LevelKind KindOf(Head kind) {
    switch (kind) {
      case Head::Surface:
        return LevelKind::Surface;
      case Head::Tropopause:
        return LevelKind::Tropopause;
      case Head::MaximumWind:
        return LevelKind::MaximumWind;
      default:
        return LevelKind::Mandatory;
    }
  }

  std::span<const MandatoryLevel> table_;
  std::optional<double> windTop_{};  // hPa, up to where the header speaks of winds
  std::vector<Place> places_{};
};

}  // namespace

void ReadMandatoryLevels(const CodedReport& report, CodedPart& into) {
  MandatoryReader(report, into).Read();
}

}  // namespace vexa::ingest
