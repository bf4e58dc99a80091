// What an image file is to be like besides its picture and its size.
#pragma once

namespace vexa {

inline constexpr int kJpegQuality = 92;
inline constexpr double kScreenDpi = 96;  // what a pixel measures on paper without a resolution

// What may be asked for, in the window and on the command line.
inline constexpr int kLeastImagePx = 16, kMostImagePx = 20000;
inline constexpr int kLeastImageDpi = 10, kMostImageDpi = 2400;

/// The resolution that an image file states, dots per inch.
struct ImageSettings {
  int JpegQuality = kJpegQuality;  // 1 to 100
  double Dpi = kScreenDpi;
};

}  // namespace vexa
