#include "app/run.h"

#include <cstdio>
#include <filesystem>
#include <optional>
#include <QApplication>
#include <QFont>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QSocketNotifier>
#include <QSplashScreen>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "app/qt_text.h"
#include "app/screenshot.h"
#include "app/sounding_chooser.h"
#include "app/sounding_window.h"
#include "app/window_interaction.h"
#include "app/window_table.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/platform.h"
#include "core/user_file.h"
#include "output/paint/paint.h"
#include "program/command_line.h"
#include "program/edit_commands.h"
#include "program/program.h"
#include "program/session_commands.h"
#include "program/start_picture.h"
#include "program/start_up.h"
#include "program/view_commands.h"

namespace vexa {
namespace {

constexpr ArgumentRow kArguments[] = {
    {"--root", "", "DIR", "folder of the program's own files"},
    {"--size", "", "WxH", "size of the window in pixels"},
    kSetOption,
    {"--layout", "", "NAME",
     "layout of the diagram's page for this run: diagram, forecaster, pilot, teaching"},
    {"--screenshot", "", "OUT.png", "saves a picture of the window and exits"},
    {"--show", "", "NAME", "opens a window at start, by its name below or its menu entry's"},
    {"--tab", "", "N", "page of that window", {}, 1, 99},
};

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

void Say(std::FILE* stream, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stream);
}

// The names that --show takes, filled into lines.
std::string WindowList() {
  constexpr std::size_t kWidth = 78;
  std::string text = "Windows that --show opens:";
  std::string line;
  for (const std::string_view name : WindowNames(AllDisplays())) {
    if (line.empty() || line.size() + name.size() + 1 > kWidth) {
      text += line + "\n ";
      line.clear();
    }
    line += " " + std::string(name);
  }
  return text + line;
}

CommandLine ReadWords(std::span<const std::string> words) {
  const std::string windows = WindowList();
  const CommandForm form{.Name = "vexa",
                         .Usage = "[FILE-OR-FOLDER]... [options]",
                         .Summary = "Shows soundings on a thermodynamic diagram.",
                         .Options = kArguments,
                         .LeastFiles = 0,
                         .Footer = windows};
  CommandLine read = ReadCommandLine(words, form);
  read.Command = nullptr;  // it ends here
  return read;
}

int WrongUsage(const Fault& fault) {
  Say(stderr, "vexa: " + fault.Detail + "\nTry 'vexa --help'.\n");
  return kWrongUsage;
}

void TellKept(const WindowInteraction& interaction) {
  for (const Box& box : interaction.Kept()) Say(stderr, "vexa: " + box.Text + "\n");
}

// The picture shown at start: the file in the program folder, made anew where it is missing or cut
// short. Without the file the picture is drawn again next time.
QPixmap StartPixmap(const Program& program) {
  const std::filesystem::path path = program.Where.Root / kStartPicture;
  const Outcome<std::string> kept = ReadFile(path);
  QPixmap pixmap;
  const auto isPicture = [&pixmap](std::string_view bytes) {
    return IsWholeBitmap(bytes) && pixmap.loadFromData(reinterpret_cast<const uchar*>(bytes.data()),
                                                       static_cast<uint>(bytes.size()));
  };
  if (kept && isPicture(kept.Value())) return pixmap;
  const Picture picture = StartPicture();
  const auto width = static_cast<int>(picture.Width());
  const auto height = static_cast<int>(picture.Height());
  if (const auto bytes = paint::EncodePicture(picture, "bmp", width, height)) {
    const auto objects = [](std::string_view) { return std::string(kStartPicture); };
    static_cast<void>(SaveUserFile(path, bytes.Value(), objects, SystemFileOps(), Links::Replace));
  }
  return QPixmap::fromImage(paint::ToImage(picture, width, height));
}

// What the toolkit has left of the command line. Its own list holds texts, and a name need not be
// UTF-8; on Windows the list is the one that has every character.
std::vector<std::string> WordsOf([[maybe_unused]] int argc, [[maybe_unused]] char** argv) {
#ifdef _WIN32
  std::vector<std::string> words;
  const QStringList given = QApplication::arguments();
  for (qsizetype i = 1; i < given.size(); ++i) words.push_back(given[i].toStdString());
  return words;
#else
  return {argv + 1, argv + argc};
#endif
}

// Where the named fonts are missing, those of the same widths and the common ones take their place.
void NameFonts() {
  QFont::insertSubstitutions(QStringLiteral("Courier New"), {QStringLiteral("Liberation Mono"),
                                                             QStringLiteral("DejaVu Sans Mono")});
  for (const char* name : {"Arial", "Verdana"}) {
    QFont::insertSubstitutions(QString::fromLatin1(name),
                               {QStringLiteral("Liberation Sans"), QStringLiteral("DejaVu Sans")});
  }
}

// The system ends the program: nobody is asked, so what is not saved goes into the session, which
// the next start offers.
void EndNow(Program& program, SoundingWindow& window) {
  if (!program.Doc.IsAltered()) {
    window.close();
  } else if (const auto fault = KeepSessionAtEnd(program)) {
    Say(stderr, "vexa: " + fault->Detail + "\n");
  }
  QApplication::exit();
}

}  // namespace

int RunWindow(int argc, char** argv) {
  // Help and version must come without a display, so the plain arguments are looked at first; what
  // is wrong with them may be the toolkit's own options, which it takes out.
  if (const CommandLine plain = ReadWords(std::vector<std::string>(argv + 1, argv + argc));
      !plain.Answer.empty()) {
    Say(stdout, plain.Answer);
    return 0;
  }

  const QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("VEXA"));
  const std::vector<std::string> words = WordsOf(argc, argv);

  Program program;
  const CommandLine read = ReadWords(words);
  if (read.Wrong) return WrongUsage(*read.Wrong);
  const Arguments& arguments = read.Given;
  std::optional<PixelSize> size;
  if (const auto text = arguments.Value("--size")) {
    const Outcome<PixelSize> parsed = ParseSize(*text);
    if (!parsed) return WrongUsage(parsed.Error());
    size = parsed.Value();
  }
  WindowToShow wanted;
  if (const auto name = arguments.Value("--show")) {
    wanted.Name = *name;
    if (!CanShow(program, *name)) {
      return WrongUsage({kFaultInvalidValue, "RunWindow",
                         "there is no window \"" + *name + "\"" +
                             DidYouMean(*name, WindowNames(AllDisplays())) +
                             "; vexa --help lists them"});
    }
  }
  const std::optional<std::string> layout = arguments.Value("--layout");
  if (layout && FindLayout(*layout) == nullptr) {
    std::vector<std::string_view> names;
    for (const LayoutRow& row : PageLayouts()) names.push_back(row.Name);
    return WrongUsage({kFaultInvalidValue, "RunWindow",
                       "there is no layout \"" + *layout + "\"" + DidYouMean(*layout, names) +
                           "; there are " + Joined(names)});
  }
  wanted.Tab = arguments.Whole("--tab");
  if (wanted.Tab && wanted.Name.empty()) {
    return WrongUsage({kFaultInvalidValue, "RunWindow", "--tab needs a window, --show NAME"});
  }
  const std::vector<std::string> assignments = arguments.Values("--set");
  if (Options alone; const auto fault = SetOptions(alone, assignments)) return WrongUsage(*fault);
  const std::optional<std::string> screenshot = arguments.Value("--screenshot");

  WindowInteraction interaction(program.Gate, screenshot ? WindowInteraction::Attendance::Unattended
                                                         : WindowInteraction::Attendance::Attended);
  program.Doc.AskThrough(&interaction);
  SoundingWindow window(program, interaction);

  StartArguments start{arguments.Value("--root"), ProgramFolder()};
  if (const QScreen* screen = QApplication::primaryScreen()) {
    start.ScreenWidth = screen->size().width();
    start.ScreenHeight = screen->size().height();
    program.Resolution = Shortest(start.ScreenWidth) + "x" + Shortest(start.ScreenHeight);
  }
  QSplashScreen splash;
  start.Done = [&](std::string_view mark) {
    if (mark == kFontStage) NameFonts();
    if (mark != kPictureStage) return;
    splash.setPixmap(StartPixmap(program));
    if (!screenshot) splash.show();
  };
  StartUp(program, start);
  if (const auto fault = SetForThisRun(program.Settings, assignments)) return WrongUsage(*fault);
  std::error_code ignored;
  const bool isFirst = !std::filesystem::exists(
      program.Where.Root / SettingsFileName(SettingsFile::Window, Configuration::None), ignored);
  if (isFirst) program.Settings.Window.Layout = kFirstLayout;
  program.View.Layout = FindLayout(program.Settings.Window.Layout);
  if (layout) program.View.Layout = FindLayout(*layout);  // for this run, not kept
  program.Written = program.Settings;
  if (isFirst) {
    window.PlaceFirst();
  } else {
    window.PlaceAsBefore();
  }
  if (size) window.resize(size->Width, size->Height);
  std::vector<std::filesystem::path> paths;
  for (const std::string& file : arguments.Files) paths.push_back(PathFromText(file));
  Changes changes = OfferSession(program);
  if (!changes.Sounding) {
    changes = paths.empty() ? AutoLoadCode(program) : OpenSoundings(program, paths);
  }
  const bool opened = paths.empty() || changes.Sounding;
  changes.View = true;  // the grid is drawn without a sounding, too
  window.Show(changes);

  if (screenshot) {
    if (wanted.Name == kChooserName) {
      program.ChooseSoundings = [&window](const std::vector<std::string>& titles) {
        return SoundingChooser::Ask(titles, &window);
      };
    }
    const std::string wrong = program.Plot ? TakeScreenshot(window, wanted, *screenshot)
                                           : *screenshot + ": there is no picture";
    if (!wrong.empty()) Say(stderr, "vexa: " + wrong + "\n");
    TellKept(interaction);
    return opened && wrong.empty() ? 0 : kFailed;
  }
  window.show();
  splash.finish(&window);
  const int ending = AwaitEnding();
  std::optional<QSocketNotifier> notifier;
  if (ending >= 0) {
    notifier.emplace(ending, QSocketNotifier::Read);
    QObject::connect(&*notifier, &QSocketNotifier::activated, &window,
                     [&] { EndNow(program, window); });
  }
  if (wanted.Name.empty()) {
    QTimer::singleShot(0, &window, [&window] { window.RestoreDisplays(); });
  } else {
    OpenAfterPainting(window, wanted);
  }
  return QApplication::exec();
}

}  // namespace vexa
