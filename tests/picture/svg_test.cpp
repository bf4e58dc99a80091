#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "picture/picture.h"

namespace vexa {
namespace {

constexpr Color kRed{255, 0, 0};

// The lines of the document that carry a class.
std::string Lines(const std::string& svg, const std::string& tag) {
  std::string found;
  std::size_t at = 0;
  while (at < svg.size()) {
    const std::size_t end = svg.find('\n', at);
    const std::string line = svg.substr(at, end - at);
    if (line.find("class=\"" + tag + "\"") != std::string::npos) found += line + "\n";
    at = end + 1;
  }
  return found;
}

TEST(ToSvg, WritesTheWholeDocument) {
  Picture page(1200, 900, {255, 255, 255});
  page.Add("line", Polyline{{{0, 0}, {100.126, -0.001}}, {kRed, 30, LineStyle::Solid}});
  page.Add("area", Area{{{{0, 0}, {50, 0}, {50, 50}}}, {{0, 128, 0, 51}, FillStyle::Plain}, {}});
  page.Add("dot", Circle{{10, 20}, 5, {kRed, FillStyle::Plain}, {}});
  page.Add("name", Label{.At = {600, 450}, .Text = "T < 0 & \"calm\"", .Size = 100});
  const std::string expected =
      "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"400\" height=\"300\" "
      "viewBox=\"0 0 1200 900\" xml:space=\"preserve\" stroke-linecap=\"round\" "
      "stroke-linejoin=\"round\">\n"
      "<rect class=\"paper\" x=\"0\" y=\"0\" width=\"1200\" height=\"900\" fill=\"#ffffff\"/>\n"
      "<polyline class=\"line\" points=\"0,0 100.13,0\" fill=\"none\" stroke=\"#ff0000\" "
      "stroke-width=\"30\"/>\n"
      "<path class=\"area\" d=\"M0,0L50,0L50,50Z\" fill=\"#008000\" fill-opacity=\"0.2\" "
      "fill-rule=\"evenodd\"/>\n"
      "<circle class=\"dot\" cx=\"10\" cy=\"20\" r=\"5\" fill=\"#ff0000\"/>\n"
      "<text class=\"name\" x=\"600\" y=\"485.8\" font-family=\"Arial, Liberation Sans, "
      "sans-serif\" font-size=\"100\" fill=\"#000000\">T &lt; 0 &amp; &quot;calm&quot;</text>\n"
      "</svg>\n";
  EXPECT_EQ(ToSvg(page, 400, 300), expected);
}

TEST(ToSvg, PutsThePageInTheMiddleOfOtherProportions) {
  const std::string svg = ToSvg(Picture(1000, 1000, {0, 0, 0}), 300, 100);
  EXPECT_NE(svg.find("viewBox=\"-1000 0 3000 1000\""), std::string::npos) << svg;
  EXPECT_NE(svg.find("x=\"-1000\" y=\"0\" width=\"3000\""), std::string::npos) << svg;
}

TEST(ToSvg, ThinPensKeepAPixelAndDashesFollowTheirWidth) {
  Picture page(12000, 9000, {255, 255, 255});
  page.Add("thin", Polyline{{{0, 0}, {1, 1}}, {kRed, 2, LineStyle::Solid}});
  page.Add("dash", Polyline{{{0, 0}, {1, 1}}, {kRed, 30, LineStyle::Dash}});
  page.Add("none", Polyline{{{0, 0}, {1, 1}}, {kRed, 0, LineStyle::Solid}});
  const std::string svg = ToSvg(page, 800, 600);
  EXPECT_NE(Lines(svg, "thin").find("stroke-width=\"15\""), std::string::npos);
  EXPECT_NE(Lines(svg, "dash").find("stroke-dasharray=\"180 120\""), std::string::npos);
  EXPECT_EQ(Lines(svg, "none").find("stroke="), std::string::npos);
}

TEST(ToSvg, TextsKeepTheirAnchorsTurnsAndHalos) {
  Picture page(1000, 1000, {255, 255, 255});
  page.Add("turned", Label{.At = {10, 20},
                           .Text = "  KM",
                           .Across = AnchorX::Right,
                           .Down = AnchorY::Base,
                           .Font = Face::Mono,
                           .Angle = 30});
  page.Add("ringed", Label{.At = {1, 2}, .Text = "850", .Size = 100, .Halo = {255, 255, 255}});
  const std::string svg = ToSvg(page, 100, 100);
  const std::string turned = Lines(svg, "turned");
  EXPECT_NE(turned.find("transform=\"translate(10 20) rotate(-30)\" y=\"0\""), std::string::npos);
  EXPECT_NE(turned.find("text-anchor=\"end\""), std::string::npos);
  EXPECT_NE(turned.find("Courier New, Liberation Mono, monospace"), std::string::npos);
  EXPECT_NE(turned.find(">  KM<"), std::string::npos);
  // The halo lies under the letters.
  const std::size_t halo = svg.find("class=\"ringed halo\"");
  ASSERT_NE(halo, std::string::npos);
  EXPECT_LT(halo, svg.find("class=\"ringed\""));
}

TEST(ToSvg, StaysWellFormedOnOddInput) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  Picture page(100, 100, {255, 255, 255});
  page.Add("a<b", Polyline{{{1, 1}, {nan, 2}, {3, 3}}, {kRed, 1, LineStyle::Solid}});
  page.Add("ring", Circle{{infinity, 0}, 5, {}, {}});
  page.Add("odd", Label{.At = {1, 1}, .Text = "M\xFCnchen\x01 \xC3\xBC \xED\xA0\x80"});
  page.Add("lost", Label{.At = {nan, 1}, .Text = "lost"});
  const std::string svg = ToSvg(page, 100, 100);
  EXPECT_EQ(svg.find("nan"), std::string::npos);
  EXPECT_EQ(svg.find("inf"), std::string::npos);
  EXPECT_EQ(svg.find("lost"), std::string::npos);
  EXPECT_NE(svg.find("points=\"1,1 3,3\""), std::string::npos);
  EXPECT_NE(svg.find("class=\"a&lt;b\""), std::string::npos);
  const std::string mark = "\xEF\xBF\xBD";
  EXPECT_NE(svg.find(">M" + mark + "nchen" + mark + " \xC3\xBC " + mark + mark + mark + "<"),
            std::string::npos);
}

TEST(ToSvg, InsetsAreScaledIntoTheirPlace) {
  Picture small(200, 100, {250, 250, 250});
  small.Add("vector", Polyline{{{0, 0}, {200, 100}}, {kRed, 1, LineStyle::Solid}});
  Picture page(1000, 1000, {255, 255, 255});
  page.Add("hodograph", Inset{{100, 100, 500, 500}, {small}});
  const std::string svg = ToSvg(page, 1000, 1000);
  EXPECT_NE(Lines(svg, "hodograph")
                .find("x=\"100\" y=\"200\" width=\"400\" height=\"200\" viewBox=\"0 0 200 100\""),
            std::string::npos)
      << svg;
  EXPECT_NE(svg.find("class=\"vector\""), std::string::npos);
}

}  // namespace
}  // namespace vexa
