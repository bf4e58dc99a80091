#pragma once

namespace vexa::analysis {

// Diameter of hail at the -5 °C level, mm. The warmth of the cloud there and the depth of dry
// descent from there to the convective condensation level are in °C; 0 outside the table. Fawbush
// and Miller 1953, tabulated by Hand and Cappelluti 2011.
int HailDiameter(double cloudWarmth, double dryDescent);

// What melting leaves of it, mm, below a wet-bulb zero in m above ground; all below 3350 m.
int AfterMelting(int diameter, double wetBulbZero);

}  // namespace vexa::analysis
