// Printing to PDF and reading the text back with an independent program.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "analysis/analysis.h"
#include "cli/qt/qt_toolkit.h"
#include "cli/run_words.h"
#include "core/files.h"
#include "diagram/sounding_plot.h"
#include "output/paint/print.h"
#include "output/print_pages.h"
#include "support/soundings.h"

namespace vexa {
namespace {

using output::Orientation;
using output::Paper;
using output::PrintSetup;

struct Printed {
  SoundingRecord Sounding = test::ReferenceConvective();
  Options Set{};
  analysis::AnalysisResults Results = analysis::Analyse(Sounding, Set);
  output::ListingSource Source() const { return {Sounding, Results, Set}; }
};

// Text of a PDF as pdftotext reads it, pages ended by form feeds; empty without that program.
std::string TextOfPdf(const std::string& bytes, const std::filesystem::path& folder) {
  EXPECT_FALSE(SaveFile(folder / "print.pdf", bytes));
  const std::string command = "pdftotext -layout \"" + TextFromPath(folder / "print.pdf") +
                              "\" \"" + TextFromPath(folder / "print.txt") + "\" 2>&1";
  if (std::system(command.c_str()) != 0) return {};
  const auto text = ReadFile(folder / "print.txt");
  return text ? text.Value() : std::string();
}

TEST(Print, ListingsComeBackFromThePaper) {
  if (std::system("pdftotext -v > /dev/null 2>&1") != 0) GTEST_SKIP() << "no pdftotext";
  cli::QtToolkit toolkit;
  toolkit.Start();
  const test::TemporaryFolder folder;
  const Printed printed;
  std::vector<const output::ListingRow*> rows;
  for (const output::ListingRow& row : output::Listings()) rows.push_back(&row);
  for (const Paper paper : {Paper::Letter, Paper::Legal, Paper::A4}) {
    for (const Orientation turn : {Orientation::Portrait, Orientation::Landscape}) {
      SCOPED_TRACE(std::string(output::Words(paper)[static_cast<std::size_t>(paper)]));
      const PrintSetup setup{.Sheet = paper, .Turn = turn};
      const std::vector<Picture> pages = output::PagesOfListings(rows, printed.Source(), setup);
      const auto bytes = paint::PagesAsPdf(pages, output::kUnitsPerPoint);
      ASSERT_TRUE(bytes) << bytes.Error().Detail;
      const std::string text = TextOfPdf(bytes.Value(), folder.Path());
      EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(text, '\f')), pages.size());
      for (const char* part : {"WAVE/X---W---turb--", "Integrated data levels: ",
                               "Elev: 357 meters", "K Index", "Lifted parcels", "Wind Levels"}) {
        EXPECT_NE(text.find(part), std::string::npos) << part;
      }
      EXPECT_EQ(text.find("NEWPAGE"), std::string::npos);
    }
  }
}

TEST(Print, TheDiagramStandsOnThePageInItsProportions) {
  const Printed printed;
  const auto plot = diagram::PlotSounding({.Sounding = printed.Sounding,
                                           .Results = printed.Results,
                                           .Set = printed.Set,
                                           .On = ImageSurface(1600, 1200)});
  const PrintSetup setup{.Turn = Orientation::Landscape};
  const Picture page =
      output::DisplayPage(plot->Page, output::PageHeader(printed.Source(), setup.Header), setup);
  // Letter across: 11 by 8.5 inches of 72 points.
  EXPECT_EQ(page.Width(), 792 * output::kUnitsPerPoint);
  EXPECT_EQ(page.Height(), 612 * output::kUnitsPerPoint);
  const auto& inset = std::get<Inset>(page.Items().back().Shape);
  EXPECT_EQ(inset.Place.Right, (792 - output::kMarginPt) * output::kUnitsPerPoint);
  EXPECT_EQ(inset.Place.Bottom, (612 - output::kMarginPt) * output::kUnitsPerPoint);
}

class PrintCommand : public cli::CommandTest {};

TEST_F(PrintCommand, PutsWhatIsAskedForInOneDocument) {
  if (std::system("pdftotext -v > /dev/null 2>&1") != 0) GTEST_SKIP() << "no pdftotext";
  Write("a.RAW", test::ReferenceConvective());
  Write("b.RAW", test::ReferenceWinter());
  const auto [exit, out, errors] =
      cli::RunWords({"print", In("a.RAW"), In("none.RAW"), In("b.RAW"), "-o", In("out.pdf"), "-d",
                     "hodograph", "-d", "cape", "-d", "NotePad", "--orientation", "landscape",
                     "--paper", "a4", "--no-coordinates", "--title", "Two cases"});
  EXPECT_EQ(exit, cli::kExitInputFailed);
  EXPECT_NE(errors.find("none.RAW does not exist"), std::string::npos) << errors;
  const std::string text = TextOfPdf(Text("out.pdf"), folder_.Path());
  const auto times = [&text](std::string_view part) {
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
      ++count;
    }
    return count;
  };
  EXPECT_EQ(times("Integrated data levels: "), times("\f")) << "every page has its header";
  EXPECT_EQ(times("Two cases"), 2) << "over the hodographs alone";
  EXPECT_EQ(times("(layer)"), 2);
  for (const char* part : {"Reference A, convective", "Reference B, winter", "\"VEXA 5.7\""}) {
    EXPECT_NE(text.find(part), std::string::npos) << part;
  }
  EXPECT_EQ(text.find("Elev: "), std::string::npos);

  cli::ExpectRefused({"print", In("a.RAW")},
                     {{{}, 2, "-o"},
                      {{"-o", In("x.png")}, 2, "does not end in .pdf"},
                      {{"-o", In("x.pdf"), "--paper", "a3"}, 2, "{Letter,Legal,A4}"},
                      {{"-o", In("x.pdf"), "--orientation", "up"}, 2, "{Portrait,Landscape}"},
                      {{"-o", In("x.pdf"), "-d", "map"}, 2, "IndicesData"},
                      {{"-o", In("x.pdf"), "-d", "overlay"}, 2, "plot draws it"}});
  EXPECT_FALSE(std::filesystem::exists(In("x.pdf")));
}

TEST_F(PrintCommand, DocumentsAreSmallAndTheirTextsCanBeSelected) {
  Write("a.RAW", test::ReferenceConvective());
  for (const char* display : {"sounding", "hodograph", "svrwx", "winter", "layeranalyzer"}) {
    SCOPED_TRACE(display);
    for (const char* name : {"a.svg", "a.pdf"}) {
      ASSERT_EQ(cli::RunWords({"plot", In("a.RAW"), "-o", In(name), "--display", display}).Exit, 0);
      const std::string bytes = Text(name);
      EXPECT_LT(bytes.size(), 1'000'000u);
      const bool isPdf = bytes.starts_with("%PDF");
      if (isPdf && std::system("pdftotext -v > /dev/null 2>&1") != 0) continue;
      const std::string text = isPdf ? TextOfPdf(bytes, folder_.Path()) : bytes;
      EXPECT_NE(text.find("Reference A"), std::string::npos) << text.substr(0, 500);
    }
  }
}

}  // namespace
}  // namespace vexa
