// The program as its users start it.
#include <gtest/gtest.h>

#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <cstdlib>
#ifndef _WIN32
#include <sys/wait.h>
#endif

#include "core/files.h"
#include "core/raw_file.h"
#include "support/soundings.h"

namespace vexa {
namespace {

struct Ended {
  int Code = -1;
  std::string Out{};
  std::string Err{};
};

Ended RunProgram(const QStringList& arguments, const char* platform = "offscreen") {
  QProcess process;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert("QT_QPA_PLATFORM", platform);
  process.setProcessEnvironment(environment);
  process.start(VEXA_PROGRAM, arguments);
  if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit) return {};
  return {process.exitCode(), process.readAllStandardOutput().toStdString(),
          process.readAllStandardError().toStdString()};
}

TEST(VexaProgram, SavesAScreenshotOfItsWindow) {
  const test::TemporaryFolder folder;
  const auto name = [&folder](const char* file) {
    return QString::fromStdString(TextFromPath(folder.Path() / file));
  };
  folder.Write("a.RAW", test::ReferenceConvective());
  const Ended ended =
      RunProgram({"--root", name("root"), "--size", "640x520", "--set", "Diagram type=emagram",
                  "--screenshot", name("out.png"), name("a.RAW")});
  EXPECT_EQ(ended.Code, 0) << ended.Err;
  const QImage image(name("out.png"));
  EXPECT_EQ(image.size(), QSize(640, 520));
  int red = 0;  // the temperature trace
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QColor pixel = image.pixelColor(x, y);
      if (pixel.red() > 180 && pixel.green() < 90 && pixel.blue() < 90) ++red;
    }
  }
  EXPECT_GT(red, 200);
}

#ifndef _WIN32
TEST(VexaProgram, OpensANameThatIsNoUtf8AndMendsItsPicture) {
  const test::TemporaryFolder folder;
  const std::string raw = (folder.Path() / "caf\xE9.RAW").string();
  ASSERT_FALSE(SaveFile(raw, WriteRaw(test::ReferenceConvective())));
  const std::filesystem::path root = folder.Path() / "root", picture = root / "VEXA57.BMP";
  std::filesystem::create_directories(root);
  folder.Write("precious", "not to be lost");
  std::filesystem::create_symlink(folder.Path() / "precious", picture);
  // The toolkit's process would not pass the name on as it is.
  const auto run = [&] {
    const std::string command = "QT_QPA_PLATFORM=offscreen '" + std::string(VEXA_PROGRAM) +
                                "' --root '" + root.string() + "' --screenshot '" +
                                (folder.Path() / "out.png").string() + "' '" + raw + "'";
    return std::system(command.c_str());
  };
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(ReadFile(folder.Path() / "precious").Value(), "not to be lost");
  const std::string whole = ReadFile(picture).Value();
  EXPECT_TRUE(whole.starts_with("BM"));
  ASSERT_FALSE(SaveFile(picture, whole.substr(0, whole.size() / 2)));
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(ReadFile(picture).Value(), whole);
}
#endif

#ifndef _WIN32
// The toolkit would abort where it cannot open what its events wake it by.
TEST(VexaProgram, TooFewFilesAreASentence) {
  const test::TemporaryFolder folder;
  const std::string root = folder.Path().string();
  for (const int most : {4, 5, 6}) {
    const std::string said = root + "/said" + std::to_string(most);
    // What this program has open is not to count.
    const std::string command = "exec 2> '" + said + "' 3>&- 4>&- 5>&- 6>&- 7>&- 8>&- 9>&-;" +
                                " export QT_QPA_PLATFORM=offscreen; ulimit -n " +
                                std::to_string(most) + "; exec '" + std::string(VEXA_PROGRAM) +
                                "' --root '" + root + "' --screenshot '" + root + "/out.png'";
    const int status = std::system(command.c_str());
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 1) << most;
    EXPECT_NE(ReadFile(said).Value().find("vexa: "), std::string::npos) << most;
  }
}
#endif

TEST(VexaProgram, SaysWhatWentWrongByItsExitCode) {
  const test::TemporaryFolder folder;
  const QString root = QString::fromStdString(TextFromPath(folder.Path()));
  const Ended absent =
      RunProgram({"--root", root, "--screenshot", root + "/out.png", root + "/absent.RAW"});
  EXPECT_EQ(absent.Code, 1);
  EXPECT_NE(absent.Err.find("absent.RAW does not exist."), std::string::npos) << absent.Err;
  const Ended nowhere = RunProgram({"--root", root, "--screenshot", root + "/no/such/out.png"});
  EXPECT_EQ(nowhere.Code, 1);
  EXPECT_EQ(RunProgram({"--size", "many"}).Code, 2);
  EXPECT_EQ(RunProgram({"--show", "Hodograph", "--tab", "0"}).Code, 2);
  EXPECT_EQ(RunProgram({"--tab", "1"}).Code, 2);
  const Ended beyond = RunProgram(
      {"--root", root, "--show", "Config", "--tab", "99", "--screenshot", root + "/out.png"});
  EXPECT_EQ(beyond.Code, 1);
  EXPECT_NE(beyond.Err.find("Config has no page 99"), std::string::npos) << beyond.Err;
  EXPECT_EQ(RunProgram({"--set", "no such key=1"}).Code, 2);
}

TEST(VexaProgram, HelpsWithoutADisplay) {
  const Ended help = RunProgram({"--help"}, "no-such-platform");
  EXPECT_EQ(help.Code, 0) << help.Err;
  EXPECT_NE(help.Out.find("--screenshot"), std::string::npos);
  const Ended version = RunProgram({"--version"}, "no-such-platform");
  EXPECT_EQ(version.Code, 0);
  EXPECT_EQ(version.Out.substr(0, 5), "vexa ");
}

}  // namespace
}  // namespace vexa
