// What leaves the program by its windows and by the command line is the same, byte for byte.
#include <gtest/gtest.h>

#include <filesystem>
#include <QPushButton>
#include <string>
#include <vector>

#include "app/print_plot_window.h"
#include "cli/commands.h"
#include "cli/toolkit.h"
#include "core/files.h"
#include "core/raw_file.h"
#include "output/listings.h"
#include "output/paint/paint.h"
#include "program/commands.h"
#include "program/displays.h"
#include "report/report_folder.h"
#include "support/settings.h"
#include "support/soundings.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;

/// Answers file questions with one name and takes every box.
class AnsweringUser : public SilentInteraction {
 public:
  std::optional<std::string> ChooseFile(const FileQuestion&) override { return Name; }
  std::string Name{};
};

/// The same sounding under the same settings, in the window and as a file for commands.
class SameBytesTest : public testing::Test {
 protected:
  SameBytesTest() {
    program.Where.Root = In("root");
    fs::create_directories(program.Where.Root);
    program.Doc.AskThrough(&user);
    program.Set.Diagram = DiagramType::Emagram;
    program.Set.Scheme = ColorScheme::Darker;
    program.Set.System.Dump.Height = DumpHeight::Feet;
    program.Set.System.PrintTitleMemory = "Case of the week";
    EXPECT_FALSE(test::SaveAllSettings(program.Where.Root, program.Settings));
    EXPECT_FALSE(SaveFile(In("a.RAW"), WriteRaw(test::ReferenceConvective())));
    EXPECT_TRUE(Refresh(program, OpenSoundings(program, {In("a.RAW")})));
  }
  fs::path In(const std::string& name) const { return folder.Path() / name; }
  std::string Text(const fs::path& path) const {
    const auto text = ReadFile(path);
    return text ? text.Value() : "no file " + TextFromPath(path);
  }
  /// Runs a command on the file with the settings of the root; gives its output.
  std::string Command(std::vector<std::string> words) {
    std::string out;
    const std::unique_ptr<cli::Toolkit> toolkit = cli::MakeToolkit();
    cli::Console console{[&](std::string_view text) { out += text; },
                         [&](std::string_view text) { ADD_FAILURE() << text; }, toolkit.get()};
    words.insert(words.begin() + 1,
                 {TextFromPath(In("a.RAW")), "--root", TextFromPath(In("root"))});
    EXPECT_EQ(cli::RunCommandLine(words, console), 0);
    return out;
  }

  test::TemporaryFolder folder{};
  AnsweringUser user{};
  Program program{};
};

TEST_F(SameBytesTest, Dumps) {
  for (const char* name : {"dump.txt", "dump.csv"}) {
    user.Name = TextFromPath(In(name));
    commands::ExportAs(program, output::DumpKindOf(name));
    const std::string window = Text(In(name));
    Command({"export", "-o", user.Name});
    EXPECT_EQ(Text(In(name)), window);
  }
}

TEST_F(SameBytesTest, Images) {
  for (const char* name : {"a.svg", "a.png", "a.jpg", "a.bmp", "a.pdf"}) {
    SCOPED_TRACE(name);
    const Picture page = DrawDisplay(DiagramNow(program), program, ImageSurface(800, 600));
    EXPECT_FALSE(paint::SavePicture(page, In(name), 800, 600));
    const std::string window = Text(In(name));
    Command({"plot", "-o", TextFromPath(In(name)), "--size", "800x600"});
    EXPECT_TRUE(Text(In(name)) == window);
  }
}

TEST_F(SameBytesTest, PrintsAndListings) {
  PrintPlotWindow print(program);
  user.Name = TextFromPath(In("window.pdf"));
  print.findChild<QPushButton*>("cmdPrintPdf")->click();
  Command({"print", "-o", TextFromPath(In("command.pdf"))});
  EXPECT_TRUE(Text(In("window.pdf")) == Text(In("command.pdf")));
  for (const output::ListingRow& row : output::Listings()) {
    const std::string text = Command({"list", "--listing", std::string(row.Word)});
    const output::ListingSource from{program.Current.Record, program.Results, program.Set};
    std::string lines;
    for (const auto& line : row.Make(from)) lines += line + "\n";
    EXPECT_TRUE(text.ends_with("\n\n" + lines)) << row.Name;
  }
}

TEST_F(SameBytesTest, ReportFolders) {
  ASSERT_FALSE(
      report::WriteReport(program, In("window"),
                          {.Program = "vexa",
                           .EncodePicture = [](const Picture& picture, const std::string& extension,
                                               int widthPx, int heightPx) {
                             return paint::EncodePicture(picture, extension, widthPx, heightPx);
                           }}));
  Command({"report", "-o", TextFromPath(In("command"))});
  int files = 0;
  for (const auto& entry : fs::recursive_directory_iterator(In("window"))) {
    if (!entry.is_regular_file() || entry.path().filename() == "versions.json") continue;
    ++files;
    const fs::path below = entry.path().lexically_relative(In("window"));
    EXPECT_TRUE(Text(entry.path()) == Text(In("command") / below)) << below;
  }
  EXPECT_EQ(files, 13);
}

}  // namespace
}  // namespace vexa
