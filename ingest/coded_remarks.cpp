#include "ingest/coded_remarks.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

#include "analysis/shown_units.h"
#include "core/numbers.h"
#include "ingest/coded_groups.h"

namespace vexa::ingest {
namespace {

struct Meaning {
  int Code;
  std::string_view Text;
};

constexpr Meaning kMeanings[] = {
    {40, "no ascent was planned"},
    {41, "the report is incomplete"},
    {42, "the ground equipment failed"},
    {43, "the observation is delayed"},
    {44, "the power failed"},
    {45, "unfavourable weather"},
    {46, "the ascent reached a low height only"},
    {47, "the balloon leaked"},
    {48, "the ascent was not authorised"},
    {49, "alert"},
    {50, "the ascent did not reach 400 hPa"},
    {51, "the balloon iced"},
    {52, "the balloon came into precipitation"},
    {53, "interference"},
    {54, "interference"},
    {55, "the signal was lost"},
    {56, "the signal was lost"},
    {57, "maintenance"},
    {58, "the flight equipment failed"},
    {59, "no or part of an ascent for other reasons"},
    {65, "data are doubtful or missing"},
    {66, "data are doubtful or missing"},
    {67, "data are doubtful or missing"},
    {68, "data are doubtful or missing"},
};

constexpr int kStabilityIndex = 64, kExtrapolatedHeight = 90, kMeanWinds = 94;

std::string StabilityIndex(std::string_view group) {
  constexpr int kMostPositive = 40, kNegative = 50, kMostNegative = 90;
  const std::optional<int> coded = Figures(group, 3, 2);
  if (!coded || *coded > kMostNegative || (*coded > kMostPositive && *coded < kNegative)) return {};
  const int index = *coded <= kMostPositive ? *coded : kNegative - *coded;
  return "stability index of the station " + Shortest(index);
}

std::string ExtrapolatedHeight(std::string_view group) {
  const std::optional<int> press = Figures(group, 0, 2), height = Figures(group, 2, 3);
  if (!press || !height) return {};
  constexpr int kLastInMetres = 70;  // from 500 hPa up in tens of metres
  return "height of " + Shortest(*press * 10) + " hPa extrapolated, " +
         std::string(group.substr(2)) + (*press >= kLastInMetres ? " m" : "0 m");
}

std::string MeanWinds(std::string_view lower, std::string_view upper) {
  const auto text = [](std::string_view group) {
    const std::optional<GroupWind> wind = ReadWindGroup(group, 1);
    if (!wind || !wind->Spd) return std::string("not given");
    return analysis::DirectionText(*wind->Dir) + '/' + Shortest(*wind->Spd) + " kt";
  };
  if (!IsGroup(lower) || !IsGroup(upper)) return {};
  return "mean wind surface to 5000 ft " + text(lower) + ", 5000 to 10000 ft " + text(upper);
}

using Section = std::span<const std::string>;

// "09608 80231 92287": the second group is the time of the release, the third the water's
// temperature.
void AddInstruments(Section section, std::vector<std::string>& remarks) {
  for (std::size_t i = 1; i < section.size(); ++i) {
    const std::string& group = section[i];
    if (!IsGroup(group)) continue;
    const std::optional<int> hour = Figures(group, 1, 2), minute = Figures(group, 3, 2);
    if (group.starts_with('8') && hour && minute && *hour < 24 && *minute < 60) {
      remarks.push_back("released at " + Mask(*hour, "00") + ':' + Mask(*minute, "00") + " UTC");
    }
    const std::optional<int> tenths = Figures(group, 2, 3);
    const bool hasSign = group[1] == '0' || group[1] == '1';
    if (group.starts_with('9') && hasSign && tenths) {
      const double temp = (group[1] == '1' ? -*tenths : *tenths) / 10.0;
      remarks.push_back("the water's temperature is " + Shortest(temp) + " C");
    }
  }
}

void AddRegional(Section section, std::vector<std::string>& remarks) {
  const auto at = [&](std::size_t i) { return i < section.size() ? section[i] : std::string(); };
  const auto add = [&](std::string text) {
    if (!text.empty()) remarks.push_back(std::move(text));
  };
  for (std::size_t i = 0; i < section.size(); ++i) {
    if (!IsGroup(section[i]) || !section[i].starts_with("101")) continue;
    const int code = Figures(section[i], 3, 2).value_or(-1);
    if (code == kStabilityIndex) {
      add(StabilityIndex(at(++i)));
    } else if (code == kExtrapolatedHeight) {
      add(ExtrapolatedHeight(at(++i)));
    } else if (code == kMeanWinds) {
      add(MeanWinds(at(i + 1), at(i + 2)));
      i += 2;
    } else if (const auto* row = std::ranges::find(kMeanings, code, &Meaning::Code);
               row != std::end(kMeanings)) {
      add(std::string(row->Text));
    }
  }
}

// Plain words, as dropsondes have them of aircraft, mission and layer means.
void AddWords(std::string_view caption, Section section, std::vector<std::string>& remarks) {
  std::string words;
  for (const std::string& word : section) words += ' ' + word;
  if (!words.empty()) remarks.push_back(std::string(caption) + words);
}

}  // namespace

bool IsSectionMark(std::string_view group) {
  return group == "31313" || group == "41414" || group == "51515" || group == "61616" ||
         group == "62626";
}

std::vector<std::string> RemarksIn(const std::vector<std::string>& groups, std::size_t begin) {
  std::vector<std::string> remarks;
  for (std::size_t i = begin; i < groups.size(); ++i) {
    if (!IsSectionMark(groups[i])) continue;
    const auto first = groups.begin() + static_cast<std::ptrdiff_t>(i) + 1;
    const Section section(first, std::find_if(first, groups.end(), IsSectionMark));
    if (groups[i] == "31313") AddInstruments(section, remarks);
    if (groups[i] == "51515") AddRegional(section, remarks);
    if (groups[i] == "61616") AddWords("national section", section, remarks);
    if (groups[i] == "62626") AddWords("remarks", section, remarks);
  }
  return remarks;
}

}  // namespace vexa::ingest
