#include "output/paint/dib_section.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>

#include "output/paint/paint.h"

namespace vexa::paint {
namespace {

Picture Page() {
  Picture page(1200, 900, {255, 255, 255});
  page.Add("low", Label{.At = {100, 800}, .Text = "below"});
  page.Add("high", Label{.At = {100, 100}, .Text = "above"});
  Area square{.Rings = {{{300, 300}, {700, 300}, {700, 700}, {300, 700}}}};
  square.Fill.Ink = {200, 0, 0};
  page.Add("square", square);
  return page;
}

TEST(DibSection, FilesStateTheirResolutionAndQualityCounts) {
  cDIBSection bitmap;
  ASSERT_TRUE(bitmap.Create(Page(), 400, 300, 300));
  // 300 dots an inch are 11811 a metre.
  for (const Outcome<std::string>& bytes : {bitmap.Png(), bitmap.Bmp(), bitmap.Jpeg()}) {
    const QImage image = QImage::fromData(QByteArray::fromStdString(bytes.Value()));
    EXPECT_EQ(image.size(), QSize(400, 300));
    EXPECT_NEAR(image.dotsPerMeterX(), 11811, 2);
  }
  EXPECT_TRUE(bitmap.Bmp().Value().starts_with("BM"));
  EXPECT_LT(bitmap.Jpeg(5).Value().size(), bitmap.Jpeg(100).Value().size());
}

// As the toolkit's own writer has them; a row is filled up to whole words.
TEST(DibSection, BitmapFilesAreThoseOfTheToolkit) {
  for (const int width : {400, 399, 1}) {
    cDIBSection bitmap;
    ASSERT_TRUE(bitmap.Create(Page(), width, 300, 300));
    QBuffer expected;
    expected.open(QIODevice::WriteOnly);
    ASSERT_TRUE(bitmap.Image().save(&expected, "bmp"));
    EXPECT_TRUE(bitmap.Bmp().Value() == expected.data().toStdString()) << width;
  }
}

TEST(DibSection, FailuresCarryTheirTexts) {
  const cDIBSection nothing;
  EXPECT_TRUE(nothing.Jpeg().Error().Detail.starts_with("Failed to save to JPG "));
  EXPECT_EQ(nothing.CopyToClipboard(true),
            "I don't know how to put a DIB on the clipboard! Copy as bitmap instead!!!");
}

TEST(DibSection, TheClipboardGetsBitmapVectorAndText) {
  EXPECT_EQ(CopyPicture(Page(), 400, 300), "Image has been saved to your ClipBoard");
  const QMimeData* held = QGuiApplication::clipboard()->mimeData();
  ASSERT_NE(held, nullptr);
  EXPECT_EQ(held->text().toStdString(), "above\nbelow\n");
  EXPECT_TRUE(held->data("image/svg+xml").contains("<svg"));
  EXPECT_EQ(qvariant_cast<QImage>(held->imageData()).size(), QSize(400, 300));
}

}  // namespace
}  // namespace vexa::paint
