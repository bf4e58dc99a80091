// Places of columns along a line and in time, and soundings between them.
#include "crosssection/column.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/soundings.h"

namespace vexa::crosssection {
namespace {

Column At(double lat, double lon, int hour = 0, int elevM = 0) {
  SoundingRecord record = test::Profile({{1000, 20, 10}, {500, -20, -30}, {200, -55, 999.9}},
                                        {{0, 270, 20}, {9000, 270, 60}}, elevM);
  SetDecimalPosition(record, lat, lon);
  record.StationTitle = "S" + std::to_string(hour);
  record.Time = {2024, 3, 5, hour, 0};
  analysis::AdiabatTable adiabats;
  return ColumnOf(std::move(record), "file", AnalysisSettings{}, adiabats);
}

std::string Titles(const Section& section) {
  std::string titles;
  for (const Column& column : section.Columns) titles += column.Sounding.StationTitle + ' ';
  return titles;
}

TEST(Distances, AreGreatCircles) {
  // Computed apart from this program with a sphere of 6371.0 km; the program's degrees per radian
  // are rounded in the seventh figure.
  struct Case {
    double Lat, Lon, Bearing, Km;
  };
  for (const Case& c : {Case{36.6, -97.5, 356.72, 155.93}, Case{34.9, -101.7, 266.37, 392.82}}) {
    EXPECT_NEAR(DistanceKm(35.2, -97.4, c.Lat, c.Lon), c.Km, 0.01);
    EXPECT_NEAR(InitialBearing(35.2, -97.4, c.Lat, c.Lon), c.Bearing, 0.005);
  }
  // A degree of a great circle is 111.195 km: beside a line along the equator, and beyond its end.
  const LinePlace beside = PlaceOnLine({0, 10}, {0, 20}, {1, 13});
  EXPECT_NEAR(beside.AlongKm, 3 * 111.195, 0.1);
  EXPECT_NEAR(beside.BesideKm, 111.195, 0.01);
  EXPECT_NEAR(PlaceOnLine({0, 10}, {0, 20}, {0, 22}).BesideKm, 222.39, 0.02);
  EXPECT_NEAR(PlaceOnLine({0, 10}, {0, 20}, {0, 9}).BesideKm, 111.195, 0.01);
}

TEST(Arrange, OrdersStationsAlongTheirLine) {
  Section section;
  // Listed from the middle of the western half on; the line runs west to east over the date line.
  for (const auto& [lon, hour] : {std::pair{178.0, 1}, std::pair{-177.0, 4}, std::pair{177.0, 0},
                                  std::pair{-178.5, 3}, std::pair{179.5, 2}}) {
    section.Columns.push_back(At(10 + 0.1 * hour, lon, hour));
  }
  Arrange(section);
  EXPECT_EQ(Titles(section), "S0 S1 S2 S3 S4 ");
  EXPECT_EQ(section.Columns[0].X, 0);
  double way = 0;
  for (std::size_t i = 1; i < section.Columns.size(); ++i) {
    const SoundingRecord& a = section.Columns[i - 1].Sounding;
    const SoundingRecord& b = section.Columns[i].Sounding;
    way += DistanceKm(a.LatSigned, a.LonSigned, b.LatSigned, b.LonSigned);
    EXPECT_NEAR(section.Columns[i].X, way, 1e-9);
  }
  EXPECT_NEAR(way, 6 * 111.195 * std::cos(10.2 * 3.14159265 / 180), 2);

  const double second = section.Columns[1].X;
  FlipTime(section);
  EXPECT_EQ(Titles(section), "S4 S3 S2 S1 S0 ");
  EXPECT_EQ(section.Direction, SectionDirection::Reverse);
  EXPECT_EQ(section.Columns[0].X, 0);
  EXPECT_NEAR(section.Columns[3].X, way - second, 1e-9);
  for (Column& column : section.Columns) column.Order = 1 + column.Sounding.Time.Hour;
  Arrange(
      section);  // stays turned: the order in which they were given counts, not where they stand
  EXPECT_EQ(Titles(section), "S4 S3 S2 S1 S0 ");
  EXPECT_EQ(section.Direction, SectionDirection::Reverse);
  EXPECT_EQ(section.Columns[0].X, 0);
}

TEST(Arrange, CountsHoursFromTheEarliest) {
  Section section{.Kind = SectionKind::Time};
  section.Columns = {At(40, 10, 18), At(40, 10, 6), At(40, 10, 12)};
  section.Columns[0].Sounding.Time = {2023, 12, 31, 23, 30};
  section.Columns[1].Sounding.Time = {2024, 3, 1, 0, 0};  // behind a 29 February
  section.Columns[2].Sounding.Time = {2024, 1, 1, 1, 0};
  Arrange(section);
  EXPECT_EQ(Titles(section), "S18 S12 S6 ");
  EXPECT_EQ(section.Columns[1].X, 1.5);
  EXPECT_EQ(section.Columns[2].X, 60 * 24 + 0.5);
}

TEST(WhyNoSection, SaysItInASentence) {
  Section section;
  EXPECT_NE(WhyNoSection(section), "");
  section.Columns = {At(40, 10)};
  EXPECT_EQ(WhyNoSection(section),
            "One sounding alone makes no cross-section; it takes two at least.");
  section.Columns.push_back(At(41, 10, 0));
  EXPECT_EQ(WhyNoSection(section), "");
  section.Columns[1].Sounding.LatHemi.clear();
  EXPECT_NE(WhyNoSection(section).find("position"), std::string::npos);
  section.Kind = SectionKind::Time;
  EXPECT_EQ(WhyNoSection(section), "");
  section.Columns[0].Sounding.Time = {};
  EXPECT_NE(WhyNoSection(section).find("time"), std::string::npos);
}

TEST(SectionRemarks, TellWhatIsOdd) {
  Section section;
  section.Columns = {At(40, 10), At(41, 10), At(41, 10)};
  Arrange(section);
  ASSERT_EQ(SectionRemarks(section).size(), 1U);
  EXPECT_NE(SectionRemarks(section)[0].find("twice"), std::string::npos);
  section.Columns.pop_back();
  EXPECT_TRUE(SectionRemarks(section).empty());
  section.Columns[1].Sounding.Time.Year = 2019;
  EXPECT_NE(SectionRemarks(section).at(0).find("2019 to 2024"), std::string::npos);
  section.Kind = SectionKind::Time;
  EXPECT_NE(SectionRemarks(section).at(0).find("one station"), std::string::npos);
}

TEST(Interpolation, IsLinearAtEqualPressure) {
  SoundingRecord west = test::Profile({{1000, 20, 10}, {500, -20, -30}, {200, -60, 999.9}},
                                      {{0, 270, 20}, {5000, 270, 40}, {12000, 270, 40}});
  SoundingRecord east = test::Profile({{900, 10, 0}, {500, -10, -20}, {300, -40, -60}},
                                      {{1000, 180, 20}, {5000, 180, 40}, {9000, 180, 40}}, 1000);
  SetDecimalPosition(west, 40, -180);
  SetDecimalPosition(east, 42, 178);
  west.Time = {2024, 2, 28, 12, 0};
  east.Time = {2024, 3, 1, 0, 0};
  analysis::AdiabatTable adiabats;
  const Column left = ColumnOf(west, "w", AnalysisSettings{}, adiabats);
  const Column right = ColumnOf(east, "e", AnalysisSettings{}, adiabats);
  const SoundingRecord made = Interpolated(left, right);
  EXPECT_EQ(made.StationTitle, "Interpolated");
  EXPECT_EQ(made.ElevM, 500);
  EXPECT_EQ(made.LatSigned, 41);
  EXPECT_EQ(made.LonSigned, 179);
  EXPECT_EQ(made.Time, (ObservationTime{2024, 2, 29, 6, 0}));
  // The ground at √(1000·900) hPa, between both; by hand.
  EXPECT_EQ(made.Press(1), 948.7);
  EXPECT_EQ(made.Temp(1), 15);
  EXPECT_EQ(made.Dewpt(1), 5);
  EXPECT_NEAR(made.WindDir(1), 225, 0.5);
  EXPECT_EQ(made.WindHgt(1), 500);
  int level = 1;
  while (made.Press(level) > 500) ++level;
  EXPECT_EQ(made.Press(level), 500);
  EXPECT_EQ(made.Temp(level), -15);
  EXPECT_EQ(made.Dewpt(level), -25);
  EXPECT_EQ(made.Press.Top(), 300);  // both reach it
  EXPECT_EQ(made.Dewpt.Top(), 999.9);

  Section section;
  section.Columns = {left, right};
  Arrange(section);
  InterpolateSoundings(section, AnalysisSettings{}, adiabats);
  ASSERT_EQ(section.Columns.size(), 3U);
  EXPECT_TRUE(section.Columns[1].IsInterpolated);
  EXPECT_NEAR(section.Columns[1].X, section.Columns[2].X / 2, 1e-9);
  EXPECT_EQ(section.Columns[1].Ground(), 500);
}

}  // namespace
}  // namespace vexa::crosssection
