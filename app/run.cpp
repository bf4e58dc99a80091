#include "app/run.h"

#include <cstdio>
#include <filesystem>
#include <optional>
#include <QApplication>
#include <QDialog>
#include <QPixmap>
#include <QScreen>
#include <QString>
#include <QStringList>
#include <QTabWidget>
#include <QTimer>
#include <string>
#include <string_view>
#include <vector>

#include "app/config_window.h"
#include "app/diagram_view.h"
#include "app/option_control.h"
#include "app/sounding_window.h"
#include "app/window_interaction.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/platform.h"
#include "program/command_line.h"
#include "program/program.h"
#include "program/session_commands.h"
#include "program/start_up.h"

namespace vexa {
namespace {

constexpr ArgumentRow kArguments[] = {
    {"--root", "", "DIR", "folder of the program's own files"},
    {"--size", "", "WxH", "size of the window in pixels"},
    {"--set", "", "\"KEY=VALUE\"", "set an option, may be repeated"},
    {"--screenshot", "", "OUT.png", "save a picture of the window and exit"},
    {"--show", "", "NAME", "open a form at start: Config, Diagram or System"},
    {"--tab", "", "NUMBER", "page of that form, from 1"},
    {"--help", "-h", "", "show this text"},
    {"--version", "", "", "show the version"},
};

constexpr int kLongestWaitMs = 20000;
constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

void Say(std::FILE* stream, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stream);
}

std::string HelpText() {
  return "Usage: vexa [OPTION]... [FILE]...\nShows soundings on a thermodynamic diagram.\n\n" +
         OptionHelp(kArguments);
}

int WrongUsage(const Fault& fault) {
  Say(stderr, "vexa: " + fault.Detail + "\nTry 'vexa --help'.\n");
  return kWrongUsage;
}

void TellKept(const WindowInteraction& interaction) {
  for (const Box& box : interaction.Kept()) Say(stderr, "vexa: " + box.Text + "\n");
}

// Waits for the picture to be on the window, then saves the window as an image. A window system
// that never shows the window ends the wait.
int TakeScreenshot(SoundingWindow& window, QWidget& shown, const std::string& name) {
  bool saved = false;
  const auto grab = [&] {
    saved = shown.grab().save(QString::fromStdString(name), "PNG");
    QApplication::exit();
  };
  // Not from within the paint event: the window is whole only after it.
  window.View().OnPainted([&] { QTimer::singleShot(0, &window, grab); });
  QTimer::singleShot(kLongestWaitMs, &window, [] { QApplication::exit(); });
  window.show();
  QApplication::exec();
  if (!saved) Say(stderr, "vexa: " + name + ": the picture cannot be saved\n");
  return saved ? 0 : kFailed;
}

}  // namespace

int RunWindow(int argc, char** argv) {
  // Help and version must come without a display, so the plain arguments are looked at first.
  for (int i = 1; i < argc; ++i) {
    const std::string_view word = argv[i];
    if (word == "--") break;
    if (word == "--help" || word == "-h") {
      Say(stdout, HelpText());
      return 0;
    }
    if (word == "--version") {
      Say(stdout, "vexa " + std::string(ProgramVersion()) + "\n");
      return 0;
    }
  }

  const QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("VEXA"));
  std::vector<std::string> words;
  const QStringList given = QApplication::arguments();
  for (qsizetype i = 1; i < given.size(); ++i) words.push_back(given[i].toStdString());

  Program program;
  const Outcome<Arguments> arguments = ParseArguments(words, kArguments);
  if (!arguments) return WrongUsage(arguments.Error());
  std::optional<PixelSize> size;
  if (const auto text = arguments.Value().Value("--size")) {
    const Outcome<PixelSize> parsed = ParseSize(*text);
    if (!parsed) return WrongUsage(parsed.Error());
    size = parsed.Value();
  }
  const FormRow* form = nullptr;
  if (const auto wanted = arguments.Value().Value("--show")) {
    form = FindForm(*wanted);
    if (form == nullptr) {
      return WrongUsage({kFaultInvalidValue, "RunWindow", "there is no form \"" + *wanted + '"'});
    }
  }
  const std::vector<std::string> assignments = arguments.Value().Values("--set");
  if (Options alone; const auto fault = SetOptions(alone, assignments)) return WrongUsage(*fault);
  const std::optional<std::string> screenshot = arguments.Value().Value("--screenshot");

  WindowInteraction interaction(program.Gate, screenshot ? WindowInteraction::Attendance::Unattended
                                                         : WindowInteraction::Attendance::Attended);
  program.Current.Ask = &interaction;
  SoundingWindow window(program, interaction);

  StartArguments start{arguments.Value().Value("--root"), ProgramFolder()};
  if (const QScreen* screen = QApplication::primaryScreen()) {
    start.ScreenWidth = screen->size().width();
    start.ScreenHeight = screen->size().height();
    program.Resolution = Shortest(start.ScreenWidth) + "x" + Shortest(start.ScreenHeight);
  }
  StartUp(program, start);
  if (const auto fault = SetOptions(program.Set, assignments)) return WrongUsage(*fault);
  program.Written = program.Settings;  // what is set for one run is not kept
  window.PlaceAsBefore();
  if (size) window.resize(size->Width, size->Height);
  std::vector<std::filesystem::path> paths;
  for (const std::string& file : arguments.Value().Files) paths.push_back(PathFromText(file));
  Changes changes = OfferSession(program);
  if (!changes.Sounding) {
    changes = paths.empty() ? LoadAtStart(program) : OpenSoundings(program, paths);
  }
  const bool opened = paths.empty() || changes.Sounding;
  changes.View = true;  // the grid is drawn without a sounding, too
  window.Show(changes);

  QWidget* shown = &window;
  if (form != nullptr) {
    window.ShowForm(*form);
    if (auto* dialog = window.findChild<QDialog*>(ToQString(form->Name))) shown = dialog;
    auto* tabs = shown->findChild<QTabWidget*>();
    const auto page = ParseWhole(arguments.Value().Value("--tab").value_or(""));
    if (tabs != nullptr && page) tabs->setCurrentIndex(*page - 1);
  }
  if (screenshot) {
    const int code = program.Plot ? TakeScreenshot(window, *shown, *screenshot) : kFailed;
    TellKept(interaction);
    return opened ? code : kFailed;
  }
  window.show();
  return QApplication::exec();
}

}  // namespace vexa
