#include "hodograph/wind_table.h"

#include <algorithm>
#include <cmath>

#include "analysis/interpolate.h"
#include "analysis/shown_units.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "core/units.h"
#include "hodograph/rings.h"

namespace vexa::hodograph {
namespace {

constexpr std::string_view kNoWindText = "--";

std::string HeightText(double meters, const DisplaySettings& options, int width) {
  return PadLeft(Mask(ShownIn(meters, options.GpmUnits), "#####0"), width);
}

std::string PressText(const HodographInput& input, double height) {
  const double press = analysis::GetPRESS(input.Results.Levels, height);
  return PadLeft(HasHeight(press) ? Mask(press, "###0") : std::string(kNoWindText), 5);
}

// Direction and speed in columns: "240 /  25.0".
std::string WindColumns(const analysis::WindVector& vector, const DisplaySettings& options) {
  const analysis::Wind wind = analysis::FromComponents(vector);
  return PadLeft(analysis::DirectionText(wind.Dir), 3) + " / " +
         PadLeft(Mask(ShownIn(wind.Spd, options.Speed), "###0.0"), 5);
}

std::string ThermalColumns(const std::vector<ProfileWind>& winds, std::size_t level,
                           const DisplaySettings& options) {
  // There is no layer below the lowest level.
  if (level == 0) return "     0 / " + PadLeft("0.0", 5);
  const analysis::WindVector& low = winds[level - 1].Vector;
  const analysis::WindVector& high = winds[level].Vector;
  return "   " + WindColumns({high.U - low.U, high.V - low.V}, options);
}

std::string NormalColumn(const analysis::WindVector& wind, std::optional<double> towards,
                         const DisplaySettings& options) {
  if (!towards) return PadLeft(kNoWindText, 8);
  const double normal =
      -(wind.U * std::sin(Radians(*towards)) + wind.V * std::cos(Radians(*towards)));
  return PadLeft(Mask(ShownIn(normal, options.Speed), "###0.0"), 8);
}

std::vector<std::string> Header(const DisplaySettings& options) {
  const bool feet = options.GpmUnits == LengthUnits::Feet;
  const bool knots = options.Speed == SpeedUnits::Knots;
  const std::string press = options.Pressure == PressureUnits::Hpa ? "(hPa)" : "(mb) ";
  return {std::string(" PRES    HEIGHT") + (feet ? "(ft)" : " (m)") + "    DIR / SPD" +
              "    Thermal" + "    Normal ",
          press + "   MSL    AGL   (deg) (" + (knots ? "kts" : "m/s") + ")" + "    Wind" + "   " +
              "    Wind"};
}

}  // namespace

WindTable ListWinds(const HodographInput& input) {
  const DisplaySettings& set = input.Set;
  const std::vector<ProfileWind> winds = WindProfile(input.Sounding, {});
  WindTable table{.Header = Header(set)};
  for (std::size_t i = 0; i < winds.size(); ++i) {
    const ProfileWind& wind = winds[i];
    const double height = wind.Height + input.Sounding.ElevM;
    table.Rows.push_back(PressText(input, height) + HeightText(height, set, 6) +
                         HeightText(wind.Height, set, 7) + "   " + WindColumns(wind.Vector, set) +
                         ThermalColumns(winds, i, set) +
                         NormalColumn(wind.Vector, input.FrontNormal, set));
  }
  if (input.Window.TableInverted) std::ranges::reverse(table.Rows);
  return table;
}

std::string TableText(const WindTable& table) {
  std::string text;
  for (const auto* lines : {&table.Header, &table.Rows}) {
    for (const std::string& line : *lines) text += line + "\r\n";
  }
  return text;
}

}  // namespace vexa::hodograph
