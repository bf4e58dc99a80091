#include "output/paint/paint.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <string>

namespace vexa::paint {
namespace {

constexpr Color kWhite{255, 255, 255};
constexpr Color kBlack{0, 0, 0};

class GuiEnvironment : public testing::Environment {
 public:
  void SetUp() override { app_ = new QGuiApplication(count_, arguments_); }
  void TearDown() override { delete app_; }

 private:
  int count_ = 1;
  char name_[5] = "test";
  char* arguments_[2] = {name_, nullptr};
  QGuiApplication* app_ = nullptr;
};
const auto* const kGui = testing::AddGlobalTestEnvironment(new GuiEnvironment);

// The pixels that are not paper, as a rectangle.
QRect InkOf(const QImage& image) {
  QRect ink;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (qGray(image.pixel(x, y)) < 128) ink |= QRect(x, y, 1, 1);
    }
  }
  return ink;
}

// As a window paints it, on a screen of so many pixels to each of its own.
QImage Painted(const Picture& page, QSize size, KeptGround* ground = nullptr, double ratio = 1) {
  QImage image(size * ratio, QImage::Format_RGB32);
  image.setDevicePixelRatio(ratio);
  image.fill(Qt::white);
  QPainter painter(&image);
  Paint(page, painter, QRectF(QPointF(0, 0), size), ground);
  return image;
}

TEST(Paint, ScalesThePageIntoTheMiddle) {
  Picture page(1000, 1000, {200, 220, 240});
  page.Add("box", Area{{{{0, 0}, {1000, 0}, {1000, 1000}, {0, 1000}},
                        {{250, 250}, {750, 250}, {750, 750}, {250, 750}}},
                       {kBlack, FillStyle::Plain},
                       {}});
  const QImage image = ToImage(page, 300, 100);
  EXPECT_EQ(image.pixelColor(50, 50), QColor(200, 220, 240));   // beside the page
  EXPECT_EQ(image.pixelColor(110, 50), QColor(0, 0, 0));        // on it
  EXPECT_EQ(image.pixelColor(150, 50), QColor(200, 220, 240));  // in the hole
  EXPECT_EQ(InkOf(image), QRect(100, 0, 100, 100));
}

TEST(Paint, NothingLeavesThePage) {
  Picture page(100, 100, kWhite);
  page.Add("long", Polyline{{{-500, 50}, {500, 50}}, {kBlack, 10, LineStyle::Solid}});
  Picture outer(300, 100, kWhite);
  outer.Add("inset", Inset{{100, 0, 200, 100}, {page}});
  EXPECT_EQ(InkOf(ToImage(outer, 300, 100)), QRect(100, 45, 100, 10));
}

TEST(Paint, LettersStandByTheirAnchors) {
  const struct {
    const char* about;
    AnchorX across;
    AnchorY down;
    double left, right, top, bottom;  // share of the ink on this side of the point
  } cases[] = {
      {"centred", AnchorX::Center, AnchorY::Middle, 0.5, 0.5, 0.5, 0.5},
      {"right of the point, above it", AnchorX::Left, AnchorY::Base, 0, 1, 1, 0},
      {"left of the point, below it", AnchorX::Right, AnchorY::Top, 1, 0, 0, 1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.about);
    for (const double angle : {0.0, 90.0}) {
      SCOPED_TRACE(angle);
      Picture page(400, 400, kWhite);
      page.Add("h", Label{.At = {200, 200},
                          .Text = "HHHH",
                          .Across = c.across,
                          .Down = c.down,
                          .Size = 80,
                          .Ink = kBlack,
                          .Angle = angle});
      const QRect ink = InkOf(ToImage(page, 400, 400));
      // Turned by a right angle, what ran to the right runs upwards.
      const bool turned = angle != 0;
      const int width = turned ? ink.height() : ink.width();
      const int height = turned ? ink.width() : ink.height();
      const int left = turned ? ink.bottom() - 199 : 200 - ink.left();
      const int top = turned ? 200 - ink.left() : 200 - ink.top();
      EXPECT_NEAR(left, c.left * width, 8);  // side bearing
      EXPECT_NEAR(top, c.top * height, 2);
      EXPECT_GT(height, 0.6 * 80);  // capitals of common faces: 0.66 to 0.73 of the size
      EXPECT_LT(height, 0.8 * 80);
    }
  }
}

TEST(Paint, LinesAlongTheGridAreCrispAtAnyScale) {
  Picture page(12000, 9000, kWhite);
  page.Add("thin", Polyline{{{1000, 4507}, {11000, 4507}}, {kBlack, 2, LineStyle::Solid}});
  for (const double ratio : {1.0, 1.5, 2.0}) {
    SCOPED_TRACE(ratio);
    const QImage image = Painted(page, {800, 600}, nullptr, ratio);
    int black = 0;
    int grey = 0;
    for (int y = 0; y < image.height(); ++y) {
      const int shade = qGray(image.pixel(image.width() / 2, y));
      if (shade == 0) ++black;
      if (shade > 0 && shade < 255) ++grey;
    }
    EXPECT_EQ(black, 1);
    EXPECT_EQ(grey, 0);
  }
}

TEST(Paint, DashesKeepTheirLengthOnThePage) {
  // Pen 30: dash 180, gap 120, so 9000 units hold 30 dashes at any scale, on the grid or slanted.
  for (const double rise : {0.0, 900.0}) {
    for (const int width : {800, 3200}) {
      SCOPED_TRACE(width);
      Picture page(12000, 9000, kWhite);
      const double run = rise == 0 ? 9000 : 8954.9;  // the slanted one is 9000 long, too
      page.Add("dash",
               Polyline{{{1000, 4000}, {1000 + run, 4000 + rise}}, {kBlack, 30, LineStyle::Dash}});
      const QImage image = ToImage(page, width, width * 3 / 4);
      const double perPixel = 12000.0 / width;
      int dashes = 0;
      bool inDash = false;
      for (double x = 1000; x < 1000 + run; x += perPixel / 2) {
        const double y = 4000 + rise * (x - 1000) / run;
        const bool ink = qGray(image.pixel(static_cast<int>(x / perPixel),
                                           static_cast<int>(y / perPixel))) < 160;
        if (ink && !inDash) ++dashes;
        inDash = ink;
      }
      EXPECT_EQ(dashes, 30);
    }
  }
}

TEST(Paint, HalosClearWhatLiesAroundTheLetters) {
  Picture page(400, 200, kWhite);
  page.Add("dark",
           Area{{{{0, 0}, {400, 0}, {400, 200}, {0, 200}}}, {kBlack, FillStyle::Plain}, {}});
  page.Add("I", Label{.At = {200, 100},
                      .Text = "I",
                      .Across = AnchorX::Center,
                      .Size = 100,
                      .Ink = {255, 0, 0},
                      .Halo = kWhite});
  const QImage image = ToImage(page, 400, 200);
  EXPECT_EQ(image.pixelColor(200, 100), QColor(255, 0, 0));
  EXPECT_EQ(image.pixelColor(186, 100), QColor(255, 255, 255));
  EXPECT_EQ(image.pixelColor(150, 100), QColor(0, 0, 0));
}

// Letters that a process drew before, on any surface at any size, leave no trace in a document.
TEST(Paint, ADocumentIsTheSameWhateverWasPaintedBefore) {
  Picture page(9600, 7200, kWhite);
  double y = 200;
  for (const double size : {132.0, 156.0, 240.0}) {
    for (const bool bold : {false, true}) {
      for (const Face face : {Face::Sans, Face::Mono}) {
        page.Add("label", Label{.At = {200, y},
                                .Text = "LCL 910 hPa 866 m AVATAR 0123456789 -20 \u00B0",
                                .Size = size,
                                .Font = face,
                                .Ink = kBlack,
                                .Bold = bold,
                                .Halo = kWhite});
        y += 2 * size;
      }
    }
  }
  const auto document = [&page](int widthPx, int heightPx) {
    return EncodePicture(page, "pdf", widthPx, heightPx).Value();
  };
  const std::string before = document(800, 600);
  for (const int width : {400, 1000}) {
    document(width, width * 3 / 4);
    ToImage(page, width, width * 3 / 4);
  }
  EXPECT_TRUE(document(800, 600) == before);
}

// A grid under a trace that changes, at several sizes, on screens of several ratios, and with
// another ground in between: none, along the page's edges, and far from them.
TEST(Paint, AKeptGroundGivesTheSamePixels) {
  enum class Ground { Grid, None, Edges, Inside };
  const auto page = [](int shift, Color grid, Ground kind) {
    Picture made(1000, 700, kWhite);
    for (int i = 0; kind == Ground::Grid && i < 20; ++i) {
      made.Add("grid",
               Polyline{{{50.0 * i, 0}, {50.0 * i + 170, 700}}, {grid, 9, LineStyle::Dash}});
    }
    const auto box = [&](double left, double top, double right, double bottom) {
      made.Add("box",
               Polyline{{{left, top}, {right, top}, {right, bottom}, {left, bottom}, {left, top}},
                        {grid, 3}});
    };
    if (kind == Ground::Edges) box(0, 0, 1000, 700);
    if (kind == Ground::Inside) box(313, 207, 611, 498);
    made.EndGround();
    made.Add("trace", Polyline{{{100, 600}, {300.0 + shift, 350}, {800, 80}},
                               {{200, 0, 0, 120}, 30, LineStyle::Solid}});
    made.Add("name", Label{.At = {500.0 + shift, 300}, .Text = "850", .Size = 60, .Halo = kWhite});
    return made;
  };
  struct {
    int Shift;
    Color Grid;
    QSize Size;
    Ground Kind = Ground::Grid;
    double Ratio = 1;
  } const steps[] = {{0, kBlack, {500, 350}},
                     {90, kBlack, {500, 350}},
                     {90, {0, 120, 0}, {500, 350}},
                     {40, {0, 120, 0}, {613, 350}},
                     {40, kBlack, {613, 350}},
                     {41, kBlack, {613, 350}},
                     {41, kBlack, {613, 350}, Ground::None},
                     {42, kBlack, {613, 350}, Ground::Edges},
                     {42, kBlack, {613, 350}, Ground::Inside},
                     {43, kBlack, {612, 352}, Ground::Grid, 1.25},
                     {44, kBlack, {612, 352}, Ground::Inside, 1.5},
                     {45, kBlack, {612, 352}, Ground::Edges, 2}};
  KeptGround ground;
  for (const auto& step : steps) {
    const Picture picture = page(step.Shift, step.Grid, step.Kind);
    EXPECT_TRUE(Painted(picture, step.Size, &ground, step.Ratio) ==
                Painted(picture, step.Size, nullptr, step.Ratio))
        << step.Shift << ' ' << static_cast<int>(step.Kind) << ' ' << step.Ratio;
  }
}

// Letters of every size between a small print and a heading, where other sizes of their face are
// kept.
TEST(Paint, KeptLettersAreTheSameAtEverySize) {
  KeptGround ground;
  for (int tenths = 60; tenths < 300; tenths += 7) {
    Picture picture(400, 120, kWhite);
    const double size = tenths / 10.0;
    picture.Add("text", Label{.At = {5.3, 30.2}, .Text = "850 hPa \xC2\xB0", .Size = size});
    picture.Add("bold", Label{.At = {5, 60}, .Text = "Kjgq 5.7", .Size = size, .Bold = true});
    picture.Add("mono",
                Label{.At = {5, 90}, .Text = "12 -3.4", .Size = size + 1, .Font = Face::Mono});
    picture.Add("aslant", Label{.At = {250, 100}, .Text = "26 g/kg", .Size = size, .Angle = 37});
    picture.Add("strange", Label{.At = {250, 30}, .Text = "\xE2\x99\x9E", .Size = size});
    EXPECT_TRUE(Painted(picture, {400, 120}, &ground) == ToImage(picture, 400, 120)) << size;
  }
}

TEST(EncodePicture, GivesEachKindByItsExtension) {
  Picture page(1200, 900, kWhite);
  page.Add("title", Label{.At = {600, 450}, .Text = "Großenkneten", .Size = 100});
  const std::pair<std::string, const char*> kinds[] = {
      {"png", "\x89PNG"}, {"jpg", "\xFF\xD8\xFF"}, {"JPEG", "\xFF\xD8\xFF"},
      {"BMP", "BM"},      {"svg", "<svg "},        {"pdf", "%PDF-"}};
  for (const auto& [kind, magic] : kinds) {
    SCOPED_TRACE(kind);
    const std::string bytes = EncodePicture(page, kind, 320, 240).Value();
    EXPECT_TRUE(bytes.starts_with(magic));
    if (kind == "pdf") {  // text that can be searched: a font with its way back to characters
      EXPECT_NE(bytes.find("/ToUnicode"), std::string::npos);
    } else if (kind != "svg") {
      EXPECT_EQ(QImage::fromData(QByteArray::fromStdString(bytes)).size(), QSize(320, 240));
    }
  }
  EXPECT_EQ(EncodePicture(page, "gif", 320, 240).Error().Number, kFaultBadFileName);
  EXPECT_EQ(EncodePicture(page, "png", 0, 0).Error().Number, kFaultPicture);
}

}  // namespace
}  // namespace vexa::paint
