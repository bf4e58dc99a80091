#include <algorithm>
#include <cmath>

#include "core/numbers.h"
#include "fronts/front_page.h"
#include "picture/shapes.h"
#include "picture/text_width.h"

namespace vexa::fronts {
namespace {

constexpr double kRowStep = Px(15);    // of the table
constexpr std::size_t kTableHead = 3;  // lines
constexpr std::size_t kLeastRows = 12;

// ---- the texts

double BlockWidth(const std::vector<std::string>& lines, double size, Face face = Face::Sans) {
  double width = 0;
  for (const std::string& line : lines) {
    width = std::max(width, TextWidth(line, size, false, face));
  }
  return width;
}

std::vector<std::string> Settings(const FrontPage& page) {
  std::vector<std::string> lines = {
      std::string("Control: ") +
      (page.In.Winds.Window.Front.Control == FrontControl::Automatic ? "Automatic" : "Manual") +
      (page.In.IsChosen ? ", layer chosen" : "") + (page.In.IsHeld ? ", hold" : "")};
  for (std::string& line : StatusBlock(page.Source())) lines.push_back(std::move(line));
  return lines;
}

std::vector<std::string> Character(const FrontPage& page) {
  std::vector<std::string> lines = Characterisation(page.Source());
  for (const std::string& line : Wrapped(page.In.Fronts.WhyNone, kText, Px(240))) {
    lines.push_back(line);
  }
  return lines;
}

// Part of the front that was found.
bool IsOfZone(const FrontPage& page, const FrontLayer& layer) {
  const Front* front = page.Found();
  return front != nullptr && layer.Base >= front->Zone.Whole.Base - 1 &&
         layer.Top <= front->Zone.Whole.Top + 1;
}

// How the front came about, or what the layers missed, in what the table leaves.
void DrawReasons(FrontPage& page, const Rect& region) {
  if (region.Height() < kLineStep + 2 * kRowStep) return;
  double y = region.Top + kLineStep / 2;
  Write(page, "reason heading", {region.Left + Px(4), y},
        page.Found() != nullptr ? "How it came about" : "Why there is none", kText, AnchorX::Left,
        true);
  for (const std::string& reason : Reasons(page.Source())) {
    for (const std::string& line : Wrapped(reason, kNote, region.Width() - Px(8))) {
      y += kRowStep;
      if (y + kRowStep / 2 > region.Bottom) return;
      Write(page, "reason", {region.Left + Px(4), y}, line, kNote);
    }
    y += Px(3);
  }
}

// Layers that the search does not reach are told by the listing.
std::vector<std::size_t> TableLayers(const FrontPage& page) {
  std::vector<std::size_t> shown;
  for (std::size_t i = 0; i < page.In.Fronts.Layers.size(); ++i) {
    if (page.In.Fronts.Layers[i].Top <= Depth(page) + 1) shown.push_back(i);
  }
  return shown;
}

// Gives where it ends.
double DrawTable(FrontPage& page, const Rect& region) {
  const std::vector<std::string> lines = LayerTable(page.Source());
  const std::vector<std::size_t> layers = TableLayers(page);
  double y = region.Top + kRowStep / 2;
  const auto write = [&](std::string_view tag, const std::string& line) {
    Write(page, tag, {region.Left + Px(4), y}, line, kNote, AnchorX::Left, false, Face::Mono);
    y += kRowStep;
  };
  for (std::size_t i = 0; i < kTableHead; ++i) write("table heading", lines[i]);
  const auto room = static_cast<std::size_t>(
      std::max(0.0, std::floor((region.Bottom - y + kRowStep / 2) / kRowStep + 1e-6)));
  // A line for what found no room, and one for what the star says.
  const std::size_t rows = layers.size() + 1 > room ? (room > 2 ? room - 2 : 0) : layers.size();
  for (std::size_t i = 0; i < rows; ++i) {
    const FrontLayer& layer = page.In.Fronts.Layers[layers[i]];
    const Rect row{region.Left, y - kRowStep / 2, region.Right, y + kRowStep / 2};
    if (IsOfZone(page, layer)) {
      page.Plot.Page.Add(
          "zone row",
          Area{.Rings = {OutlineOf(row)},
               .Fill = {Faded(page.Fronts.Of(page.Found()->IsWarm()), 60), FillStyle::Plain}});
    }
    page.Plot.Layers.push_back({row, layers[i]});
    page.Plot.Page.AddHotSpot({row, "layer", LayerText(layer, page.Set())});
    write("table row", lines[kTableHead + layers[i]]);
  }
  if (rows < layers.size()) {
    write("table rest",
          "  " + Shortest(static_cast<int>(layers.size() - rows)) + " further layers: listing");
  }
  if (!layers.empty()) write("table note", lines.back());
  return y + kRowStep / 2;
}

}  // namespace

// What is said of the front at the left, the settings beside it in as many columns as find room.
void DrawTexts(FrontPage& page, const Rect& region) {
  constexpr double kGap = Px(14);
  const std::vector<std::string> said = Character(page);
  const std::vector<std::string> settings = Settings(page);
  DrawFrame(page, region, "text frame");
  const double top = region.Top + kBoxPadding + kLineStep / 2;
  const double right = region.Right - kBoxPadding;
  double x = region.Left + kBoxPadding;
  for (std::size_t i = 0; i < said.size(); ++i) {
    const bool isHead = i == 0 && page.Found() != nullptr;
    Write(page, "front character", {x, top + static_cast<double>(i) * kLineStep},
          Elided(said[i], kText, right - x, isHead), kText, AnchorX::Left, isHead);
  }
  x += TextWidth(said.front(), kText, true);
  x = std::max(x, region.Left + kBoxPadding + BlockWidth(said, kText)) + 2 * kGap;
  const std::size_t rows = (settings.size() + 1) / 2;
  for (std::size_t first = 0; first < settings.size(); first += rows) {
    const std::vector<std::string> column(
        settings.begin() + static_cast<std::ptrdiff_t>(first),
        settings.begin() + static_cast<std::ptrdiff_t>(std::min(first + rows, settings.size())));
    const double width = BlockWidth(column, kNote);
    if (x + width > right) return;
    for (std::size_t i = 0; i < column.size(); ++i) {
      Write(page, "front setting", {x, top + static_cast<double>(i) * kLineStep}, column[i], kNote);
    }
    x += width + kGap;
  }
}

double TextLines(const FrontPage& page) {
  return static_cast<double>(std::max((Settings(page).size() + 1) / 2, Character(page).size()));
}

void DrawLayers(FrontPage& page, const Rect& region) {
  DrawReasons(page, {region.Left, DrawTable(page, region), region.Right, region.Bottom});
}

Room LayersRoom(const FrontPage& page) {
  const double rows =
      static_cast<double>(kTableHead + 2 + std::min(kLeastRows, TableLayers(page).size()));
  return {BlockWidth(LayerTable(page.Source()), kNote, Face::Mono) + Px(8), kRowStep * rows};
}

}  // namespace vexa::fronts
