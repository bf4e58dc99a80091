#include "app/run.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <QApplication>
#include <QBuffer>
#include <QByteArray>
#include <QFont>
#include <QImage>
#include <QImageReader>
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
#include <utility>
#include <vector>

#include "app/qt_text.h"
#include "app/screenshot.h"
#include "app/sounding_chooser.h"
#include "app/sounding_window.h"
#include "app/window_interaction.h"
#include "app/window_table.h"
#include "core/current_sounding.h"
#include "core/error_report.h"
#include "core/files.h"
#include "core/freed_memory.h"
#include "core/numbers.h"
#include "core/platform.h"
#include "core/user_file.h"
#include "output/paint/paint.h"
#include "output/paint/toolkit_platform.h"
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
    {"--screenshot", "", "OUT.{png,bmp}", "saves a picture of the window and exits"},
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
  const auto isPicture = [&pixmap](const std::string& bytes) {
    if (!IsWholeBitmap(bytes)) return false;
    QByteArray held = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
    QBuffer buffer(&held);
    QImageReader reader(&buffer);
    if (bytes.starts_with("BM")) {
      reader.setFormat("BMP");
      reader.setAutoDetectImageFormat(false);  // it would load the readers of all other kinds
    }
    pixmap = QPixmap::fromImageReader(&reader);
    return !pixmap.isNull();
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
void KeepUnasked(Program& program, SoundingWindow& window) {
  if (!program.Doc.IsAltered()) {
    window.close();
  } else if (const auto fault = KeepSessionAtEnd(program)) {
    Say(stderr, "vexa: " + fault->Detail + "\n");
  }
}

// Tells when the system ends the program: by a signal, or by the toolkit's word where the user logs
// out. After that word the system may end it at once, or another program may have it called off.
void AwaitSystemsEnd(Program& program, SoundingWindow& window) {
  if (const int ending = AwaitEnding(); ending >= 0) {
    auto* const notifier = new QSocketNotifier(ending, QSocketNotifier::Read, &window);
    QObject::connect(notifier, &QSocketNotifier::activated, &window, [&program, &window] {
      KeepUnasked(program, window);
      QApplication::exit();
    });
  }
  QObject::connect(qApp, &QGuiApplication::commitDataRequest, &window, [&program, &window] {
    if (program.Doc.IsAltered()) KeepUnasked(program, window);
  });
  QObject::connect(qApp, &QCoreApplication::aboutToQuit, &window, [&program, &window] {
    if (!window.isVisible()) return;
    KeepUnasked(program, window);
    window.hide();  // the toolkit closes what it sees, and to close it with edits would ask
  });
}

/// What the words of the command line ask for.
struct Wanted {
  std::optional<PixelSize> Size{};
  WindowToShow Window{};
  const LayoutRow* Layout = nullptr;  // null: that of the settings
  std::vector<std::string> Assignments{};
  std::optional<std::string> Root{}, Screenshot{};
  std::vector<std::filesystem::path> Files{};
};

Outcome<Wanted> WantedOf(const Arguments& arguments, const Program& program) {
  Wanted wanted{.Assignments = arguments.Values("--set"),
                .Root = arguments.Value("--root"),
                .Screenshot = arguments.Value("--screenshot")};
  if (const auto text = arguments.Value("--size")) {
    const Outcome<PixelSize> parsed = ParseSize(*text);
    if (!parsed) return parsed.Error();
    wanted.Size = parsed.Value();
  }
  const auto wrong = [](std::string detail) {
    return Fault{kFaultInvalidValue, "RunWindow", std::move(detail)};
  };
  if (const auto name = arguments.Value("--show")) {
    wanted.Window.Name = *name;
    if (!CanShow(program, *name)) {
      return wrong("there is no window \"" + *name + "\"" +
                   DidYouMean(*name, WindowNames(AllDisplays())) + "; vexa --help lists them");
    }
  }
  if (const auto name = arguments.Value("--layout")) {
    const Outcome<const LayoutRow*> layout = LayoutNamed(*name);
    if (!layout) return layout.Error();
    wanted.Layout = layout.Value();
  }
  wanted.Window.Tab = arguments.Whole("--tab");
  if (wanted.Window.Tab && wanted.Window.Name.empty()) {
    return wrong("--tab needs a window, --show NAME");
  }
  if (Options alone; const auto fault = SetOptions(alone, wanted.Assignments)) return *fault;
  for (const std::string& file : arguments.Files) wanted.Files.push_back(PathFromText(file));
  return wanted;
}

// The arrows at the ends of menu bar and tool bar are the toolkit's pictures; to find out their
// kind it would load its files for all others.
std::unique_ptr<SoundingWindow> MakeWindow(Program& program, WindowInteraction& interaction) {
  QApplication::style();  // with what it loads
  const QStringList paths = QCoreApplication::libraryPaths();
  QCoreApplication::setLibraryPaths({});
  auto window = std::make_unique<SoundingWindow>(program, interaction);
  QCoreApplication::setLibraryPaths(paths);
  return window;
}

void StartBehindPicture(Program& program, const Wanted& wanted, QSplashScreen& splash) {
  StartArguments start{wanted.Root, ProgramFolder()};
  if (const QScreen* screen = QApplication::primaryScreen()) {
    start.ScreenWidth = screen->size().width();
    start.ScreenHeight = screen->size().height();
    program.Resolution = Shortest(start.ScreenWidth) + "x" + Shortest(start.ScreenHeight);
  }
  start.Done = [&](std::string_view mark) {
    if (mark == kFontStage) NameFonts();
    if (mark != kPictureStage) return;
    splash.setPixmap(StartPixmap(program));
    if (!wanted.Screenshot) splash.show();
  };
  StartUp(program, start);
}

// The window where it stood, in the layout of the settings; at a first start, while there are no
// settings, in a size and a layout that suit most people.
void PlaceWindow(Program& program, const Wanted& wanted, SoundingWindow& window) {
  const bool isFirst =
      !IsThere(program.Where.Root / SettingsFileName(SettingsFile::Window, Configuration::None));
  if (isFirst) program.Settings.Window.Layout = kFirstLayout;
  program.View.Layout = FindLayout(program.Settings.Window.Layout);
  if (wanted.Layout != nullptr) program.View.Layout = wanted.Layout;  // for this run, not kept
  program.Written = program.Settings;
  if (isFirst) {
    window.PlaceFirst();
  } else {
    window.PlaceAsBefore();
  }
  if (wanted.Size) window.resize(wanted.Size->Width, wanted.Size->Height);
  window.LayOut();
}

// Opens what the last session left, what was asked for or what is loaded at start; false where
// nothing of what was asked for could be opened.
bool OpenFirst(Program& program, const Wanted& wanted, SoundingWindow& window) {
  Changes changes = OfferSession(program);
  if (!changes.Sounding) {
    changes = wanted.Files.empty() ? AutoLoadCode(program) : OpenSoundings(program, wanted.Files);
  }
  const bool opened = wanted.Files.empty() || changes.Sounding;
  changes.View = true;  // the grid is drawn without a sounding, too
  window.Show(changes);
  return opened;
}

// False where no picture was saved, which has been told.
bool SaveScreenshot(Program& program, const Wanted& wanted, SoundingWindow& window) {
  if (wanted.Window.Name == kChooserName) {
    program.ChooseSoundings = [&window](const std::vector<std::string>& titles) {
      return SoundingChooser::Ask(titles, &window);
    };
  }
  const std::string wrong = program.Plot ? TakeScreenshot(window, wanted.Window, *wanted.Screenshot)
                                         : *wanted.Screenshot + ": there is no picture";
  if (!wrong.empty()) Say(stderr, "vexa: " + wrong + "\n");
  return wrong.empty();
}

int ShowUntilClosed(Program& program, const Wanted& wanted, SoundingWindow& window,
                    std::unique_ptr<QSplashScreen> splash) {
  window.show();
  splash->finish(&window);
  splash.reset();  // its pixels, and the screen's copy of them
  GiveBackFreedMemory();
  AwaitSystemsEnd(program, window);
  if (wanted.Window.Name.empty()) {
    QTimer::singleShot(0, &window, [&window] { window.RestoreDisplays(); });
  } else {
    OpenAfterPainting(window, wanted.Window);
  }
  return QApplication::exec();
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

  if (const auto fault = paint::Lacks()) {
    const CurrentSounding nobody;
    Say(stderr, "vexa: " + FaultMessage(nobody, *fault) + " (" + fault->Detail + ")\n");
    return kFailed;
  }
  paint::ChooseLetters();
  const QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("VEXA"));
  const std::vector<std::string> words = WordsOf(argc, argv);

  Program program;
  const CommandLine read = ReadWords(words);
  if (read.Wrong) return WrongUsage(*read.Wrong);
  const Outcome<Wanted> asked = WantedOf(read.Given, program);
  if (!asked) return WrongUsage(asked.Error());
  const Wanted& wanted = asked.Value();

  WindowInteraction interaction(program.Gate, wanted.Screenshot
                                                  ? WindowInteraction::Attendance::Unattended
                                                  : WindowInteraction::Attendance::Attended);
  program.Doc.AskThrough(&interaction);
  const std::unique_ptr<SoundingWindow> made = MakeWindow(program, interaction);
  SoundingWindow& window = *made;
  auto splash = std::make_unique<QSplashScreen>();
  StartBehindPicture(program, wanted, *splash);
  if (const auto fault = SetForThisRun(program.Settings, wanted.Assignments)) {
    return WrongUsage(*fault);
  }
  PlaceWindow(program, wanted, window);
  const bool opened = OpenFirst(program, wanted, window);
  if (!wanted.Screenshot) return ShowUntilClosed(program, wanted, window, std::move(splash));
  const bool saved = SaveScreenshot(program, wanted, window);
  TellKept(interaction);
  return opened && saved ? 0 : kFailed;
}

}  // namespace vexa
