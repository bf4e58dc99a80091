#include "output/listings.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "config/options.h"
#include "core/files.h"
#include "core/numbers.h"
#include "support/soundings.h"

namespace vexa::output {
namespace {

struct Listed {
  SoundingRecord Sounding = test::ReferenceConvective();
  Options Set{};
  analysis::AnalysisResults Results{};

  ListingLines Make(ListingLines (*make)(const ListingSource&)) {
    Results = analysis::Analyse(Sounding, Set);
    return make(Source());
  }
  ListingSource Source() const { return {Sounding, Results, Set}; }
};

double FieldAt(const std::string& line, std::size_t begin, std::size_t size) {
  return ParseNumber(line.substr(begin, size)).value_or(-1);
}

bool HasLine(const ListingLines& lines, std::string_view part) {
  return std::ranges::any_of(
      lines, [part](const std::string& line) { return line.find(part) != std::string::npos; });
}

TEST(Listings, WavesStandAtTheirInterfaces) {
  Listed listed;
  listed.Sounding = test::ReferenceWinter();
  const ListingLines lines = listed.Make(SummaryListing);
  // Worked apart from this code: interface at 880 hPa, 3.158 km are 1.7 nm, 11.07 m/s are 2180 fpm.
  const auto at = [&](std::string_view press) {
    const auto line = std::ranges::find_if(
        lines, [&](const std::string& one) { return one.substr(7, 6) == press; });
    return line == lines.end() ? std::string() : line->substr(73);
  };
  EXPECT_EQ(at(" 880.0"), "XTR   1.7 2180   XTR");
  EXPECT_EQ(at(" 250.0"), "--    6.3  379   MDT");  // the predominant wave has died away there
  EXPECT_EQ(at(" 500.0"), "--     --   --    --");
}

TEST(Listings, CapeOfTheLayersAddsUpToTheTotal) {
  for (const int interval : {1, 7, 50}) {
    SCOPED_TRACE(interval);
    Listed listed;
    listed.Set.CapeInterval = interval;
    listed.Set.Lpl = LiftSource::Surface;
    const ListingLines lines = listed.Make(CapeListing);
    ASSERT_GT(lines.size(), 5u);
    double sum = 0;
    double before = 2000;
    for (std::size_t i = 2; i < lines.size(); ++i) {
      sum += FieldAt(lines[i], 13, 8);
      const double press = FieldAt(lines[i], 5, 8);
      EXPECT_LT(press, before);
      before = press;
    }
    const double total = FieldAt(lines.back(), 21, 8);
    EXPECT_NEAR(sum, total, 0.5 * static_cast<double>(lines.size())) << "rounded layer by layer";
    EXPECT_NEAR(total, listed.Results.Chosen().CapeTotal, 1);
    // Worked for this sounding: EL 187.5 hPa, CAPE 3365 J/kg by steps of 1 hPa.
    if (interval == 1) {
      EXPECT_NEAR(total, 3365, 1);
      EXPECT_NEAR(before, 188, 1);
    }
  }
}

TEST(Listings, FindingsStandInTheirListing) {
  Listed convective;
  const ListingLines analyses = convective.Make(AnalysesListing);
  EXPECT_TRUE(HasLine(analyses, "847.9"));  // surface LCL
  EXPECT_TRUE(HasLine(analyses, "187.5"));  // its EL
  EXPECT_TRUE(HasLine(analyses, "245/21 kts, srH 0-3 km 298"));
  Listed entered;
  entered.Set.MotionMode = Scaling::Manual;
  entered.Set.ManualMotionDir = 205;
  entered.Set.ManualMotionSpd = 30;
  const ListingLines manual = entered.Make(AnalysesListing);
  EXPECT_TRUE(HasLine(manual, "205/30 kts, manual, srH 0-3 km"));
  EXPECT_EQ(std::ranges::count_if(
                manual, [](const std::string& line) { return line.find(", manual") != line.npos; }),
            1)
      << "the other mover is computed";
  EXPECT_FALSE(HasLine(analyses, ", manual"));
  const ListingLines indices = convective.Make(IndicesListing);
  EXPECT_TRUE(HasLine(indices, "        KI  K Index"));
  EXPECT_TRUE(HasLine(indices, " 31.9 C"));
  Listed winter{.Sounding = test::ReferenceWinter()};
  const ListingLines weather = winter.Make(WeatherListing);
  EXPECT_TRUE(HasLine(weather, "Precipitation"));
  EXPECT_TRUE(HasLine(weather, "  LGT"));
  const ListingLines complete = convective.Make(CompleteListing);
  EXPECT_EQ(complete[2], " 970.0    28.0    18.8      9.2        357          160    12");
  EXPECT_EQ(std::ranges::count(complete, "NEWPAGE"), 1);
  // Every 500 m from the ground up, 11 at 5000 m: p falls there below 550 hPa.
  const ListingLines interval = winter.Make(IntervalListing);
  EXPECT_EQ(interval[12].substr(0, 21), "   11    5000    5120");
  // A sounding with next to nothing in it still lists.
  Listed poor{.Sounding = test::Profile({{900, 10, 999.9}, {500, -20, 999.9}})};
  SetElevationUnknown(poor.Sounding);
  for (const ListingRow& row : Listings()) {
    SCOPED_TRACE(row.Name);
    EXPECT_FALSE(HasLine(poor.Make(row.Make), "999.9"));
    Listed empty{.Sounding = {}};
    EXPECT_NO_THROW(empty.Make(row.Make));
  }
}

TEST(Listings, NeverGrowWithTheValuesOfASounding) {
  for (const double temp : {1e6, 1e12, 1e30}) {
    Listed hot{.Sounding = test::Profile({{1000, temp, 999.9}, {500, temp, 10}, {100, temp, temp}},
                                         {{0, 200, 1e9}, {1e8, 210, 1e30}})};
    for (const ListingRow& row : Listings()) {
      SCOPED_TRACE(row.Name);
      EXPECT_LT(hot.Make(row.Make).size(), 400u);
    }
  }
}

TEST(Listings, PagesHaveTheHeaderAndEndAtNewPage) {
  Listed listed;
  listed.Sounding.Time = {.Year = 1999, .Month = 5, .Day = 4, .Hour = 0, .Minute = 0};
  listed.Make(SummaryListing);
  const ListingLines header = PageHeader(listed.Source(), {});
  ASSERT_EQ(header.size(), 3u);
  EXPECT_EQ(header[0], "VEXA:  Reference A, convective  //  1999-05-04 00:00 UTC");
  EXPECT_TRUE(header[1].starts_with("Data type: RAW     Integrated data levels: "));
  EXPECT_EQ(header[2], "Lat: 35.20 N  Lon: 97.40 W  Elev: 357 meters");
  EXPECT_EQ(PageHeader(listed.Source(), {.DataType = false, .Coordinates = false}).size(), 1u);

  const ListingLines text = {"1", "2", "3", "NEWPAGE", "4", "NEWPAGE", "NEWPAGE", "5"};
  const auto pages = Paginate(text, {"head"}, 4);  // two lines below header and blank
  ASSERT_EQ(pages.size(), 4u);
  EXPECT_EQ(pages[0], (ListingLines{"head", "", "1", "2"}));
  EXPECT_EQ(pages[1], (ListingLines{"head", "", "3"}));
  EXPECT_EQ(pages[3], (ListingLines{"head", "", "5"}));
  EXPECT_EQ(Paginate({}, {"head"}, 4).size(), 1u);
  const auto tables = Paginate({"cols", "1", "2", "3", "NEWPAGE", "4"}, {"head"}, 5, 1);
  ASSERT_EQ(tables.size(), 3u);
  EXPECT_EQ(tables[0], (ListingLines{"head", "", "cols", "1", "2"}));
  EXPECT_EQ(tables[1], (ListingLines{"head", "", "cols", "3"}));
  EXPECT_EQ(tables[2], (ListingLines{"head", "", "4"}));
}

TEST(Listings, FilesHaveTheirNames) {
  test::TemporaryFolder folder;
  Listed listed;
  listed.Make(SummaryListing);
  for (const ListingRow& row : Listings()) {
    EXPECT_FALSE(PrepareListing(row, listed.Source(), {}, folder.Path()));
  }
  using std::filesystem::directory_iterator;
  EXPECT_EQ(std::distance(directory_iterator(folder.Path()), {}), 11);
  const auto pages = ReadFile(folder.Path() / "Indixes.Dat");
  ASSERT_TRUE(pages);
  EXPECT_TRUE(pages.Value().starts_with("VEXA:  Reference A, convective  //  "));
}

}  // namespace
}  // namespace vexa::output
