#include "diagram/sounding_plot.h"

#include <algorithm>
#include <cmath>

#include "analysis/index_table.h"
#include "analysis/interpolate.h"
#include "core/numbers.h"
#include "diagram/drawn.h"
#include "diagram/palette.h"
#include "picture/clip.h"
#include "support/soundings.h"

namespace vexa::diagram {
namespace {

using test::Profile;

SoundingPlot Draw(const SoundingRecord& sounding, const Options& options = {}) {
  Drawn drawn(sounding);
  drawn.Set = options;
  return drawn();
}

TEST(SoundingPlot, ReportsItsStepsInOrderAndStopsWhenAsked) {
  const SoundingRecord sounding = test::ReferenceConvective();
  const Options options;
  const analysis::AnalysisResults results = analysis::Analyse(sounding, options);
  const PlotInput input{.Sounding = sounding, .Results = results, .Set = options, .On = kPage};

  test::ScriptedInteraction watching;
  ASSERT_TRUE(PlotSounding(input, Progress(watching)));
  ASSERT_EQ(watching.Statuses.size(), 4u);
  EXPECT_EQ(watching.Statuses.back(), "Plotting wind data . . .");

  test::ScriptedInteraction stopping;
  stopping.StopAfter = 2;
  EXPECT_FALSE(PlotSounding(input, Progress(stopping)));
  EXPECT_EQ(stopping.Statuses.size(), 3u);
}

TEST(SoundingPlot, ShadedCapeIsTheCapeOfTheNumbers) {
  // On the skew-T an area is temperature difference times log pressure: with 80 degrees across the
  // frame and ln 10.5 up it, J/kg = 287.04 · area / (width / 80 · height / ln 10.5).
  Options options;
  options.TempScaling = Scaling::Manual;  // -40 to 40
  const SoundingPlot plot = Draw(test::ReferenceConvective(), options);
  double area = 0;
  const Area cape = Tagged<Area>(plot.Page, "CAPE area").at(0);
  for (const auto& ring : cape.Rings) {
    double twice = 0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
      const Point& a = ring[i];
      const Point& b = ring[(i + 1) % ring.size()];
      twice += a.X * b.Y - b.X * a.Y;
    }
    area += std::fabs(twice) / 2;
  }
  // 3365 J/kg: the surface parcel of the reference sounding; steps and thinning cost under 1 %.
  const Rect frame = plot.Mapping.Frame();
  EXPECT_NEAR(287.04 * area / (frame.Width() / 80 * frame.Height() / std::log(10.5)), 3365, 34);
  EXPECT_EQ(Tagged(plot.Page, "CIN area").size(), 1u);
}

TEST(SoundingPlot, HeightScaleCountsInItsUnit) {
  // The reference sounding ends at 100 hPa, 16.1 km up: 52.8 thousand feet, 10.0 miles.
  const struct {
    HeightScale Scale;
    const char *Head, *Highest;
    int Each;  // what stands between two numbers
  } cases[] = {{HeightScale::Feet, " FT(x1000)", "52", 2},
               {HeightScale::Kilometers, "   KM", "16", 1},
               {HeightScale::Meters, "MT", "16000", 1000},
               {HeightScale::Miles, "MILE", "10", 1}};
  for (const auto& c : cases) {
    Options options;
    options.RightScale = c.Scale;
    const SoundingPlot plot = Draw(test::ReferenceConvective(), options);
    EXPECT_EQ(Texts(plot.Page, "height scale head").front(), c.Head);
    const LabelTexts labels = Texts(plot.Page, "height scale label");
    EXPECT_EQ(labels.back(), c.Highest);
    for (std::size_t i = 1; i < labels.size(); ++i) {
      EXPECT_EQ(std::stoi(labels[i]) - std::stoi(labels[i - 1]), c.Each) << labels[i];
    }
  }
}

TEST(SoundingPlot, ShowsTheChosenGroupsOfIndices) {
  Options options;  // Main and CAPE
  const auto labels = [&options] {
    return Texts(Draw(test::ReferenceConvective(), options).Page, "index label");
  };
  EXPECT_EQ(labels().size(), 14u);
  EXPECT_EQ(labels().front(), "        KI");
  options.PanelMain = false;
  options.PanelFog = true;
  EXPECT_EQ(labels().size(), 9u);
  options.PanelEurope = true;
  EXPECT_GT(labels().size(), 9u);
  options.ThermoNum = 5;
  EXPECT_EQ(labels().front(), "     Water");
}

// Values that say what they count from are told with their unit and have a line of their own.
TEST(SoundingPlot, LongValuesHaveALineOfTheirOwn) {
  Options options;
  options.Thermo = ThermoDisplay::Custom;
  options.CustomPanel = "KI,WBZ Hgt,Mixing Hgt,TT,VT";
  const SoundingPlot plot = Draw(test::ReferenceConvective(), options);
  EXPECT_EQ(Texts(plot.Page, "index value"),
            (LabelTexts{"31.9", "3222 m AGL", "0 m AGL", "56.2", "31.1"}));
  std::vector<double> y;
  for (const Label& value : Tagged<Label>(plot.Page, "index value")) y.push_back(value.At.Y);
  EXPECT_LT(y[0], y[1]);
  EXPECT_LT(y[1], y[2]);
  EXPECT_LT(y[2], y[3]);
  EXPECT_EQ(y[3], y[4]);
  // Numbers of a column stand by their points, words at its beginning.
  options.CustomPanel = "KI,CAPE total,Lift Mode,Water";
  const Picture page = Draw(test::ReferenceConvective(), options).Page;
  EXPECT_EQ(Texts(page, "index value"), (LabelTexts{"31.9", "3365", "LFC", "3.22"}));
  const auto values = Tagged<Label>(page, "index value");
  EXPECT_NEAR(values.at(2).At.X, values.at(0).At.X, 0.5);
  EXPECT_NEAR(values.at(3).At.X - values.at(1).At.X, 3 * 0.6 * values.at(3).Size, 0.5);
}

// How usual a value is stands at the end of its line, which it has alone then.
TEST(SoundingPlot, RanksStandBehindTheirValues) {
  Usual usual;
  usual.Ranks = {{analysis::FindIndex("TT"), 97}};
  Drawn drawn(test::ReferenceConvective());
  drawn.Set.Thermo = ThermoDisplay::Custom;
  drawn.Set.CustomPanel = "KI,TT,VT,CT";
  drawn.Spread = &usual;
  const Picture page = drawn().Page;
  const auto values = Tagged<Label>(page, "index value"), ranks = Tagged<Label>(page, "rank");
  ASSERT_EQ(ranks.size(), 1u);
  EXPECT_EQ(ranks[0].Text, "97%");
  EXPECT_EQ(ranks[0].At.Y, values.at(1).At.Y);
  EXPECT_LT(values[0].At.Y, values[1].At.Y);
  EXPECT_LT(values[1].At.Y, values[2].At.Y);
  EXPECT_EQ(values[2].At.Y, values[3].At.Y);
}

// The data end at 250 hPa, where the parcel is still warmer: nothing passes for measured.
TEST(SoundingPlot, AnAscentCutByTheEndOfTheDataSaysSo) {
  const SoundingRecord cut = test::EndingAt(test::ReferenceConvective(), 250);
  const SoundingPlot plot = Draw(cut);
  const auto marks = Texts(plot.Page, "parcel level label");
  EXPECT_TRUE(std::ranges::any_of(
      marks, [](const std::string& mark) { return mark.starts_with("EL above 250 mb  "); }));
  EXPECT_TRUE(Texts(plot.Page, "analysis value")[4].starts_with(">"));  // CAPE total
  const auto table = Texts(plot.Page, "lift table");
  EXPECT_NE(table[1].find(" >"), std::string::npos) << table[1];
  EXPECT_NE(table[5].find(" <250"), std::string::npos) << table[5];
}

TEST(SoundingPlot, AnEnteredStormMotionIsTold) {
  Drawn drawn(test::ReferenceConvective());
  const auto lines = [&] { return Texts(drawn().Page, "lift table"); };
  EXPECT_EQ(lines().size(), 6U);
  drawn.Set.MotionMode = Scaling::Manual;
  drawn.Set.ManualMotionDir = 205;
  drawn.Set.ManualMotionSpd = 30;
  EXPECT_EQ(lines().at(6), "Storm motion manual 205/30 kts");
  drawn.Set.Speed = SpeedUnits::MetersPerSecond;
  EXPECT_EQ(lines().at(6), "Storm motion manual 205/15 m/s");
}

TEST(SoundingPlot, DewPointLineBreaksWhereValuesAreMissing) {
  const SoundingPlot plot = Draw(Profile({{1000, 20, 15},
                                          {900, 14, 10},
                                          {800, 8, 999.9},
                                          {700, 2, 999.9},
                                          {600, -5, -20},
                                          {500, -14, -30}}));
  const auto runs = Lines(plot.Page, "dew point");
  ASSERT_EQ(runs.size(), 2u);
  EXPECT_NEAR(plot.Mapping.PressAt(runs[0].back().Y), 900, 0.1);
  EXPECT_NEAR(plot.Mapping.PressAt(runs[1].front().Y), 600, 0.1);

  Options without;
  without.DewptLine = TraceLine::None;
  const SoundingPlot bare = Draw(test::ReferenceWinter(), without);
  EXPECT_TRUE(Tagged(bare.Page, "dew point").empty());
  EXPECT_EQ(Texts(bare.Page, "trace name"), LabelTexts{"T"});
}

TEST(SoundingPlot, ComparesAndOverlays) {
  const SoundingRecord second = test::ReferenceWinter();
  Drawn drawn(test::ReferenceConvective());
  drawn.Mode = MultiMode::Compare;
  drawn.Others = {{&second}};
  drawn.Fronts = {{true, 3000, 2000}, {false, 5000}, {false, 6500, 6000, false}};
  drawn.Configuration = "VEXA Config #1: summer";
  const SoundingPlot plot = drawn();
  // Indices follow where a sounding is analysed.
  const LabelTexts titles = Texts(plot.Page, "other title");
  ASSERT_EQ(titles.size(), 2u);
  EXPECT_TRUE(titles[0].starts_with("#1 - Reference A, convective // 35.2N 97.4W // CAPE total "));
  EXPECT_EQ(titles[1], "#2 - Reference B, winter // 45.0N 8.0E");
  EXPECT_EQ(Tagged(plot.Page, "other temperature").size(), 1u);
  EXPECT_EQ(Texts(plot.Page, "front label"),
            (LabelTexts{"Warm Front 16404 ft ", "Cold Front 9843 ft "}));
  // A zone that is not the front has its bar only, and a front of one height no bar.
  EXPECT_EQ(Tagged(plot.Page, "front zone").size(), 2u);
  EXPECT_EQ(Tagged<Label>(plot.Page, "configuration").at(0).At, (Point{4690, 50}));
  EXPECT_TRUE(Texts(plot.Page, "surface label").empty()) << "only the line with other soundings";
  // The heights of marks are in feet whatever the unit, and the marks can be hidden.
  drawn.Set.GpmUnits = LengthUnits::Feet;
  EXPECT_EQ(Texts(drawn().Page, "front label").back(), "Cold Front 9843 ft ");
  drawn.Set.ShowFronts = false;
  EXPECT_TRUE(Texts(drawn().Page, "front label").empty());
}

// The winds of a compared sounding stand in the ink of its traces, right of the first one's; where
// its line is narrow the title gives way to the indices of both.
TEST(SoundingPlot, AComparedSoundingHasItsWindsAndIndicesOnNarrowPagesToo) {
  const SoundingRecord second = test::ReferenceWinter();
  Drawn drawn(test::ReferenceConvective());
  const analysis::AnalysisResults its = analysis::Analyse(second, drawn.Set);
  const auto symbols = [](const SoundingPlot& plot, Color ink) {
    std::vector<double> feet;
    for (const Item& item : plot.Page.Items()) {
      const auto* line = std::get_if<Polyline>(&item.Shape);
      if (item.Tag.starts_with("wind") && line != nullptr && line->Stroke.Ink == ink) {
        feet.push_back(line->Points.front().X);
      }
    }
    return feet;
  };
  const Palette inks = PaletteFor(drawn.Set);
  EXPECT_TRUE(symbols(drawn(), OverlayPen(inks, 1).Ink).empty());
  drawn.Mode = MultiMode::Compare;
  drawn.Others = {{&second, &its}};
  for (const int width : {1600, 780}) {
    SCOPED_TRACE(width);
    drawn.On = ImageSurface(width, 560);
    const SoundingPlot plot = drawn();
    EXPECT_LT(symbols(plot, inks.Wind.Ink).at(0), symbols(plot, OverlayPen(inks, 1).Ink).at(0));
    const LabelTexts titles = Texts(plot.Page, "other title");
    ASSERT_EQ(titles.size(), 2u);
    EXPECT_NE(titles[0].find("3365"), std::string::npos) << titles[0];  // CAPE
    for (const std::string& title : titles) {
      EXPECT_NE(title.find(" TT "), std::string::npos) << title;
      EXPECT_TRUE(title.starts_with("#")) << title;
    }
  }
}

// What the edges tell must be what the diagram itself reads there, curved isobars or not.
TEST(SoundingPlot, MarksStandOnTheirIsobars) {
  for (const DiagramType type : {DiagramType::SkewT, DiagramType::Tephigram}) {
    Drawn drawn(test::ReferenceConvective());
    drawn.Set.Diagram = type;
    drawn.Set.TempScaling = Scaling::Manual;
    drawn.Set.TempMin = -70;
    drawn.Set.TempMax = 40;
    drawn.Set.WindDots = drawn.Set.StabilityBars = true;
    drawn.Set.RightScale = HeightScale::Kilometers;
    const SoundingPlot plot = drawn();
    const analysis::AnalysisResults& results = drawn.Results;
    const Rect frame = plot.Mapping.Frame();
    const auto read = [&](double x, double y) { return plot.Mapping.ToCoordinates({x, y}).Press; };

    const auto marks = Lines(plot.Page, "parcel level");
    EXPECT_NEAR(read(frame.Right, marks.at(0).back().Y), results.Chosen().Condensation.Press, 0.1);
    EXPECT_NEAR(read(frame.Right, marks.at(1).back().Y), results.Chosen().FreeLevel.Press, 0.1);
    const Point foot = Lines(plot.Page, "inversion").at(0).front();
    EXPECT_NEAR(read(foot.X, foot.Y), results.Inversions.at(0).Base.Press, 0.1);
    for (const auto& line : Lines(plot.Page, "pressure line")) {
      for (const Point& at : {line.front(), line.back()}) {
        EXPECT_NEAR(read(at.X, at.Y), read(line[line.size() / 2].X, line[line.size() / 2].Y), 0.5);
      }
    }
    // The tenth kilometre, by the sounding's own heights.
    const auto scale = Tagged<Label>(plot.Page, "height scale label");
    const Label& ten = *std::ranges::find(scale, "10", &Label::Text);
    EXPECT_NEAR(read(frame.Right, ten.At.Y), analysis::GetPRESS(results.Levels, 10000), 0.1);
    const Circle lowest = Tagged<Circle>(plot.Page, "wind dot").at(0);
    EXPECT_NEAR(read(frame.Right, lowest.Center.Y),
                analysis::GetPRESS(results.Levels, drawn.Sounding.WindHgt(1)), 0.1);
  }
}

TEST(SoundingPlot, HeightsSayWhatTheyCountFrom) {
  Options options;
  options.Heights = HeightMode::Agl;
  options.FreezeLine = true;
  const SoundingPlot plot = Draw(test::ReferenceConvective(), options);
  for (const std::string& text : Texts(plot.Page, "freezing level label")) {
    EXPECT_TRUE(text.ends_with(" m AGL")) << text;
  }
  const LabelTexts labels = Texts(plot.Page, "analysis label");
  const auto elevation = std::ranges::find(labels, "  Stn Elev") - labels.begin();
  EXPECT_EQ(Texts(plot.Page, "analysis value").at(static_cast<std::size_t>(elevation)), "357 m");
}

TEST(SoundingPlot, WithoutAParcelThereIsNoEnergyEither) {
  const SoundingPlot plot = Draw(Profile({{1000, 20, 999.9}, {700, 5, 999.9}}));
  const LabelTexts table = Texts(plot.Page, "lift table");
  EXPECT_EQ(table.at(1), "CAPE          --      --      --");
  EXPECT_EQ(table.at(2), "CIN           --      --      --");
}

}  // namespace
}  // namespace vexa::diagram
