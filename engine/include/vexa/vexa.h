// VEXA as a library: reads a sounding from a file of any format that the program knows, analyses it
// and gives what it found as numbers, as JSON, as a native file or as a picture.
//
// Pressures are in hPa, temperatures in °C, heights in metres above mean sea level, speeds in
// knots, directions those that the wind blows from in degrees, energies in J/kg. An empty value was
// not observed or does not exist. Nothing here throws but for memory that cannot be had. Needs
// C++17.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#if defined(_WIN32) && defined(VEXA_BUILDS_ENGINE)
#define VEXA_API __declspec(dllexport)
#elif defined(_WIN32)
#define VEXA_API __declspec(dllimport)
#else
#define VEXA_API __attribute__((visibility("default")))
#endif

namespace vexa::engine {

/// "0.1.0", as the package's. Before 1.0 a changed second figure tells of a changed interface.
VEXA_API std::string Version();

struct Settings {
  int Number = 1;                      // which sounding of a file that holds several
  std::vector<std::string> Options{};  // "KEY=VALUE" each, as of vexa-cli --set
  /// A station locator file, for soundings that name their station by number only; the CMake
  /// package names the installed one in vexa_STATIONS.
  std::string StationFile{};
};

struct Level {
  double Pressure = 0;
  std::optional<double> Temperature{}, DewPoint{}, Height{};
};

struct Wind {
  double Height = 0;
  std::optional<double> Direction{}, Speed{};
};

enum class Lift { Surface, MeanLayer, MostUnstable };

/// Pressures of a parcel's levels, and its energies.
struct Parcel {
  std::optional<double> Lcl{}, Lfc{}, El{}, Cape{}, Cin{};
};

/// One sounding and all that was worked out of it. A value: copies are cheap and never change.
class VEXA_API Sounding {
 public:
  struct Held;
  explicit Sounding(std::shared_ptr<const Held> held);

  std::string Title() const;
  /// "1999-05-04T00:00Z"; empty when not known.
  std::string Time() const;
  std::vector<Level> Levels() const;  // from the ground up
  std::vector<Wind> Winds() const;
  Parcel Lifted(Lift lift) const;
  /// An index by its label, "KI", capitals or not.
  std::optional<double> Index(const std::string& label) const;

  /// What the check of the data doubts, and what the reader left out or worked out.
  std::string Doubts() const;
  std::vector<std::string> Notes() const;

  /// The object that `vexa-cli analyze --format json` writes.
  std::string Json() const;
  /// The diagram as an SVG document.
  std::string Svg(int widthPx = 1600, int heightPx = 1200) const;
  /// The bytes of a native sounding file.
  std::string Native() const;

 private:
  std::shared_ptr<const Held> held_;
};

/// A sounding, or why there is none.
struct Loaded {
  std::optional<Sounding> Found{};
  std::string Reason{};  // file, line and what is wrong

  explicit operator bool() const { return Found.has_value(); }
  const Sounding& operator*() const { return *Found; }
  const Sounding* operator->() const { return &*Found; }
};

/// Reads and analyses one sounding of a file.
///
/// file  UTF-8
VEXA_API Loaded Load(const std::string& file, const Settings& settings = {});

/// The soundings that a file holds, by the titles that a user chooses from; empty for a file that
/// cannot be read or is in none of the known formats.
VEXA_API std::vector<std::string> Titles(const std::string& file);

}  // namespace vexa::engine
