#include "ingest/coded_report.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/numbers.h"
#include "ingest/coded_groups.h"

namespace vexa::ingest {
namespace {

constexpr std::size_t kMostOfHeader = 6;  // groups ahead of the levels

struct Token {
  std::string Text{};
  int Line = 0;
  bool EndsLine = false, StartsLine = false, EndsReport = false;
};

bool AllOf(std::string_view text, char from, char to) {
  return std::ranges::all_of(text, [=](char c) { return c >= from && c <= to; });
}

// Words of a line; control characters divide them like blanks.
std::vector<std::string_view> Words(std::string_view line) {
  std::vector<std::string_view> words;
  std::size_t at = 0;
  while (at < line.size()) {
    while (at < line.size() && static_cast<unsigned char>(line[at]) <= ' ') ++at;
    const std::size_t begin = at;
    while (at < line.size() && static_cast<unsigned char>(line[at]) > ' ') ++at;
    if (at > begin) words.push_back(line.substr(begin, at - begin));
  }
  return words;
}

// "USUS50 KWBC 130000 RRA"
bool IsBulletinHeading(const std::vector<std::string_view>& words) {
  return words.size() >= 3 && words.size() <= 4 && words[0].size() == 6 &&
         AllOf(words[0].substr(0, 4), 'A', 'Z') && AllOf(words[0].substr(4), '0', '9') &&
         words[1].size() == 4 && words[2].size() == 6 && AllOf(words[2], '0', '9');
}

int CorrectionIn(std::string_view word) {
  if (word == "COR") return 1;
  const bool isCc = word.size() == 3 && word.starts_with("CC") && AllOf(word, 'A', 'Z');
  return isCc ? word[2] - 'A' + 1 : 0;
}

// Relays break lines inside a group.
void JoinBrokenGroups(std::vector<Token>& tokens) {
  constexpr std::size_t kGroup = 5;
  const auto isPiece = [](const Token& token) {
    return token.Text.find_first_not_of("0123456789/") == std::string::npos;
  };
  for (std::size_t i = 0; i + 1 < tokens.size(); ++i) {
    Token& left = tokens[i];
    const Token& right = tokens[i + 1];
    if (!left.EndsLine || left.EndsReport || !right.StartsLine || !isPiece(left) ||
        !isPiece(right) || left.Text.size() + right.Text.size() != kGroup) {
      continue;
    }
    left.Text += right.Text;
    left.EndsLine = right.EndsLine;
    left.EndsReport = right.EndsReport;
    tokens.erase(tokens.begin() + static_cast<std::ptrdiff_t>(i) + 1);
  }
}

std::vector<Token> TokensOf(std::string_view text, int line) {
  std::vector<Token> tokens;
  for (const std::string_view word : Words(text)) {
    std::size_t begin = 0;
    while (begin < word.size()) {
      const std::size_t end = std::min(word.find_first_of("=;", begin), word.size());
      if (end > begin) {
        tokens.push_back({.Text = std::string(word.substr(begin, end - begin)), .Line = line});
      }
      if (end < word.size()) {
        if (tokens.empty()) tokens.push_back({.Line = line});
        tokens.back().EndsReport = true;
      }
      begin = end + 1;
    }
  }
  if (!tokens.empty()) {
    tokens.front().StartsLine = true;
    tokens.back().EndsLine = true;
  }
  return tokens;
}

// "99153 70659 04355": latitude, quadrant with longitude, Marsden square and units digits.
bool ReadPosition(const std::vector<Token>& tokens, std::size_t at, CodedReport& report) {
  if (at + 2 >= tokens.size()) return false;
  const std::optional<int> mark = Figures(tokens[at].Text, 0, 2);
  const std::optional<int> lat = Figures(tokens[at].Text, 2, 3);
  const std::optional<int> quadrant = Figures(tokens[at + 1].Text, 0, 1);
  const std::optional<int> lon = Figures(tokens[at + 1].Text, 1, 4);
  if (mark != 99 || !lat || !quadrant || !lon || !IsGroup(tokens[at + 2].Text)) return false;
  const bool isSouth = quadrant == 3 || quadrant == 5, isWest = quadrant == 5 || quadrant == 7;
  if ((!isSouth && quadrant != 1 && quadrant != 7) || *lat > 900 || *lon > 1800) return false;
  report.Lat = (isSouth ? -*lat : *lat) / 10.0;
  report.Lon = (isWest ? -*lon : *lon) / 10.0;
  const std::optional<int> units = Figures(tokens[at + 2].Text, 3, 2);
  if (units && *units != (*lat / 10) % 10 * 10 + (*lon / 10) % 10) {
    report.Notes.push_back("the position and its check group " + tokens[at + 2].Text + " differ");
  }
  return true;
}

bool ReadDayAndHour(std::string_view group, CodedReport& report) {
  if (!IsGroup(group)) return false;
  const std::optional<int> day = Figures(group, 0, 2), hour = Figures(group, 2, 2);
  if (!day || !hour) return false;
  constexpr int kKnots = 50;  // added to the day when the winds are in knots
  report.InKnots = *day > kKnots;
  report.Day = report.InKnots ? *day - kKnots : *day;
  report.Hour = *hour;
  report.WindTop = group[4];
  return report.Day >= 1 && report.Day <= 31 && report.Hour <= 23;
}

// Where the header's tokens end; 0 when they are not readable.
std::size_t ReadHeader(const std::vector<Token>& tokens, CodedReport& report) {
  std::size_t at = 0;
  if (at < tokens.size() && CorrectionIn(tokens[at].Text) > 0) {
    report.Correction = std::max(report.Correction, CorrectionIn(tokens[at++].Text));
  }
  const char kind = report.Part[0];
  const bool moves = kind == 'U' || kind == 'Q' || kind == 'I' || kind == 'E';
  if (moves && at < tokens.size()) report.Station = tokens[at++].Text;
  if (at >= tokens.size()) return 0;
  if (!ReadDayAndHour(tokens[at++].Text, report)) return 0;
  if (kind == 'T' || kind == 'P') {
    if (at >= tokens.size()) return 0;
    const std::string& station = tokens[at].Text;
    report.WmoNumber = station.size() == 5 ? Figures(station, 0, 5).value_or(0) : 0;
    report.Station = station;
    return report.WmoNumber == 0 ? 0 : at + 1;
  }
  if (!ReadPosition(tokens, at, report)) return 0;
  at += 3;
  if (kind == 'X') report.Station = "drop " + Shortest(*report.Lat) + ' ' + Shortest(*report.Lon);
  if ((kind == 'I' || kind == 'E') && at < tokens.size()) {
    constexpr double kFoot = 0.3048;
    const std::optional<int> height = Figures(tokens[at].Text, 0, 4);
    const std::optional<int> unit = Figures(tokens[at].Text, 4, 1);
    if (height && unit) report.Elevation = *unit >= 5 ? *height * kFoot : *height;
    ++at;
  }
  return at;
}

// Gathers tokens of one report at a time.
class Splitter {
 public:
  explicit Splitter(std::vector<std::string>& notes) : notes_(notes) {}

  void Add(const Token& token, bool isFirst, std::string_view next) {
    if (IsPartName(token.Text) && !next.empty()) {
      // Some bulletins have the station number ahead of the part as well.
      if (isOpen_ && !tokens_.empty() && !isFirst && tokens_.back().Line == token.Line &&
          tokens_.back().StartsLine && Figures(tokens_.back().Text, 0, 5)) {
        tokens_.pop_back();
      }
      Close();
      isOpen_ = true;
      report_ = CodedReport{.Part = token.Text, .Correction = correction_, .Line = token.Line};
    } else if (isOpen_ && !token.Text.empty()) {
      tokens_.push_back(token);
    }
    if (token.EndsReport) Close();
  }

  void Heading(int correction) {
    Close();
    correction_ = correction;
  }

  void Close() {
    if (!isOpen_) return;
    isOpen_ = false;
    JoinBrokenGroups(tokens_);
    const std::size_t begin = ReadHeader(tokens_, report_);
    const auto nil = std::ranges::find(tokens_, "NIL", &Token::Text);
    const auto header = static_cast<std::ptrdiff_t>(begin == 0 ? kMostOfHeader : begin);
    report_.IsNil = nil != tokens_.end() && nil - tokens_.begin() <= header;
    if (report_.IsNil) {
      // "TTAA 69990 NIL", "UUAA SHIP NIL" and the like: whatever stands there is the station.
      if (begin == 0) report_.Station = nil == tokens_.begin() ? "" : (nil - 1)->Text;
      Reports.push_back(std::move(report_));
    } else if (begin == 0) {
      notes_.push_back("The header of " + report_.Part + " in line " + Shortest(report_.Line) +
                       " is not readable; the report was left out.");
    } else {
      for (std::size_t i = begin; i < tokens_.size(); ++i) {
        report_.Groups.push_back(std::move(tokens_[i].Text));
      }
      Reports.push_back(std::move(report_));
    }
    tokens_.clear();
  }

  std::vector<CodedReport> Reports{};

 private:
  std::vector<std::string>& notes_;
  CodedReport report_{};
  std::vector<Token> tokens_{};
  int correction_ = 0;
  bool isOpen_ = false;
};

}  // namespace

bool IsPartName(std::string_view token) {
  constexpr std::string_view kKinds = "TUIXPQE";
  return token.size() == 4 && token[0] == token[1] && token[2] == token[3] &&
         kKinds.find(token[0]) != std::string_view::npos && token[2] >= 'A' && token[2] <= 'D';
}

std::vector<CodedReport> SplitReports(const SourceText& source, std::vector<std::string>& notes) {
  Splitter splitter(notes);
  for (int line = 1; line <= source.LineCount(); ++line) {
    const std::string_view text = source.Line(line);
    const std::vector<std::string_view> words = Words(text);
    if (IsBulletinHeading(words)) {
      splitter.Heading(words.size() == 4 ? CorrectionIn(words[3]) : 0);
      continue;
    }
    const std::vector<Token> tokens = TokensOf(text, line);
    for (std::size_t i = 0; i < tokens.size(); ++i) {
      // A part's name stands alone on a line only when the header follows on the next.
      const std::string_view next =
          i + 1 < tokens.size() ? std::string_view(tokens[i + 1].Text) : "next line";
      splitter.Add(tokens[i], i == 0, next);
    }
  }
  splitter.Close();
  return std::move(splitter.Reports);
}

std::vector<CodedReport> LatestReports(std::vector<CodedReport> reports) {
  std::erase_if(reports,
                [](const CodedReport& report) { return report.IsNil || report.Groups.empty(); });
  std::vector<CodedReport> kept;
  for (CodedReport& report : reports) {
    const auto earlier = std::ranges::find_if(kept, [&](const CodedReport& other) {
      return other.Part == report.Part && other.Station == report.Station &&
             other.Day == report.Day && other.Hour == report.Hour;
    });
    if (earlier == kept.end()) {
      kept.push_back(std::move(report));
      continue;
    }
    const bool replaces = std::pair(report.Correction, report.Groups.size()) >=
                          std::pair(earlier->Correction, earlier->Groups.size());
    const bool isCorrected = report.Correction != earlier->Correction;
    if (replaces) *earlier = std::move(report);
    const std::string note = "was corrected; the correction was taken";
    if (isCorrected && std::ranges::find(earlier->Notes, note) == earlier->Notes.end()) {
      earlier->Notes.push_back(note);
    }
  }
  return kept;
}

}  // namespace vexa::ingest
