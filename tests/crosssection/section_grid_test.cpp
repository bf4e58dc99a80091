// Fields on the grid of a section, held against values worked out by hand.
#include "crosssection/section_grid.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/soundings.h"

namespace vexa::crosssection {
namespace {

Column Of(SoundingRecord record, double lon) {
  SetDecimalPosition(record, 0, lon);
  analysis::AdiabatTable adiabats;
  return ColumnOf(std::move(record), "file", AnalysisSettings{}, adiabats);
}

// Three stations a degree apart on the equator: isothermal, 0, 10 and 30 C.
Section Isothermal() {
  Section section;
  double lon = 0;
  for (const double temp : {0.0, 10.0, 30.0}) {
    section.Columns.push_back(
        Of(test::Profile({{1050, temp, temp - 10}, {500, temp, temp - 10}, {100, temp, temp - 10}},
                         {{0, 270, 10}, {20000, 270, 110}}),
           lon++));
  }
  Arrange(section);
  return section;
}

TEST(SectionGrid, IsLinearBetweenColumns) {
  const Section section = Isothermal();
  for (const SectionScale scale :
       {SectionScale::Pressure, SectionScale::Kilometers, SectionScale::Feet}) {
    SectionOptions options;
    options.Scale = scale;
    const GridX grid = GridOf(section, *FindField("TMP"), options, AxisOf(section, options));
    ASSERT_EQ(grid.Columns(), 61);
    EXPECT_FLOAT_EQ(grid(1, 20), 0);
    EXPECT_FLOAT_EQ(grid(16, 20), 5);
    EXPECT_NEAR(grid(31, 20), 10, 1e-4);
    EXPECT_NEAR(grid(46, 20), 20, 1e-4);
    EXPECT_FLOAT_EQ(grid(61, 20), 30);
  }
}

TEST(SectionGrid, IsLinearInItsVerticalScale) {
  // 20 C at 1050 hPa, -20 C at 100 hPa: on the scale of the logarithm 0 C stands half-way, where
  // the pressure is √(1050·100) = 324.04 hPa.
  Section section;
  for (const double lon : {0.0, 1.0}) {
    section.Columns.push_back(Of(test::Profile({{1050, 20, 10}, {100, -20, -30}}), lon));
  }
  Arrange(section);
  SectionOptions options;
  options.Resolution = GridResolution::High;
  const GridX grid = GridOf(section, *FindField("TMP"), options, AxisOf(section, options));
  EXPECT_NEAR(grid(1, 31), 0, 1e-5);
  EXPECT_NEAR(grid(81, 16), 10, 1e-5);
  // Potential temperature, (T + 273.16)·(1000/p)^0.2856, is linear between its own two values.
  const GridX theta = GridOf(section, *FindField("PT"), options, AxisOf(section, options));
  const double low = 293.16 * std::pow(1000 / 1050.0, 0.2856);
  const double high = 253.16 * std::pow(10, 0.2856);
  EXPECT_NEAR(theta(40, 31), (low + high) / 2, 0.001);
}

TEST(SectionGrid, HasNoValueUnderTheGroundAboveTheTopAndInGaps) {
  Section section;
  section.Columns = {
      Of(test::Profile({{850, 10, 5}, {700, 0, 999.9}, {500, -20, -30}, {300, -40, -50}}, {}, 1500),
         0),
      Of(test::Profile({{850, 10, 5}, {700, 0, -5}, {500, -20, -30}, {300, -40, -50}}, {}, 1500),
         1)};
  Arrange(section);
  SectionOptions options;
  options.UpperLimit = 200;
  const VerticalAxis axis = AxisOf(section, options);
  const auto has = [&](const char* code, int column, double press) {
    const GridX grid = GridOf(section, *FindField(code), options, axis);
    const int row = 1 + static_cast<int>(std::lround(axis.Share(-std::log(press)) * 45));
    return grid.Has(column, row);
  };
  EXPECT_FALSE(has("TMP", 30, 1000));
  EXPECT_TRUE(has("TMP", 30, 800));
  EXPECT_FALSE(has("TMP", 30, 220));
  EXPECT_FALSE(has("RH", 30, 800));  // the missing dew point is a neighbour's
  EXPECT_FALSE(has("RH", 1, 600));
  EXPECT_TRUE(has("RH", 61, 600));
  EXPECT_TRUE(has("RH", 30, 400));
}

TEST(SectionGrid, IsDrawnDownToTheGroundBetweenStations) {
  // The same air over a valley and a plateau, 40 C of the logarithm of the pressure from 1050 to
  // 100 hPa: between the two nothing is known under the plateau's 700 hPa, but the valley's air
  // goes on to where the ground is drawn, linear on this scale, and no further.
  Section section;
  section.Columns = {
      Of(test::Profile({{1050, 20, 10}, {324.037, 0, -10}, {100, -20, -30}}), 0),
      Of(test::Profile({{700, 13.1025, 0}, {324.037, 0, -10}, {100, -20, -30}}, {}, 3000), 1)};
  Arrange(section);
  SectionOptions options;
  const VerticalAxis axis = AxisOf(section, options);
  const FieldRow& field = *FindField("TMP");
  const GridX grid = GridOf(section, field, options, axis);
  const GridX drawn = CarriedUnderGround(section, field, options, axis, grid);
  const int half = 31;  // the ground is drawn at the mean of the logarithms, 857.3 hPa
  const int row = 1 + static_cast<int>(std::ceil(45 * axis.Share(-std::log(857.3))));
  EXPECT_FALSE(grid.Has(half, row));
  for (int at = row; at <= 46; ++at) {
    EXPECT_NEAR(drawn(half, at), 20 - 40.0 * (at - 1) / 45, 0.01) << at;
  }
  EXPECT_TRUE(drawn.Has(half, row - 1));
  EXPECT_FALSE(drawn.Has(half, row - 2));
}

TEST(SectionGrid, WindComponentsPointTheUsualWay) {
  // 270 degrees, 10 kt at the ground: from the west, hence u = +10, v = 0. The section runs east
  // along the equator: nothing crosses it. A wind from the south crosses it from right to left.
  Section section = Isothermal();
  SectionOptions options;
  options.Scale = SectionScale::Kilometers;
  const VerticalAxis axis = AxisOf(section, options);
  const auto at = [&](const char* code) {
    return GridOf(section, *FindField(code), options, axis)(1, 1);
  };
  EXPECT_NEAR(section.Bearing(), 90, 1e-4);
  EXPECT_NEAR(at("WND"), 10, 1e-4);
  EXPECT_NEAR(at("UWND"), 10, 1e-4);
  EXPECT_NEAR(at("VWND"), 0, 1e-4);
  EXPECT_NEAR(at("XWND"), 0, 1e-4);
  options.CrossDirection = 360;  // northward: the wind from the left goes to the right
  EXPECT_NEAR(at("XWND"), 10, 1e-4);
  options.Speed = SpeedUnits::MetersPerSecond;
  EXPECT_NEAR(at("WND"), 5.144, 1e-4);
  EXPECT_EQ(TitleOf(*FindField("xwnd"), {.Bearing = 66.4}), "Cross-Wind (knots) {wrt 066}  ");
}

TEST(SectionGrid, ClassesStandAroundTheirColumn) {
  // Contrails: -60 C in the upper air of the middle station alone.
  Section section;
  for (const double temp : {-20.0, -60.0, -20.0}) {
    section.Columns.push_back(
        Of(test::Profile(
               {{1050, 20, 10}, {400, -20, -25}, {300, temp, temp - 3}, {100, temp, temp - 3}}),
           static_cast<double>(section.Columns.size())));
  }
  Arrange(section);
  const SectionOptions options;
  const FieldRow& field = *FindField("TRAIL");
  const VerticalAxis axis = AxisOf(section, options);
  const GridX grid = GridOf(section, field, options, axis);
  const int row = 1 + static_cast<int>(std::lround(axis.Share(-std::log(200)) * 45));
  EXPECT_EQ(grid(15, row), 0);
  EXPECT_EQ(grid(17, row), 1);
  EXPECT_EQ(grid(45, row), 1);
  EXPECT_EQ(grid(47, row), 0);
  EXPECT_EQ(field.Layers(section.Columns[1]).at(0).Word, " CP ");
}

TEST(AnalyzeField, SaysWhyThereIsNothing) {
  Section section = Isothermal();
  const FieldRow& field = *FindField("TMP");
  SectionOptions options;
  Outcome<FieldAnalysis> analysis = AnalyzeField(section, field, options, {});
  ASSERT_TRUE(analysis);
  EXPECT_TRUE(analysis.Value().Refusal.empty());
  EXPECT_EQ(analysis.Value().Contours.size(), 7U);  // 0 to 30 by 5
  EXPECT_TRUE(analysis.Value().Freezing);

  IntervalSettings wide;
  wide.Chosen["TMP"] = 100;
  section.Columns.erase(section.Columns.begin());
  Arrange(section);
  analysis = AnalyzeField(section, field, options, wide);
  ASSERT_TRUE(analysis);
  EXPECT_EQ(analysis.Value().Refusal, std::vector<std::string>{"Data found but not plotted ..."});

  options.UpperLimit = 10;
  section.Columns = {Of(test::Profile({{500, 0, -5}, {400, -9, -14}}, {}, 5500), 0),
                     Of(test::Profile({{500, 0, -5}, {400, -9, -14}}, {}, 5500), 1)};
  Arrange(section);
  analysis = AnalyzeField(section, field, options, {});
  ASSERT_TRUE(analysis);
  EXPECT_EQ(analysis.Value().Refusal.size(), 7U);

  for (Column& column : section.Columns) column.X = 0;
  analysis = AnalyzeField(section, field, options, {});
  ASSERT_FALSE(analysis);
  EXPECT_EQ(analysis.Error().Detail, "DataRange = 0");
}

TEST(Intervals, AreDoubledWhenThereAreTooMany) {
  EXPECT_EQ(LevelsFor({-12, 13}, 5).Levels, (std::vector<double>{-10, -5, 0, 5, 10}));
  EXPECT_EQ(LevelsFor({0, 60}, 1).Interval, 2);  // 61 levels are one too many
  EXPECT_EQ(LevelsFor({0, 59}, 1).Interval, 1);
  EXPECT_TRUE(LevelsFor({1, 4}, 5).Levels.empty());
  EXPECT_FALSE(IntervalFrom("0"));
  EXPECT_FALSE(IntervalFrom("five"));
  EXPECT_EQ(IntervalFrom(" 2.5 ").Value(), 2.5);
  IntervalSettings set;
  set.Chosen = {{"TMP", 2.5}, {"RH", 20}};
  EXPECT_EQ(ReadIntervals(Write(set)), set);
  EXPECT_EQ(Write(set).substr(0, 46), "\"This is a VEXA system file -- Do Not Alter.\"\r");
  EXPECT_TRUE(ReadIntervals("\"h\"\r\n\"NONE\",5\r\n\"TMP\",-1\r\n").Chosen.empty());
}

TEST(Checks, AskBeforeDrawing) {
  const Section whole = Isothermal();
  SectionOptions options;
  EXPECT_TRUE(ChecksFor(whole, *FindField("TMP"), options).empty());
  EXPECT_TRUE(ChecksFor(whole, *FindField("RH"), options).empty());
  struct Doubt {
    const char* Field;
    SoundingRecord Other;
    const char* Text;
  };
  const test::TempRow top{100, -50, -60};
  const Doubt cases[] = {
      {"WND", test::Profile({{1050, 0, 0}, top}), "Results will not be reliable."},
      {"WND", test::Profile({{1050, 0, 0}, top}, {{0, 270, 5}, {900, 270, 9}}),
       "Not all soundings have upper-level wind data."},
      {"TMP", test::Profile({}, {{0, 270, 5}}), "One or more soundings have no temperature data."},
      {"TMP", test::Profile({{1050, 0, 0}, {400, -9, -9}}),
       "Not all soundings have temperature data to 100 mb."},
      {"RH", test::Profile({{1050, 0, 0}, {500, -9, 999.9}, top}),
       "One or more data levels have missing dewpoints."},
  };
  for (const auto& [field, other, text] : cases) {
    SCOPED_TRACE(text);
    Section section = whole;
    section.Columns.push_back(Of(other, 3));
    const std::vector<Box> boxes = ChecksFor(section, *FindField(field), options);
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_NE(boxes[0].Text.find(text), std::string::npos) << boxes[0].Text;
    EXPECT_EQ(boxes[0].Buttons, BoxButtons::OkCancel);
  }
  // Dew points high up are missing as a rule and nobody's fault.
  for (const auto& [press, isAsked] : {std::pair(299, false), std::pair(300, true)}) {
    Section dry = whole;
    dry.Columns.push_back(Of(
        test::Profile({{1050, 0, 0}, {static_cast<double>(press), -50, 999.9}, {100, -50, 999.9}}),
        3));
    EXPECT_EQ(ChecksFor(dry, *FindField("RH"), options).size(), isAsked ? 1U : 0U) << press;
  }
}

TEST(Settings, OfTheWindowAreKept) {
  SectionOptions options;
  options.Scale = SectionScale::Feet;
  options.UpperLimit = 250;
  options.CrossDirection = 215;
  options.SmoothingPasses = 5;
  options.Resolution = GridResolution::High;
  EXPECT_EQ(ReadSectionOptions(Write(options)), options);
  SectionState state;
  state.AutoLoad = true;
  state.LastDataset = "Front, 5 March";
  state.Direction = SectionDirection::Reverse;
  EXPECT_EQ(ReadSectionState(Write(state)), state);
  EXPECT_EQ(ReadSectionState("rubbish"), SectionState{});
  EXPECT_EQ(SectionStateFile(), "VEXA56+.XXX");
  EXPECT_EQ(SectionOptionsFile(), "VEXA56+.XXS");
}

}  // namespace
}  // namespace vexa::crosssection
