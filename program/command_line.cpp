#include "program/command_line.h"

#include <algorithm>
#include <CLI/CLI.hpp>
#include <cstddef>
#include <memory>

#include "config/catalogue.h"
#include "core/letter_case.h"
#include "core/numbers.h"
#include "picture/image_settings.h"

namespace vexa {
namespace {

Fault Wrong(std::string reason) {
  return {kFaultInvalidValue, "ReadCommandLine", std::move(reason)};
}

// Letters to add, to drop or to exchange so that one word becomes the other.
std::size_t Distance(std::string_view from, std::string_view to) {
  std::vector<std::size_t> row(to.size() + 1);
  for (std::size_t i = 0; i < row.size(); ++i) row[i] = i;
  for (std::size_t i = 0; i < from.size(); ++i) {
    std::size_t before = row[0]++;
    for (std::size_t k = 0; k < to.size(); ++k) {
      const std::size_t exchanged = before + (from[i] == to[k] ? 0 : 1);
      before = row[k + 1];
      row[k + 1] = std::min({row[k] + 1, row[k + 1] + 1, exchanged});
    }
  }
  return row.back();
}

// Writes the usage as the form has it; the library would list the options first and no files.
class HelpFormat : public CLI::Formatter {
 public:
  explicit HelpFormat(const CommandForm& form) : form_(form) { column_width(kHelpColumn); }

  std::string make_usage(const CLI::App*, std::string name) const override {
    return "\nUsage: " + name + " " + std::string(form_.Usage) + "\n";
  }

 private:
  static constexpr std::size_t kHelpColumn = 34;
  const CommandForm& form_;
};

std::string NamesOf(const ArgumentRow& row) {
  return row.Short.empty() ? std::string(row.Name)
                           : std::string(row.Short) + "," + std::string(row.Name);
}

void AddOption(CLI::App& app, const ArgumentRow& row) {
  if (row.Value.empty()) {
    app.add_flag(NamesOf(row))->description(std::string(row.Help))->disable_flag_override();
    return;
  }
  CLI::Option* option = app.add_option(NamesOf(row))->description(std::string(row.Help));
  option->type_name(std::string(row.Value));
  option->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  if (!row.Words.empty()) {
    option->transform(CLI::IsMember(std::vector<std::string>(row.Words.begin(), row.Words.end()),
                                    CLI::ignore_case));
  }
  if (row.Most != 0) {
    option->check(CLI::Range(row.Least, row.Most)
                      .description(Shortest(row.Least) + " to " + Shortest(row.Most)));
  }
}

void Prepare(CLI::App& app, const CommandForm& form, const std::string& version) {
  app.set_help_flag("-h,--help", "this text");
  app.set_version_flag("--version", version, "the program's version");
  app.allow_windows_style_options(false);
  app.allow_extras();  // files, and what is unknown
  app.formatter(std::make_shared<HelpFormat>(form));
  app.footer(std::string(form.Footer));
  for (const ArgumentRow& row : form.Options) AddOption(app, row);
}

// The words ahead of "--", the last first, as the library takes them. An empty value behind an
// equals sign becomes a word, or the next word would be taken for the value.
std::vector<std::string> ForLibrary(std::span<const std::string> words) {
  std::vector<std::string> reversed;
  for (const std::string& word : words) {
    const bool endsEmpty = word.starts_with("--") && word.find('=') == word.size() - 1;
    reversed.push_back(endsEmpty ? word.substr(0, word.size() - 1) : word);
    if (endsEmpty) reversed.emplace_back();
  }
  std::ranges::reverse(reversed);
  return reversed;
}

Fault UnknownOption(const std::string& word, const CommandForm& form) {
  std::vector<std::string_view> names = {"--help", "--version"};
  for (const ArgumentRow& row : form.Options) names.push_back(row.Name);
  const std::string name = word.substr(0, word.find('='));
  return Wrong("unknown option " + name + DidYouMean(name, names));
}

// The help of the program, or of the command that was given.
std::string HelpOf(const CLI::App& app) {
  const std::string text = app.help();
  return text.substr(0, text.find_last_not_of('\n') + 1) + "\n";
}

// What stands where a command was expected; nothing where the command stands there itself.
std::optional<Fault> WrongCommand(const std::vector<std::string>& strange, bool hasCommand,
                                  std::span<const CommandForm* const> commands) {
  if (strange.empty()) {
    return hasCommand ? std::nullopt : std::optional(Wrong("no command is given"));
  }
  std::vector<std::string_view> names;
  for (const CommandForm* form : commands) names.push_back(form->Name);
  return Wrong("there is no command \"" + strange.front() + "\"" +
               DidYouMean(strange.front(), names));
}

// The library takes any word for a value. One that is an option's name is there because the value
// was forgotten, and a file would be called after it.
std::optional<Fault> OptionForValue(std::span<const std::string> words, const CommandForm& form) {
  const auto rowOf = [&form](std::string_view word) {
    return std::ranges::find_if(form.Options, [word](const ArgumentRow& row) {
      return word == row.Name || (!row.Short.empty() && word == row.Short);
    });
  };
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    const auto row = rowOf(words[i]);
    if (row == form.Options.end() || row->Value.empty()) continue;
    const std::string& value = words[++i];
    if (rowOf(std::string_view(value).substr(0, value.find('='))) == form.Options.end()) continue;
    return Wrong(words[i - 1] + " wants " + std::string(row->Value) + ", and " + value +
                 " is an option; " + std::string(row->Name) + "=" + value +
                 " takes it all the same");
  }
  return std::nullopt;
}

// Options and files as the library has sorted them, and the files behind "--".
std::optional<Fault> TakeArguments(const CLI::App& app, std::span<const std::string> moreFiles,
                                   CommandLine& read) {
  const CommandForm& form = *read.Command;
  Arguments& given = read.Given;
  for (const ArgumentRow& row : form.Options) {
    const CLI::Option* option = app.get_option(std::string(row.Name));
    if (row.Value.empty()) {
      if (option->count() > 0) given.Options.emplace_back(row.Name, "");
      continue;
    }
    for (const std::string& value : option->results()) given.Options.emplace_back(row.Name, value);
  }
  given.Files = app.remaining();
  for (const std::string& word : given.Files) {
    if (word.size() > 1 && word.front() == '-') return UnknownOption(word, form);
  }
  if (!moreFiles.empty()) {
    given.Files.insert(given.Files.end(), moreFiles.begin() + 1, moreFiles.end());
  }
  const std::size_t count = given.Files.size();
  if (count < form.LeastFiles) return Wrong("no FILE is given");
  if (count <= form.MostFiles) return std::nullopt;
  return Wrong(form.MostFiles == 0 ? "it takes no FILE" : "one FILE at a time");
}

}  // namespace

bool Arguments::Has(std::string_view name) const {
  return Value(name).has_value();
}

std::optional<std::string> Arguments::Value(std::string_view name) const {
  std::optional<std::string> last;
  for (const auto& [row, value] : Options) {
    if (row == name) last = value;
  }
  return last;
}

std::vector<std::string> Arguments::Values(std::string_view name) const {
  std::vector<std::string> values;
  for (const auto& [row, value] : Options) {
    if (row == name) values.push_back(value);
  }
  return values;
}

std::optional<int> Arguments::Whole(std::string_view name) const {
  const std::optional<std::string> text = Value(name);
  return text ? ParseWhole(*text) : std::nullopt;
}

CommandLine ReadCommandLine(std::span<const std::string> words, const CommandForm& program,
                            std::span<const CommandForm* const> commands) {
  const std::string version = std::string(program.Name) + " " + std::string(ProgramVersion());
  CLI::App app(std::string(program.Summary), std::string(program.Name));
  Prepare(app, program, version);
  app.require_subcommand(0, 1);  // behind the first one a file may be called as a command is
  for (const CommandForm* form : commands) {
    CLI::App* command = app.add_subcommand(std::string(form->Name), std::string(form->Summary));
    Prepare(*command->group("Commands"), *form, version);
  }
  const auto endOfOptions = std::ranges::find(words, "--");
  CommandLine read{.Command = &program};
  try {
    app.parse(ForLibrary({words.begin(), endOfOptions}));
  } catch (const CLI::CallForHelp&) {
    read.Answer = HelpOf(app);
  } catch (const CLI::CallForVersion& asked) {
    read.Answer = std::string(asked.what()) + "\n";
  } catch (const CLI::Error& wrong) {
    read.Wrong = Wrong(wrong.what());
  }
  const CLI::App* chosen = &app;
  if (const std::vector<CLI::App*> parsed = app.get_subcommands(); !parsed.empty()) {
    chosen = parsed.front();
    read.Command = *std::ranges::find(commands, chosen->get_name(), &CommandForm::Name);
  }
  if (read.Wrong && chosen->get_help_ptr()->count() > 0) {
    read.Wrong.reset();
    read.Answer = HelpOf(app);
  }
  if (read.Wrong || !read.Answer.empty()) return read;
  if (!commands.empty()) read.Wrong = WrongCommand(app.remaining(), chosen != &app, commands);
  if (!read.Wrong) read.Wrong = OptionForValue({words.begin(), endOfOptions}, *read.Command);
  if (!read.Wrong) read.Wrong = TakeArguments(*chosen, {endOfOptions, words.end()}, read);
  return read;
}

std::string DidYouMean(std::string_view given, std::span<const std::string_view> names) {
  std::string_view nearest;
  std::size_t least = std::max<std::size_t>(1, (given.size() + 1) / 3) + 1;
  for (const std::string_view name : names) {
    const std::size_t distance = Distance(Lower(given), Lower(name));
    if (distance >= least) continue;
    least = distance;
    nearest = name;
  }
  return nearest.empty() ? std::string() : "; did you mean " + std::string(nearest) + "?";
}

std::string Joined(std::span<const std::string_view> names) {
  std::string text;
  for (const std::string_view name : names) text += (text.empty() ? "" : ", ") + std::string(name);
  return text;
}

Outcome<PixelSize> ParseSize(std::string_view text) {
  const std::size_t cross = text.find_first_of("xX");
  if (cross != std::string_view::npos) {
    const std::optional<int> width = ParseWhole(text.substr(0, cross));
    const std::optional<int> height = ParseWhole(text.substr(cross + 1));
    const auto fits = [](const std::optional<int>& pixels) {
      return pixels && *pixels >= kLeastImagePx && *pixels <= kMostImagePx;
    };
    if (fits(width) && fits(height)) return PixelSize{*width, *height};
  }
  return Wrong("a size is WIDTHxHEIGHT in pixels from " + Shortest(kLeastImagePx) + " to " +
               Shortest(kMostImagePx) + ", not \"" + std::string(text) + "\"");
}

std::optional<Fault> SetOptions(Options& options, const std::vector<std::string>& assignments) {
  for (const std::string& assignment : assignments) {
    if (std::optional<Fault> fault = SetOption(options, assignment)) return fault;
  }
  return CheckOptions(options);
}

std::string_view ProgramVersion() {
  return VEXA_VERSION;
}

}  // namespace vexa
