#include "ingest/source_table.h"

#include <algorithm>
#include <string>

#include "core/numbers.h"

namespace vexa::ingest {
namespace {

constexpr int kMostLinesBetween = 3;  // units, dashes, a blank

// "pressure (mb) wind speed (kts)": names of several words, told apart by their units.
std::vector<std::string_view> SplitAfterBrackets(std::string_view line) {
  std::vector<std::string_view> names;
  while (!Trim(line).empty()) {
    const std::size_t end = line.find(')');
    names.push_back(Trim(line.substr(0, end == line.npos ? end : end + 1)));
    if (end == std::string_view::npos) break;
    line.remove_prefix(end + 1);
  }
  return names;
}

// "t (s)  P (mb)  WD  WS (m/s)": words with their units in brackets behind some of them.
std::vector<std::string_view> SplitBeforeBrackets(std::string_view line) {
  std::vector<std::string_view> names;
  for (const std::string_view word : Tokens(line)) {
    if (word.front() == '(' && !names.empty()) {
      std::string_view& name = names.back();
      name = {name.data(), static_cast<std::size_t>(word.data() + word.size() - name.data())};
    } else {
      names.push_back(word);
    }
  }
  return names;
}

// "Elapsed time   HeightMSL     P": names of several words with more than one blank in between.
std::vector<std::string_view> SplitAtGaps(std::string_view line) {
  std::vector<std::string_view> names;
  while (!Trim(line).empty()) {
    line.remove_prefix(line.find_first_not_of(" \t"));
    // From here on only: a line of many names is gone through once.
    std::size_t end = 0;
    const auto isGap = [line](std::size_t at) {
      return line[at] == '\t' || (line[at] == ' ' && at + 1 < line.size() && line[at + 1] == ' ');
    };
    while (end < line.size() && !isGap(end)) ++end;
    if (end == line.size()) end = std::string_view::npos;
    names.push_back(Trim(line.substr(0, end)));
    if (end == std::string_view::npos) break;
    line.remove_prefix(end);
  }
  return names;
}

// "Elapsed time HeightMSL Pc Pm Temp RH": names of several words with one blank in between, as far
// as the words together are names that are known.
std::vector<std::string_view> SplitByNames(std::string_view line) {
  constexpr std::string_view kOthers[] = {
      "elapsedtime",         "flighttime",    "ascentrate",    "ascrate",
      "mixingratio",         "virtualtemp",   "potentialtemp", "theta",
      "heightagl",           "verticalspeed", "groundspeed",   "virtualtemperature",
      "potentialtemperature"};
  constexpr std::size_t kMostWords = 3;
  const std::vector<std::string_view> words = Tokens(line);
  std::vector<std::string_view> names;
  for (std::size_t i = 0; i < words.size();) {
    std::size_t count = 1;
    for (std::size_t more = 2; more <= kMostWords && i + more <= words.size(); ++more) {
      std::string letters;
      for (std::size_t k = i; k < i + more; ++k) letters += words[k];
      for (char& c : letters) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
      if (QuantityNamed(letters) || std::ranges::find(kOthers, letters) != std::end(kOthers)) {
        count = more;
      }
    }
    const std::string_view last = words[i + count - 1];
    names.emplace_back(words[i].data(),
                       static_cast<std::size_t>(last.data() + last.size() - words[i].data()));
    i += count;
  }
  return names;
}

// Goes through the words of a line until it is clear whether it is a row: at least two numbers, and
// a number or a time first.
class RowTest {
 public:
  /// Whether more words are wanted.
  bool Take(const RowWord& word) {
    constexpr std::string_view kOfNumber = "0123456789+-./";
    const bool isStart = word.Number || kOfNumber.find(word.Text.front()) != std::string_view::npos;
    if (isFirst_ && !isStart) return false;
    isFirst_ = false;
    numbers_ += word.Number || ParseNumber(word.Text) ? 1 : 0;
    return !IsRow();
  }
  bool IsRow() const { return numbers_ >= kFewestNumbers; }

 private:
  static constexpr int kFewestNumbers = 2;
  bool isFirst_ = true;
  int numbers_ = 0;
};

// Words end at blanks and commas.
bool IsRow(std::string_view line) {
  const auto isBetween = [](char c) { return c == ' ' || c == '\t' || c == ','; };
  RowTest test;
  for (std::size_t at = 0; at < line.size();) {
    const std::size_t begin = at;
    while (at < line.size() && !isBetween(line[at])) ++at;
    const std::string_view word = line.substr(begin, at - begin);
    while (at < line.size() && isBetween(line[at])) ++at;
    // A line may begin with blanks.
    if (!word.empty() && !test.Take({word})) break;
  }
  return test.IsRow();
}

// The same of a line whose words are at hand.
bool IsRow(std::span<const RowWord> words) {
  RowTest test;
  for (const RowWord& word : words) {
    if (!test.Take(word)) break;
  }
  return test.IsRow();
}

void TakeFields(std::string_view line, char separator, std::vector<RowWord>& fields) {
  if (separator == ' ') return TakeWords(line, fields);
  fields.clear();
  for (const std::string_view field : SplitFields(line, separator)) fields.push_back({field});
}

bool IsUseful(const std::vector<QuantityColumn>& plan) {
  return Holds(plan, Quantity::Press) && plan.size() >= 2;
}

}  // namespace

std::vector<std::string_view> TableLayout::Fields(std::string_view line) const {
  return Separator == ' ' ? Tokens(line) : SplitFields(line, Separator);
}

std::optional<TableLayout> LayoutAt(const SourceText& source, int line) {
  std::string_view heading = Trim(source.Line(line));
  if (heading.starts_with('#')) heading = Trim(heading.substr(1));
  if (heading.empty() || IsRow(heading)) return std::nullopt;
  int first = line + 1;
  while (first <= source.LineCount() && first <= line + 1 + kMostLinesBetween &&
         !IsRow(source.Line(first))) {
    ++first;
  }
  if (first > source.LineCount() || !IsRow(source.Line(first))) return std::nullopt;

  const bool hasCommas = heading.find(',') != std::string_view::npos;
  TableLayout layout{.Separator = hasCommas ? ',' : ' ', .NamesLine = line, .FirstRow = first};
  layout.Columns = layout.Fields(source.Line(first)).size();
  using Split = std::vector<std::string_view> (*)(std::string_view);
  static constexpr Split kByComma = [](std::string_view text) { return SplitFields(text, ','); };
  static constexpr Split kByTab = [](std::string_view text) { return SplitFields(text, '\t'); };
  static constexpr Split kSplits[] = {kByTab,      SplitAfterBrackets, SplitBeforeBrackets,
                                      SplitAtGaps, SplitByNames,       Tokens};
  const std::span<const Split> splits =
      hasCommas ? std::span<const Split>(&kByComma, 1) : std::span<const Split>(kSplits);
  for (const Split split : splits) {
    const std::vector<std::string_view> names = split(heading);
    if (names.size() != layout.Columns) continue;
    std::vector<std::string_view> units;
    if (first > line + 1) units = split(Trim(source.Line(line + 1)));
    if (units.size() != names.size()) units.clear();
    layout.Plan = PlanColumns(names, units);
    if (!IsUseful(layout.Plan)) continue;
    layout.Names = names;
    return layout;
  }
  return std::nullopt;
}

std::optional<TableLayout> FindLayout(const SourceText& source, int lastLine) {
  for (int line = 1; line <= std::min(source.LineCount(), lastLine); ++line) {
    if (std::optional<TableLayout> layout = LayoutAt(source, line)) return layout;
  }
  return std::nullopt;
}

std::optional<Fault> ReadTable(const SourceText& source, const TableLayout& layout, int end,
                               std::string_view procedure, SourceSounding& into) {
  into.Levels.reserve(into.Levels.size() +
                      static_cast<std::size_t>(std::max(0, end - layout.FirstRow)));
  std::vector<RowWord> fields;
  for (int line = layout.FirstRow; line < end; ++line) {
    const std::string_view text = source.Line(line);
    TakeFields(text, layout.Separator, fields);
    const bool areWords = layout.Separator == ' ' && text.find(',') == std::string_view::npos;
    if (!(areWords ? IsRow(fields) : IsRow(text))) {
      if (Trim(text).empty()) continue;
      break;
    }
    if (MayBeCutOff(source, line) && fields.size() < layout.Columns) {
      into.Notes.push_back("The last row is cut off and was left out.");
      break;
    }
    SourceLevel level;
    const std::span<const RowWord> words = fields;
    if (const std::optional<std::string> bad = ReadRow(words, layout.Plan, into.Refused, level)) {
      return Fault{kFaultEndOfFile, std::string(procedure),
                   AtLine(source, line, '"' + *bad + "\" is not a number")};
    }
    into.Levels.push_back(level);
  }
  return std::nullopt;
}

void LocateByColumns(const SourceText& source, const TableLayout& layout, SourceHeading& heading) {
  if (heading.Lat && heading.Lon) return;
  const auto column = [&layout](std::string_view name) {
    return static_cast<std::size_t>(std::ranges::find_if(layout.Names,
                                                         [name](std::string_view given) {
                                                           return StartsWithNoCase(given, name);
                                                         }) -
                                    layout.Names.begin());
  };
  const std::size_t lat = column("lat"), lon = column("lon");
  if (std::max(lat, lon) >= layout.Names.size()) return;
  const auto degrees = [&layout](std::string_view field, std::size_t at, double most, char behind) {
    std::optional<double> value = ParseNumber(field);
    if (!value || *value < -most || *value > most) return std::optional<double>();
    if (layout.Names[at].find(std::string("(") + behind + ')') != std::string_view::npos) {
      value = -*value;
    }
    return value;
  };
  for (int line = layout.FirstRow; line <= source.LineCount() && IsRow(source.Line(line)); ++line) {
    const std::vector<std::string_view> fields = layout.Fields(source.Line(line));
    if (std::max(lat, lon) >= fields.size()) continue;
    const std::optional<double> north = degrees(fields[lat], lat, 90, 'S');
    const std::optional<double> east = degrees(fields[lon], lon, 180, 'W');
    if (!north || !east) continue;
    heading.Lat = north;
    heading.Lon = east;
    return;
  }
}

std::optional<double> DegreesIn(std::string_view text) {
  const std::size_t begin = text.find_first_of("0123456789-");
  if (begin == std::string_view::npos) return std::nullopt;
  const std::size_t end = std::min(text.find_first_not_of("0123456789.-", begin), text.size());
  std::optional<double> degrees = ParseNumber(text.substr(begin, end - begin));
  const bool isNegative = text.find_first_of("SW", end) != std::string_view::npos;
  if (degrees && isNegative) degrees = -*degrees;
  return degrees;
}

}  // namespace vexa::ingest
