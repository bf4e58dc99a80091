// The ICAO standard atmosphere to 80 km (ICAO Doc 7488, 1993) and the altimetry built on it. Its
// kelvin offset is the true 273.15, its gas constant 287.05287: it stands apart from the sounding
// thermodynamics on purpose.
#pragma once

#include <cstddef>

namespace vexa::analysis {

/// Pressure, hPa, at a geopotential height in metres; kNotReached above 80 km. Below 0 m the
/// lowest layer goes on.
double IsaPressure(double height);

/// Height, m, of a pressure in hPa; kNotReached beyond 80 km and for p <= 0.
double IsaHeight(double press);

/// The same where the logarithm of the pressure is at hand.
double IsaHeight(double press, double logPress);

/// The same for columns of as many pressures, logarithms and heights.
void FillIsaHeights(const double* pressures, const double* logs, std::size_t count,
                    double* heights);

/// Temperature, °C, at a height in metres; kMissing above 80 km.
double IsaTemp(double height);

/// Pressure reduced to mean sea level by the standard atmosphere, hPa.
double Qnh(double stationPress, double stationHeight);

/// Density altitude, m, from the air density in kg/m³.
double DensityAltitude(double density);

/// Density of moist air, kg/m³, from pressure in hPa and virtual temperature in °C.
double AirDensity(double press, double virtualTemp);

}  // namespace vexa::analysis
