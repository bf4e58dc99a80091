// What an image file is to be like besides its picture and its size.
#pragma once

namespace vexa {

inline constexpr int kJpegQuality = 92;
inline constexpr double kScreenDpi = 96;  // what a pixel measures on paper without a resolution

/// The resolution that an image file states, dots per inch.
struct ImageSettings {
  int JpegQuality = kJpegQuality;  // 1 to 100
  double Dpi = kScreenDpi;
};

}  // namespace vexa
