#include "diagram/scaling.h"

#include "config/options.h"
#include "support/soundings.h"

namespace vexa::diagram {
namespace {

using test::Profile;

constexpr Rect kPlot{1300, 620, 7900, 8220};

SoundingRecord ReachingTo(double top) {
  return Profile({{1000, 15, 10}, {500, -20, -30}, {top, -60, 999.9}});
}

TEST(ChooseDiagram, TopAndTypeFollowTheData) {
  struct Case {
    const char* about;
    double top;
    bool above100;
    DiagramType chosen;
    bool autoEmagram;
    DiagramType type;
    double topPress;
    bool beyond;
  };
  using enum DiagramType;
  const Case cases[] = {
      {"ends low: the next line of the list above it", 450, false, SkewT, true, SkewT, 400, false},
      {"ends on a line", 300, false, SkewT, true, SkewT, 300, false},
      {"usual radiosonde", 10, false, SkewT, true, SkewT, 100, false},
      {"high part wanted: emagram", 22, true, SkewT, true, Emagram, 10, false},
      {"high part wanted, own choice kept", 60, true, SkewT, false, SkewT, 50, false},
      {"tephigram ends at 100", 20, true, Tephigram, false, Tephigram, 100, true},
      {"tephigram of a usual radiosonde", 20, false, Tephigram, true, Tephigram, 100, true},
      {"tephigram below 100 has nothing to warn of", 110, true, Tephigram, true, Tephigram, 100,
       false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.about);
    Options options;
    options.Above100mb = c.above100;
    options.Diagram = c.chosen;
    options.AutoHighEmagram = c.autoEmagram;
    const DiagramChoice choice = ChooseDiagram(ReachingTo(c.top), options);
    EXPECT_EQ(choice.Type, c.type);
    EXPECT_EQ(choice.TopPress, c.topPress);
    EXPECT_EQ(choice.BeyondTephigram, c.beyond);
  }
  EXPECT_EQ(ChooseDiagram({}, {}).TopPress, 100) << "an empty diagram";
  Options manual;
  manual.AutoMbSelect = false;
  manual.MbLimit = 50;
  EXPECT_EQ(ChooseDiagram(ReachingTo(10), manual).TopPress, 100) << "above 100 not wanted";
  manual.MbLimit = 400;
  EXPECT_EQ(ChooseDiagram(ReachingTo(10), manual).TopPress, 400);
}

TEST(ChooseTempRange, KeepsEveryTemperatureInTheFrame) {
  struct Case {
    const char* about;
    SoundingRecord sounding;
  };
  const Case cases[] = {
      {"mid-latitude", test::ReferenceConvective()},
      {"desert", Profile({{990, 46, 5}, {700, 18, -20}, {500, -5, -45}, {100, -75, 999.9}})},
      {"polar plateau",
       Profile({{680, -64, -70}, {650, -45, -49}, {300, -62, -66}, {100, -80, 999.9}})},
      {"Siberia", Profile({{1040, -48, -51}, {950, -25, -30}, {500, -45, -50}, {100, -60, 999.9}})},
      {"warm stratosphere", Profile({{1000, 25, 20}, {200, -40, -60}, {100, -35, 999.9}})},
      {"one level", Profile({{850, 10, 5}})},
  };
  for (const Case& c : cases) {
    for (const DiagramType type :
         {DiagramType::SkewT, DiagramType::Emagram, DiagramType::Tephigram}) {
      SCOPED_TRACE(c.about);
      SCOPED_TRACE(static_cast<int>(type));
      Options options;
      options.Diagram = type;
      const DiagramChoice choice = ChooseDiagram(c.sounding, options);
      const TempRange range = ChooseTempRange(c.sounding, options, choice, kPlot);
      const DiagramMapping at(choice.Type, kPlot, range.Min, range.Max, choice.TopPress);
      for (int i = 1; i <= c.sounding.NumTempLevels(); ++i) {
        if (c.sounding.Press(i) < choice.TopPress) continue;
        const Point point = at.ToPoint(c.sounding.Temp(i), c.sounding.Press(i));
        EXPECT_GE(point.X, kPlot.Left) << c.sounding.Press(i);
        EXPECT_LE(point.X, kPlot.Right) << c.sounding.Press(i);
      }
    }
  }
  Options manual;
  manual.TempScaling = Scaling::Manual;
  manual.TempMin = -30;
  manual.TempMax = 20;
  const TempRange range = ChooseTempRange(cases[1].sounding, manual, {}, kPlot);
  EXPECT_EQ(range.Min, -30);
  EXPECT_EQ(range.Max, 20);
}

// The fixed skew moves the air at 10 hPa by more than the frame's width.
TEST(ChooseTempRange, HoldsAHighAscentOnTheSkewT) {
  Options options;
  options.Above100mb = true;
  options.AutoHighEmagram = false;
  const SoundingRecord sounding = Profile({{970, 28, 22},
                                           {700, 10, -2},
                                           {500, -10, -25},
                                           {350, -30, -50},
                                           {200, -58, -70},
                                           {100, -62, -80},
                                           {30, -52, -84},
                                           {10, -40, -84}});
  const DiagramChoice choice = ChooseDiagram(sounding, options);
  ASSERT_EQ(choice.TopPress, 10);
  const TempRange range = ChooseTempRange(sounding, options, choice, kPlot);
  const DiagramMapping at(choice.Type, kPlot, range.Min, range.Max, choice.TopPress);
  for (int i = 1; i <= sounding.NumTempLevels(); ++i) {
    for (const double temp : {sounding.Temp(i), sounding.Dewpt(i)}) {
      const Point point = at.ToPoint(temp, sounding.Press(i));
      EXPECT_GE(point.X, kPlot.Left) << sounding.Press(i);
      EXPECT_LE(point.X, kPlot.Right) << sounding.Press(i);
    }
  }
}

}  // namespace
}  // namespace vexa::diagram
