// A picture as a display list: items in painting order on a fixed page, in drawing units with y
// downwards, each tagged with what it shows. Built by plain code, put on a surface by a painter,
// written as SVG text for files and tests.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace vexa {

struct Point {
  double X = 0;
  double Y = 0;
  bool operator==(const Point&) const = default;
};

struct Rect {
  double Left = 0;
  double Top = 0;
  double Right = 0;
  double Bottom = 0;
  double Width() const { return Right - Left; }
  double Height() const { return Bottom - Top; }
  bool Contains(Point at) const {
    return at.X >= Left && at.X <= Right && at.Y >= Top && at.Y <= Bottom;
  }
  bool operator==(const Rect&) const = default;
};

struct Color {
  std::uint8_t Red = 0;
  std::uint8_t Green = 0;
  std::uint8_t Blue = 0;
  std::uint8_t Alpha = 255;
  bool operator==(const Color&) const = default;
};

enum class LineStyle { Solid, Dash, Dots, DashDot };

/// Width in drawing units; 0 draws nothing. Thin lines never fall below a hairline on a surface.
struct Pen {
  Color Ink{};
  double Width = 0;
  LineStyle Style = LineStyle::Solid;
  bool operator==(const Pen&) const = default;
};

/// How an area is filled: plain, or with slanted lines that stay apart in grey print.
enum class FillStyle { Plain, Hatched, BackHatched };

struct Brush {
  Color Ink{0, 0, 0, 0};
  FillStyle Style = FillStyle::Plain;
  bool operator==(const Brush&) const = default;
};

/// Where a text's box stands relative to its point; vertically by the middle of its capitals
/// (Middle), its base line (Base) or the top of its capitals (Top).
enum class AnchorX { Left, Center, Right };
enum class AnchorY { Top, Middle, Base };

enum class Face { Sans, Mono };

struct Polyline {
  std::vector<Point> Points{};
  Pen Stroke{};
  bool operator==(const Polyline&) const = default;
};

/// A filled polygon of one or more rings; overlapping rings cut holes (even-odd rule).
struct Area {
  std::vector<std::vector<Point>> Rings{};
  Brush Fill{};
  Pen Stroke{};
  bool operator==(const Area&) const = default;
};

struct Circle {
  Point Center{};
  double Radius = 0;
  Brush Fill{};
  Pen Stroke{};
  bool operator==(const Circle&) const = default;
};

struct Label {
  Point At{};
  std::string Text{};  // UTF-8, one line
  AnchorX Across = AnchorX::Left;
  AnchorY Down = AnchorY::Middle;
  double Size = 150;  // height of the letters' box in drawing units
  Face Font = Face::Sans;
  Color Ink{};
  bool Bold = false;
  double Angle = 0;        // degrees, turned anticlockwise about At
  Color Halo{0, 0, 0, 0};  // drawn around the letters where it is not transparent
  bool operator==(const Label&) const = default;
};

class Picture;

/// A finished picture inside another one. Copies share it, since nothing changes it any more.
class HeldPicture {
 public:
  HeldPicture() = default;
  HeldPicture(Picture picture);
  const Picture* Get() const { return held_.get(); }    // null when nothing is held
  bool operator==(const HeldPicture&) const = default;  // the same one

 private:
  std::shared_ptr<const Picture> held_{};
};

/// Another picture set into a rectangle of this one, in its middle.
struct Inset {
  Rect Place{};
  HeldPicture Content{};
  bool operator==(const Inset&) const = default;
};

struct Item {
  std::string Tag{};
  std::variant<Polyline, Area, Circle, Label, Inset> Shape{};
  bool operator==(const Item&) const = default;
};

/// A region that answers the pointer with a text.
struct HotSpot {
  Rect Where{};
  std::string Tag{};
  std::string Text{};
};

class Picture {
 public:
  Picture() = default;
  Picture(double width, double height, Color paper)
      : width_(width), height_(height), paper_(paper) {}

  template <class Shape>
  void Add(std::string_view tag, Shape shape) {
    items_.push_back(Item{std::string(tag), std::move(shape)});
  }
  void Add(Item item) { items_.push_back(std::move(item)); }
  /// What was added so far changes seldom: a painter may keep it from one picture to the next.
  void EndGround() { ground_ = items_.size(); }
  void AddHotSpot(HotSpot spot) { hotSpots_.push_back(std::move(spot)); }

  double Width() const { return width_; }
  double Height() const { return height_; }
  Color Paper() const { return paper_; }
  const std::vector<Item>& Items() const { return items_; }
  std::span<const Item> Ground() const { return std::span(items_).first(ground_); }
  const std::vector<HotSpot>& HotSpots() const { return hotSpots_; }

 private:
  double width_ = 0;
  double height_ = 0;
  Color paper_{255, 255, 255};
  std::vector<Item> items_{};
  std::size_t ground_ = 0;
  std::vector<HotSpot> hotSpots_{};
};

inline HeldPicture::HeldPicture(Picture picture)
    : held_(std::make_shared<const Picture>(std::move(picture))) {}

/// The picture as a self-contained SVG document of the given size in pixels; the same text for the
/// same picture on every machine.
std::string ToSvg(const Picture& picture, int widthPx, int heightPx);

}  // namespace vexa
