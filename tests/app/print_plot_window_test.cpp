#include "app/print_plot_window.h"

#include <QPdfWriter>
#include <QSpinBox>
#include <set>
#include <utility>

#include "app/output_actions.h"
#include "app/window_test.h"
#include "core/late_library.h"
#include "output/paint/paint.h"
#include "output/paint/print.h"
#include "program/view_commands.h"
#include "support/document.h"

namespace vexa {
namespace {

class PrintPlotTest : public test::ProgramAtHome {
 protected:
  PrintPlotTest() {
    test::Show(program, test::ReferenceConvective());
    Refresh(program, {.Sounding = true});
  }

  // As the button does that prints to a file.
  std::filesystem::path PrintToFile(PrintPlotWindow& window, const char* name) {
    const std::filesystem::path path = folder.Path() / name;
    user.Chosen = {TextFromPath(path)};
    window.findChild<QPushButton*>("cmdPrintPdf")->click();
    return path;
  }
};

#ifndef _WIN32
// Without a printer nothing else tells a module that is not found from none that is there.
TEST(Printers, TheirModuleIsFoundByTheProgramsPath) {
  const LateLibrary module("vexa-printer.so");
  ASSERT_TRUE(module.IsOpen());
  EXPECT_NE(module.Find<void()>("VexaPrinter"), nullptr);
}
#endif

TEST_F(PrintPlotTest, EveryChoiceReachesThePages) {
  PrintPlotWindow window(program);
  EXPECT_EQ(window.Pages().size(), 1u);
  EXPECT_EQ(window.Pages().front().Width(), 612 * output::kUnitsPerPoint);
  window.findChild<QComboBox*>("Orientation")->setCurrentText("Landscape");
  window.findChild<QComboBox*>("Paper")->setCurrentText("Legal");
  // Legal across is 14 inches wide.
  EXPECT_EQ(window.Pages().front().Width(), 1008 * output::kUnitsPerPoint);
  for (const char* box : {"IncludeDataType", "IncludeCoordinates"}) {
    const std::size_t items = window.Pages().front().Items().size();
    window.findChild<QCheckBox*>(box)->setChecked(false);
    EXPECT_EQ(window.Pages().front().Items().size(), items - 1) << box;
  }
  window.findChild<QCheckBox*>("AllListings")->setChecked(true);
  EXPECT_GE(window.Pages().size(), 8u) << "seven listings, the complete one with two pages";
  auto* page = window.findChild<QSpinBox*>("PreviewPage");
  EXPECT_EQ(page->maximum(), static_cast<int>(window.Pages().size()));
  const QImage first = window.findChild<QLabel*>("Preview")->pixmap().toImage();
  page->setValue(2);
  EXPECT_NE(window.findChild<QLabel*>("Preview")->pixmap().toImage(), first);
}

TEST_F(PrintPlotTest, PrintingPreparesTheListingsAndStoppingLeavesNothing) {
  PrintPlotWindow window(program);
  window.findChild<QCheckBox*>("AllListings")->setChecked(true);
  EXPECT_TRUE(ReadFile(PrintToFile(window, "all.pdf")).Value().starts_with("%PDF"));
  EXPECT_TRUE(std::filesystem::exists(folder.Path() / "Indixes.Dat"));
  user.Statuses.clear();
  user.StopAfter = 3;
  user.Expect(std::string(kErrorBoxTitle), Answer::Ok);
  EXPECT_FALSE(std::filesystem::exists(PrintToFile(window, "stopped.pdf")));
  EXPECT_EQ(user.Boxes.back().Text, "Cancelling Print");
}

TEST_F(PrintPlotTest, EveryDisplayIsOfferedAndTheSheetIsRemembered) {
  PrintPlotWindow window(program);
  auto* display = window.findChild<QComboBox*>("DisplayToPrint");
  EXPECT_EQ(display->findText("Overlay"), -1) << "nothing lies over the diagram";
  std::set<std::string> texts;
  for (const char* name :
       {"Sounding", "Hodograph", "Hodogram3D", "SvrWx", "Winter", "LayerAnalyzer", "Soaring"}) {
    SCOPED_TRACE(name);
    ASSERT_GE(display->findText(name), 0);
    display->setCurrentText(name);
    ASSERT_EQ(window.Pages().size(), 1u);
    const std::string text = paint::TextOf(window.Pages().front());
    EXPECT_GT(text.size(), 150u) << text;
    EXPECT_TRUE(texts.insert(text).second) << "the same as another display";
  }
  window.findChild<QLineEdit*>("PrintTitle")->setText("Case of the week");
  window.findChild<QCheckBox*>("DarkLines")->setChecked(true);
  window.findChild<QComboBox*>("Orientation")->setCurrentText("Landscape");
  window.findChild<QComboBox*>("Paper")->setCurrentText("A4");
  window.findChild<QCheckBox*>("IncludeDataType")->setChecked(false);
  EXPECT_TRUE(std::filesystem::exists(PrintToFile(window, "one.pdf")));
  PrintPlotWindow again(program);
  EXPECT_EQ(again.findChild<QLineEdit*>("PrintTitle")->text(), "Case of the week");
  EXPECT_TRUE(again.findChild<QCheckBox*>("DarkLines")->isChecked());
  EXPECT_EQ(again.Request().Setup, window.Request().Setup);
  folder.Write("PRINTER.DAT", "Paper = Papyrus\r\nno sense\r\n\r\n= ");
  EXPECT_EQ(PrintPlotWindow(program).Request().Setup, output::PrintSetup{});
}

TEST_F(PrintPlotTest, WhatTheDiagramShowsIsPrinted) {
  const auto labels = [&](const char* display) {
    PrintPlotWindow window(program);
    auto* box = window.findChild<QComboBox*>("DisplayToPrint");
    EXPECT_GE(box->findText(display), 0) << display;
    box->setCurrentText(display);
    return paint::TextOf(window.Pages().front());
  };
  program.Others.push_back(
      std::make_shared<AnalysedSounding>(LoadedSounding{.Record = test::ReferenceWinter()}));
  program.View.Mode = diagram::MultiMode::Overlay;
  EXPECT_EQ(PrintPlotWindow(program).Request().Display, "Overlay") << "what is seen is proposed";
  EXPECT_NE(labels("Overlay").find("Reference B, winter"), std::string::npos);
  EXPECT_EQ(labels("Sounding").find("Reference B, winter"), std::string::npos);
  program.View = {};
  const std::string whole = labels("Sounding");
  const Rect frame = program.Plot->Mapping.Frame();
  Refresh(program,
          ZoomInSizer(program, {frame.Left, frame.Top, frame.Left + 2000, frame.Top + 2000}));
  EXPECT_NE(labels("Sounding"), whole) << "the part on the screen is printed";
  program.Doc.Take(Document::GiveUpEdits(), {.Record = test::ReferenceConvective(),
                                             .Notes = {"a wind without a height is left out"}});
  EXPECT_NE(labels("Notes").find("without a height"), std::string::npos);
  EXPECT_NE(labels("NotePad").find("VEXA 5.7"), std::string::npos);
}

/// Takes no other paper than its own, as printers may.
class StubbornPrinter : public QPdfWriter {
 public:
  using QPdfWriter::QPdfWriter;
  bool setPageLayout(const QPageLayout&) override { return false; }
};

TEST_F(PrintPlotTest, APrinterThatRefusesThePaperIsNamed) {
  StubbornPrinter printer(QString::fromStdString(TextFromPath(folder.Path() / "out.pdf")));
  const std::vector<Picture> pages(1, Picture(6120, 7920, {255, 255, 255}));
  const auto fault = paint::PrintPages(pages, output::kUnitsPerPoint, printer);
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->Detail, "SetPrinter Failed. Error code: 482");
}

}  // namespace
}  // namespace vexa
