// Projections, the shipped lines and the map's picture.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "core/files.h"
#include "map/area_map.h"
#include "support/page_checks.h"
#include "support/soundings.h"
#include "support/tagged_items.h"

namespace vexa::map {
namespace {

constexpr Rect kPage{1000, 500, 11000, 8500};

TEST(Projection, SuitsItsArea) {
  const struct {
    const char* About;
    std::vector<Place> Places;
    ProjectionKind Kind;
  } cases[] = {
      {"the plains", {{35, -97}, {45, -100}}, ProjectionKind::Lambert},
      {"Australia", {{-35, 150}, {-25, 130}}, ProjectionKind::Lambert},
      {"the Arctic", {{70, -150}, {80, 30}}, ProjectionKind::PolarStereographic},
      {"Antarctica", {{-89, 0}, {-67, 140}}, ProjectionKind::PolarStereographic},
      {"Micronesia", {{7, 158}, {13, 144}}, ProjectionKind::Mercator},
      {"over the equator", {{-30, 20}, {40, 10}}, ProjectionKind::Mercator},
      {"around the northern pole",
       {{40, -120}, {50, 0}, {45, 110}},
       ProjectionKind::PolarStereographic},
      {"all continents", {{-89.98, 0}, {64, -147}, {35, 139}, {-34, 18}}, ProjectionKind::World},
      {"Fiji, over the date line", {{-17, 178}, {-14, -171}}, ProjectionKind::Mercator},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    EXPECT_EQ(SuitableFor(c.Places), c.Kind);
    const MapFrame frame(c.Places, kPage);
    for (const Place& place : c.Places) {
      const Point at = frame.ToPage(place).value();
      EXPECT_TRUE(kPage.Contains(at));
      const Place back = frame.ToPlace(at).value();
      EXPECT_NEAR(back.Lat, place.Lat, 1e-6);
      EXPECT_NEAR(std::remainder(back.Lon - place.Lon, 360.0), 0, 1e-5);
    }
  }
}

TEST(Projection, IsConformalAndTrueToScaleAtItsMiddle) {
  // A hundredth of a degree of latitude on a sphere of 6371 km is 1.11195 km, one of longitude that
  // times the cosine; a conformal map shows both on one scale, at a right angle.
  for (const Place& middle : {Place{40, -97}, Place{75, 20}, Place{5, 150}, Place{-75, 100}}) {
    const MapFrame frame({{middle.Lat - 1, middle.Lon - 1}, {middle.Lat + 1, middle.Lon + 1}},
                         kPage);
    const Point at = *frame.ToPage(middle);
    const Point north = *frame.ToPage({middle.Lat + 0.01, middle.Lon});
    const Point east = *frame.ToPage({middle.Lat, middle.Lon + 0.01});
    const double up = std::hypot(north.X - at.X, north.Y - at.Y) / 1.11195;
    const double across = std::hypot(east.X - at.X, east.Y - at.Y) /
                          (1.11195 * std::cos(middle.Lat * 3.14159265358979 / 180));
    EXPECT_NEAR(up / frame.PerKm(), 1, 0.002);
    EXPECT_NEAR(across / up, 1, 0.002);
    const double dot = (north.X - at.X) * (east.X - at.X) + (north.Y - at.Y) * (east.Y - at.Y);
    EXPECT_NEAR(dot / (up * across), 0, 0.002);
  }
}

TEST(Projection, JoinsOverTheDateLine) {
  const MapFrame frame({{52, 175}, {55, -170}}, kPage);
  const Point west = *frame.ToPage({53, 179.9});
  const Point east = *frame.ToPage({53, -179.9});
  EXPECT_GT(east.X, west.X);
  EXPECT_LT(east.X - west.X, 0.05 * kPage.Width());
}

TEST(Projection, MovesAndEnlarges) {
  const MapFrame frame({{35, -97}, {45, -100}}, kPage);
  const Place place{41, -98};
  const Point at = *frame.ToPage(place);
  const Point moved = *frame.Moved(100, -50).ToPage(place);
  EXPECT_NEAR(moved.X, at.X + 100, 1e-6);
  EXPECT_NEAR(moved.Y, at.Y - 50, 1e-6);
  const Point about{2000, 3000};
  const Point larger = *frame.Enlarged(2, about).ToPage(place);
  EXPECT_NEAR(larger.X, about.X + 2 * (at.X - about.X), 1e-6);
  EXPECT_NEAR(larger.Y, about.Y + 2 * (at.Y - about.Y), 1e-6);
  EXPECT_FALSE(MapFrame().ToPage(place));
  EXPECT_FALSE(MapFrame({}, kPage).IsValid());
}

TEST(Projection, KeepsItsMiddleOnAnotherRectangle) {
  const MapFrame frame({{35, -97}, {45, -100}}, kPage);
  const Rect smaller{0, 0, kPage.Width() / 2, kPage.Height() / 2};
  const Point middle{(kPage.Left + kPage.Right) / 2, (kPage.Top + kPage.Bottom) / 2};
  const Point placed = *frame.Placed(smaller).ToPage(*frame.ToPlace(middle));
  EXPECT_NEAR(placed.X, smaller.Width() / 2, 1e-3);
  EXPECT_NEAR(placed.Y, smaller.Height() / 2, 1e-3);
  EXPECT_NEAR(frame.Placed(smaller).PerKm(), frame.PerKm() / 2, 1e-9);
}

TEST(Projection, GreatCirclesLeadTheShortestWay) {
  // By hand: between two places on the parallel of 60 degrees, 90 degrees apart, the great circle
  // has its northernmost point half-way, where tan(lat) = tan(60) / cos(45), 67.792 degrees.
  const std::vector<Place> way = GreatCircle({60, 0}, {60, 90}, 10);
  const auto highest = std::ranges::max_element(way, {}, &Place::Lat);
  EXPECT_NEAR(highest->Lat, 67.792, 0.01);
  EXPECT_NEAR(highest->Lon, 45, 0.2);
  EXPECT_EQ(way.front(), (Place{60, 0}));
  EXPECT_EQ(way.back(), (Place{60, 90}));
  EXPECT_EQ(GreatCircle({1, 2}, {1, 2}).size(), 2U);
}

TEST(Lines, AreReadAsTheyAreShipped) {
  const auto bytes = ReadFile(test::SourceFolder() / "share" / "VEXA.MAP");
  ASSERT_TRUE(bytes);
  const auto lines = ReadLines(bytes.Value(), "VEXA.MAP");
  ASSERT_TRUE(lines);
  int kinds[3] = {};
  for (const MapLine& line : lines.Value()) {
    ++kinds[static_cast<int>(line.Kind)];
    for (const Place& place : line.Points) {
      ASSERT_LE(std::fabs(place.Lat), 90);
      ASSERT_LE(std::fabs(place.Lon), 180);
    }
  }
  EXPECT_GT(kinds[0], 1000);
  EXPECT_GT(kinds[1], 300);
  EXPECT_GT(kinds[2], 100);
  // The corner where four states of the US meet, 36.999 N 109.045 W by survey.
  int corners = 0;
  for (const MapLine& line : lines.Value()) {
    if (line.Kind != LineKind::State) continue;
    for (const Place& end : {line.Points.front(), line.Points.back()}) {
      if (std::hypot(end.Lat - 36.999, end.Lon + 109.045) < 0.02) ++corners;
    }
  }
  EXPECT_EQ(corners, 4);
}

TEST(Lines, OfADamagedFileAreRefused) {
  const std::string good = std::string("VEXA MAP 1\norigin\n") + '\0' + '\2' + "\2\4\1\3";
  const auto lines = ReadLines(good, "a.MAP");
  ASSERT_TRUE(lines);
  ASSERT_EQ(lines.Value().size(), 1U);
  // Steps 1 and 2 hundredths, then -1 and -2: by hand from the form.
  EXPECT_EQ(lines.Value()[0].Points, (std::vector<Place>{{0.02, 0.01}, {0, 0}}));
  for (std::size_t length = 0; length < good.size(); ++length) {
    if (length == good.find('\0')) continue;  // a file without a line
    const auto cut = ReadLines(good.substr(0, length), "a.MAP");
    ASSERT_FALSE(cut) << length;
    EXPECT_NE(cut.Error().Detail.find("a.MAP, byte "), std::string::npos);
  }
  EXPECT_FALSE(ReadLines(good + '\7', "a.MAP"));
}

TEST(AreaMap, ShowsStationsAndTheirLine) {
  const std::vector<MapStation> stations = {{{35.2, -97.4}, "OUN"}, {{37.8, -100}, "DDC"}};
  const std::vector<MapLine> lines = {{LineKind::State, {{37, -103}, {37, -94}}},
                                      {LineKind::Coast, {{-10, 20}, {-12, 22}}}};
  int symbols = 0;
  const auto symbol = [&](Picture&, Point, double north, std::size_t) {
    ++symbols;
    EXPECT_LT(std::fabs(north), 3);
  };
  const AreaMap map = PlotAreaMap(
      {.Title = "Area", .Stations = stations, .Lines = lines, .Symbol = symbol}, {10000, 8000});
  const auto count = [&](std::string_view tag) { return test::Tagged(map.Page, tag).size(); };
  EXPECT_EQ(count("station mark"), 2u);
  EXPECT_EQ(count("station name"), 2u);
  EXPECT_EQ(count("section line"), 1u);
  EXPECT_EQ(StationAt(stations, map.At, *map.At.ToPage({37.8, -100}), 50), 1U);
  EXPECT_FALSE(StationAt(stations, map.At, *map.At.ToPage({36.5, -98.7}), 50));
  EXPECT_EQ(count("state"), 1u);
  EXPECT_EQ(count("coast"), 0u);  // elsewhere
  EXPECT_EQ(symbols, 2);
  EXPECT_GT(count("graticule"), 4u);
}

// A ring round a station, as that of a chosen one, is no place for its name nor for its
// neighbour's.
TEST(AreaMap, NamesStandOutsideTheRingsOfSymbols) {
  const std::vector<MapStation> stations = {{{50.2, -5.3}, "CAMBORNE"}, {{50.3, -4.1}, "PLYMOUTH"}};
  const std::vector<MapLine> none;
  constexpr double kRadius = 130;
  const auto symbol = [](Picture& page, Point at, double, std::size_t) {
    page.Add("ring", Circle{.Center = at, .Radius = kRadius, .Stroke = {.Width = 44}});
  };
  const AreaMap map = PlotAreaMap(
      {.Title = "Area", .Stations = stations, .Lines = none, .Symbol = symbol}, {10000, 8000});
  const std::vector<Label> names = test::Tagged<Label>(map.Page, "station name");
  ASSERT_EQ(names.size(), 2U);
  for (const Circle& ring : test::Tagged<Circle>(map.Page, "ring")) {
    for (const Label& name : names) {
      const Rect place = test::PlaceOf(name);
      const double dx = std::max({place.Left - ring.Center.X, ring.Center.X - place.Right, 0.0});
      const double dy = std::max({place.Top - ring.Center.Y, ring.Center.Y - place.Bottom, 0.0});
      EXPECT_GE(std::hypot(dx, dy), kRadius + 22) << name.Text;
    }
  }
}

TEST(AreaMap, ALineBetweenFarPlacesIsNotPassedOver) {
  // A border along a parallel that has no point on the map, one that ends west of it, and one of
  // the other half of the globe.
  const std::vector<MapStation> stations = {{{48, -110}, "A"}, {{50, -108}, "B"}};
  const std::vector<MapLine> lines = {{LineKind::Border, {{49, -123}, {49, -95}}},
                                      {LineKind::Border, {{49, -160}, {49, -150}}},
                                      {LineKind::Border, {{-49, -123}, {-49, -95}}}};
  const AreaMap map =
      PlotAreaMap({.Title = "Border", .Stations = stations, .Lines = lines}, {10000, 8000});
  EXPECT_EQ(test::Tagged(map.Page, "border").size(), 1u);
}

TEST(AreaMap, ALineOverItsCutLeavesTheMap) {
  // The globe seen from Greenwich is cut at the date line: a coast that crosses it must not lead
  // across the whole map.
  const std::vector<MapStation> stations = {{{60, -80}, "A", true}, {{-60, 80}, "B", true}};
  const std::vector<MapLine> lines = {
      {LineKind::Coast, {{60, 178}, {60, 179.9}, {60, -179.9}, {60, -178}}}};
  const AreaMap map =
      PlotAreaMap({.Title = "World", .Stations = stations, .Lines = lines}, {10000, 8000});
  ASSERT_EQ(map.At.Kind(), ProjectionKind::World);
  for (const Polyline& line : test::Tagged<Polyline>(map.Page, "coast")) {
    EXPECT_LT(std::fabs(line.Points.back().X - line.Points.front().X), 500);
  }
  EXPECT_EQ(test::Tagged(map.Page, "station aside").size(), 2u);
}

}  // namespace
}  // namespace vexa::map
