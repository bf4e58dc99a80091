#include "archive/query.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "core/letter_case.h"
#include "core/numbers.h"

namespace vexa::archive {
namespace {

enum class TokenKind { End, Word, Quoted, Text, Number, Sign };

struct Token {
  TokenKind Kind = TokenKind::End;
  std::string Text{};
  std::size_t At = 0;  // character, from 1
};

// What is wrong with an expression, on its way out of the reader.
struct Refusal {
  std::size_t At;
  std::string Reason;
};

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

class Tokens {
 public:
  explicit Tokens(std::string_view text) : text_(text) { Advance(); }
  const Token& Now() const { return now_; }
  Token Take() {
    Token taken = std::move(now_);
    Advance();
    return taken;
  }
  bool TakeSign(std::string_view sign) { return TakeIf(TokenKind::Sign, sign); }
  bool TakeWord(std::string_view word) { return TakeIf(TokenKind::Word, word); }

 private:
  bool TakeIf(TokenKind kind, std::string_view text) {
    if (now_.Kind != kind || !SameText(now_.Text, text)) return false;
    Advance();
    return true;
  }

  void Advance() {
    while (at_ < text_.size() && Trim(text_.substr(at_, 1)).empty()) ++at_;
    now_ = {.At = at_ + 1};
    if (at_ == text_.size()) return;
    const char first = text_[at_];
    if (first == '"' || first == '\'') return TakeQuoted(first);
    const char next = at_ + 1 < text_.size() ? text_[at_ + 1] : ' ';
    const bool isNumber = IsDigit(first) || (first == '.' && IsDigit(next)) ||
                          ((first == '-' || first == '+') && (IsDigit(next) || next == '.'));
    if (isNumber) return TakeNumber();
    if (IsLetter(first)) {
      now_.Kind = TokenKind::Word;
      while (at_ < text_.size() && (IsLetter(text_[at_]) || IsDigit(text_[at_]))) {
        now_.Text += text_[at_++];
      }
      return;
    }
    now_.Kind = TokenKind::Sign;
    for (const std::string_view sign :
         {"<=", ">=", "!=", "<>", "==", "<", ">", "=", "(", ")", ","}) {
      if (!text_.substr(at_).starts_with(sign)) continue;
      now_.Text = sign;
      at_ += sign.size();
      return;
    }
    throw Refusal{at_ + 1, "\"" + std::string(1, first) + "\" has no meaning here"};
  }

  // A mark that stands twice inside is one of the text.
  void TakeQuoted(char mark) {
    now_.Kind = mark == '"' ? TokenKind::Quoted : TokenKind::Text;
    for (++at_; at_ < text_.size(); ++at_) {
      if (text_[at_] == mark) {
        if (at_ + 1 == text_.size() || text_[at_ + 1] != mark) {
          ++at_;
          return;
        }
        ++at_;
      }
      now_.Text += text_[at_];
    }
    throw Refusal{now_.At, std::string("the quotation mark ") + mark + " has no second one"};
  }

  void TakeNumber() {
    now_.Kind = TokenKind::Number;
    const std::size_t begin = at_++;
    while (at_ < text_.size()) {
      const char c = text_[at_];
      const char before = Lower(text_[at_ - 1]);
      const bool isSignOfExponent = (c == '-' || c == '+') && before == 'e';
      if (!IsDigit(c) && c != '.' && !IsLetter(c) && !isSignOfExponent) break;
      ++at_;
    }
    now_.Text = text_.substr(begin, at_ - begin);
    if (!ParseNumber(now_.Text)) throw Refusal{begin + 1, "\"" + now_.Text + "\" is not a number"};
  }

  std::string_view text_;
  std::size_t at_ = 0;
  Token now_{};
};

// A side of a comparison.
struct Operand {
  const Column* Of = nullptr;  // null: the value
  Cell Value{};
  std::size_t At = 0;
  std::string Text{};
};

bool IsText(const Operand& operand) {
  return operand.Of != nullptr ? operand.Of->Kind == ColumnKind::Text
                               : std::holds_alternative<std::string>(operand.Value);
}

// Stands for a column until the catalogue is known: a sign that no statement has.
std::string Placeholder(const Column& column) {
  return "\x01" + std::to_string(&column - Columns().data()) + "\x02";
}

class ConditionReader {
 public:
  explicit ConditionReader(std::string_view text) : tokens_(text) {}

  Condition Read() {
    Condition condition;
    if (tokens_.Now().Kind == TokenKind::End) return condition;
    condition.Sql = AnyOf(0);
    if (tokens_.Now().Kind != TokenKind::End) Fail("\"and\", \"or\" or the end is expected");
    condition.Values = std::move(values_);
    condition.Columns = std::move(columns_);
    return condition;
  }

 private:
  [[noreturn]] void Fail(const std::string& reason) {
    const Token& now = tokens_.Now();
    throw Refusal{now.At,
                  reason + (now.Kind == TokenKind::End ? "" : " before \"" + now.Text + "\"")};
  }

  std::string AnyOf(int depth) {
    constexpr int kDeepest = 100;
    if (depth > kDeepest) Fail("there are too many parentheses in one another");
    std::string sql = AllOf(depth);
    while (tokens_.TakeWord("or")) sql += " OR " + AllOf(depth);
    return sql;
  }

  std::string AllOf(int depth) {
    std::string sql = Term(depth);
    while (tokens_.TakeWord("and")) sql += " AND " + Term(depth);
    return sql;
  }

  std::string Term(int depth) {
    constexpr std::size_t kMostTerms = 500;
    if (++terms_ > kMostTerms) Fail("the condition is too long");
    if (tokens_.TakeWord("not")) return "NOT (" + Term(depth) + ")";
    if (tokens_.TakeSign("(")) {
      std::string sql = "(" + AnyOf(depth + 1) + ")";
      if (!tokens_.TakeSign(")")) Fail("\")\" is expected");
      return sql;
    }
    return Comparison();
  }

  std::string Comparison() {
    const Operand first = TakeOperand(nullptr);
    if (first.Of != nullptr) {
      if (tokens_.TakeWord("is")) return Missing(first);
      if (tokens_.TakeWord("in")) return OneOf(first);
      if (tokens_.TakeWord("has")) return Part(first);
    }
    const std::optional<std::string> sign = TakeComparison();
    if (!sign) Fail("a comparison (= != < <= > >=, in, is, has) is expected");
    const Operand second = TakeOperand(&first);
    std::string sql = "(" + Compare(first, *sign, second);
    if (const std::optional<std::string> next = TakeComparison()) {  // 3 <= month <= 5
      const Operand third = TakeOperand(&second);
      sql += " AND " + Compare(second, *next, third);
    }
    return sql + ")";
  }

  std::optional<std::string> TakeComparison() {
    if (tokens_.TakeSign("==")) return "=";
    if (tokens_.TakeSign("!=")) return "<>";
    for (const char* sign : {"=", "<>", "<", "<=", ">", ">="}) {
      if (tokens_.TakeSign(sign)) return sign;
    }
    return std::nullopt;
  }

  // beside  the other side, of which a text between double marks is a value
  Operand TakeOperand(const Operand* beside) {
    Token token = tokens_.Take();
    Operand operand{.At = token.At, .Text = token.Text};
    switch (token.Kind) {
      case TokenKind::Number:
        operand.Value = *ParseNumber(token.Text);
        return operand;
      case TokenKind::Text:
        operand.Value = std::move(token.Text);
        return operand;
      case TokenKind::Word:
      case TokenKind::Quoted:
        operand.Of = FindColumn(Trim(token.Text));
        if (operand.Of != nullptr) {
          if (std::ranges::find(columns_, operand.Of) == columns_.end()) {
            columns_.push_back(operand.Of);
          }
          return operand;
        }
        if (token.Kind == TokenKind::Quoted && beside != nullptr && IsText(*beside)) {
          operand.Value = std::move(token.Text);
          return operand;
        }
        throw Refusal{token.At, "there is no column \"" + token.Text + "\""};
      case TokenKind::End:
        throw Refusal{token.At, "a column, a number or a text is expected"};
      case TokenKind::Sign:
        break;
    }
    throw Refusal{token.At,
                  "a column, a number or a text is expected before \"" + token.Text + "\""};
  }

  std::string Sql(const Operand& operand) {
    if (operand.Of != nullptr) return Placeholder(*operand.Of);
    values_.push_back(operand.Value);
    return "?";
  }

  std::string Compare(const Operand& a, const std::string& sign, const Operand& b) {
    if (IsText(a) != IsText(b)) {
      throw Refusal{b.At, "\"" + a.Text + "\" and \"" + b.Text +
                              "\" cannot be compared: one is a number, the other a text"};
    }
    std::string sql = Sql(a) + " " + sign + " ";
    return sql + Sql(b);
  }

  std::string Missing(const Operand& of) {
    const bool isNot = tokens_.TakeWord("not");
    if (!tokens_.TakeWord("missing")) Fail("\"missing\" is expected");
    return "(" + Placeholder(*of.Of) + (isNot ? " IS NOT NULL)" : " IS NULL)");
  }

  std::string OneOf(const Operand& of) {
    if (!tokens_.TakeSign("(")) Fail("\"(\" is expected");
    std::string sql;
    do {
      const Operand value = TakeOperand(&of);
      sql += (sql.empty() ? "(" : " OR ") + Compare(of, "=", value);
    } while (tokens_.TakeSign(","));
    if (!tokens_.TakeSign(")")) Fail("\")\" is expected");
    return sql + ")";
  }

  std::string Part(const Operand& of) {
    const Operand part = TakeOperand(&of);
    if (!IsText(of) || !IsText(part)) throw Refusal{part.At, "\"has\" is for texts"};
    std::string sql = "(instr(lower(" + Sql(of) + "), lower(";
    return sql + Sql(part) + ")) > 0)";
  }

  Tokens tokens_;
  std::vector<Cell> values_{};
  std::vector<const Column*> columns_{};
  std::size_t terms_ = 0;
};

}  // namespace

Outcome<Condition> ParseCondition(std::string_view text) {
  try {
    return ConditionReader(text).Read();
  } catch (const Refusal& refusal) {
    return Fault{kFaultInvalidValue, "ParseCondition",
                 "character " + std::to_string(refusal.At) + ": " + refusal.Reason};
  }
}

std::vector<const Column*> UsualColumns(const Condition& condition) {
  std::vector<const Column*> columns;
  for (const char* name : {"time", "station", "name", "verdict"}) {
    columns.push_back(FindColumn(name));
  }
  for (const Column* column : condition.Columns) {
    if (std::ranges::find(columns, column) == columns.end()) columns.push_back(column);
  }
  for (const char* name : {"file", "sounding"}) columns.push_back(FindColumn(name));
  return columns;
}

std::string SqlOf(const Catalogue& catalogue, const Column& column) {
  if (column.IsOfFile) return "f.path";
  return catalogue.Has(column) ? "s." + Quoted(column.Name) : "NULL";
}

std::string SqlOf(const Catalogue& catalogue, const Condition& condition) {
  std::string sql;
  const std::string& from = condition.Sql;
  for (std::size_t i = 0; i < from.size(); ++i) {
    if (from[i] != '\x01') {
      sql += from[i];
      continue;
    }
    const std::size_t end = from.find('\x02', i);
    const int column = ParseWhole(std::string_view(from).substr(i + 1, end - i - 1)).value_or(0);
    sql += SqlOf(catalogue, Columns()[static_cast<std::size_t>(column)]);
    i = end;
  }
  return sql;
}

std::optional<Fault> Ask(Catalogue& catalogue, const Question& question,
                         const std::function<bool(std::span<const Cell>)>& use) {
  return Stored([&] {
    std::string sql;
    for (const Column* column : question.Columns) {
      sql += (sql.empty() ? "SELECT " : ", ") + SqlOf(catalogue, *column);
    }
    if (sql.empty()) sql = "SELECT 1";
    sql += " FROM soundings s JOIN files f ON f.id = s.of WHERE " +
           SqlOf(catalogue, question.Where) + " ORDER BY ";
    if (question.SortBy != nullptr) {
      const std::string by = SqlOf(catalogue, *question.SortBy);
      sql += by + " IS NULL, " + by + (question.IsDescending ? " DESC, " : ", ");
    }
    // Those of one file come as they stand in it.
    const bool isByFile = question.SortBy != nullptr && question.SortBy->IsOfFile;
    sql += isByFile ? "s.sounding" : "s.station IS NULL, s.station, s.time, f.path, s.sounding";
    if (question.Most > 0) sql += " LIMIT " + std::to_string(question.Most);
    Statement select = catalogue.Store().Prepare(sql);
    int place = 1;
    for (const Cell& value : question.Where.Values) select.Bind(place++, value);
    std::vector<Cell> cells(question.Columns.size());
    while (select.Step()) {
      for (std::size_t i = 0; i < cells.size(); ++i) cells[i] = select.Value(static_cast<int>(i));
      if (!use(cells)) break;
    }
  });
}

}  // namespace vexa::archive
