#include "program/start_picture.h"

#include <string>

#include "program/command_line.h"

namespace vexa {
namespace {

constexpr double kWidth = 480;
constexpr double kHeight = 300;
constexpr double kSkew = 0.75;  // units to the right for one upwards

constexpr Color kPaper{14, 30, 54};
constexpr Color kGrid{52, 82, 118};
constexpr Color kWarm{232, 86, 70};
constexpr Color kMoist{94, 190, 128};
constexpr Color kLetters{240, 244, 250};

struct Level {
  double Share;  // of the height, from the bottom
  double Temp;   // units from the left before the skew
  double Dewpt;
};

// An inversion over the morning's ground, a moist layer, dry air and the tropopause.
constexpr Level kLevels[] = {{0.00, 190, 150}, {0.06, 205, 152}, {0.20, 176, 140},
                             {0.30, 150, 138}, {0.42, 122, 60},  {0.58, 86, 30},
                             {0.74, 44, -14},  {0.86, 12, -60},  {1.00, 14, -90}};

Point At(double share, double units) {
  const double up = share * kHeight;
  return {90 + units + up * kSkew, kHeight - up};
}

Polyline Trace(double Level::*value, Color ink) {
  Polyline trace{.Stroke = {ink, 3}};
  for (const Level& level : kLevels) trace.Points.push_back(At(level.Share, level.*value));
  return trace;
}

void DrawGrid(Picture& picture) {
  constexpr double kIsotherms = 40;
  constexpr double kIsobars[] = {0.12, 0.26, 0.42, 0.61, 0.85};
  for (double units = -360; units < kWidth; units += kIsotherms) {
    picture.Add("grid", Polyline{.Points = {At(0, units), At(1, units)}, .Stroke = {kGrid, 1}});
  }
  for (const double share : kIsobars) {
    const double y = kHeight * (1 - share);
    picture.Add("grid", Polyline{.Points = {{0, y}, {kWidth, y}}, .Stroke = {kGrid, 1}});
  }
}

}  // namespace

Picture StartPicture() {
  Picture picture(kWidth, kHeight, kPaper);
  DrawGrid(picture);
  picture.Add("temperature", Trace(&Level::Temp, kWarm));
  picture.Add("dewpoint", Trace(&Level::Dewpt, kMoist));
  picture.Add("name",
              Label{.At = {24, 52}, .Text = "VEXA", .Size = 64, .Ink = kLetters, .Bold = true});
  picture.Add("version",
              Label{.At = {26, 96},
                    .Text = "Soundings of the upper air, version " + std::string(ProgramVersion()),
                    .Size = 15,
                    .Ink = kLetters});
  return picture;
}

bool IsWholeBitmap(std::string_view bytes) {
  constexpr std::size_t kSizeAt = 2, kSizeBytes = 4;  // little-endian
  if (!bytes.starts_with("BM")) return true;
  if (bytes.size() < kSizeAt + kSizeBytes) return false;
  std::size_t size = 0;
  for (std::size_t i = kSizeBytes; i > 0; --i) {
    size = size * 256 + static_cast<unsigned char>(bytes[kSizeAt + i - 1]);
  }
  return bytes.size() >= size;
}

}  // namespace vexa
