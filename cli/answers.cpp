#include "cli/answers.h"

namespace vexa::cli {

Answers::Answers(const Arguments& arguments, std::string_view csvHeader, Console& console)
    : several_(arguments.Files.size() > 1), console_(console) {
  const std::string form = arguments.Value(kFormatOption.Name).value_or("text");
  form_ = form == "csv" ? Form::Csv : form == "json" ? Form::Json : Form::Text;
  if (form_ == Form::Csv) console_.Out(std::string(csvHeader) + "\n");
  if (form_ == Form::Json && several_) console_.Out("[");
}

void Answers::Add(const Answer& answer) {
  const bool isFirst = count_++ == 0;
  switch (form_) {
    case Form::Text:
      console_.Out((isFirst ? "" : "\n") + answer.Text());
      break;
    case Form::Json:
      console_.Out(several_ ? (isFirst ? "\n" : ",\n") + answer.Json() : answer.Json() + "\n");
      break;
    case Form::Csv:
      console_.Out(answer.Csv());
      break;
  }
}

void Answers::End() {
  if (form_ == Form::Json && several_) console_.Out("\n]\n");
}

std::string Lines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

std::string CsvField(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

}  // namespace vexa::cli
