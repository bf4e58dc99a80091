#include "analysis/index_table.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include "analysis/index_formulas.h"
#include "analysis/shown_units.h"
#include "core/letter_case.h"
#include "core/numbers.h"
#include "core/shown_values.h"

namespace vexa::analysis {
namespace {

using namespace formula;

constexpr double kCentimetersPerInch = 2.54;

constexpr IndexRow kRows[] = {
    {"        KI", "K Index", Measure::TempDiff, "C", "##0.0",
     "(T850 - T500) + Td850 - (T700 - Td700)", "George 1960", KIndex},
    {"        TT", "TT - Total Totals", Measure::TempDiff, "C", "##0.0", "T850 + Td850 - 2 T500",
     "Miller 1972", TotalTotals},
    {"        VT", "VT - Vertical Totals", Measure::TempDiff, "C", "##0.0", "T850 - T500",
     "Miller 1972", VerticalTotals},
    {"        CT", "CT - Cross Totals", Measure::TempDiff, "C", "##0.0", "Td850 - T500",
     "Miller 1972", CrossTotals},
    {"        LI", "LI - Lifted Index", Measure::TempDiff, "C", "##0.0",
     "T500 minus the chosen parcel at 500 hPa", "Galway 1956", LiftedIndex},
    {"        SI", "SI - Showalter Index", Measure::TempDiff, "C", "##0.0",
     "T500 minus the 850 hPa parcel lifted to 500 hPa", "Showalter 1953", Showalter},
    {"        KO", "KO Index", Measure::TempDiff, "K", "##0.0",
     "mean theta-e of 500 and 700 hPa minus that of 1000 and 850 hPa", "Andersson et al. 1989",
     KoIndex},
    {"        JI", "JI - Jefferson Index", Measure::Number, "", "##0.0",
     "1.6 theta-w850 - T500 - 0.5 (T700 - Td700) - 8", "Jefferson 1963, 1966", Jefferson},
    {"        TI", "TI - Thompson Index", Measure::TempDiff, "C", "##0.0", "KI - LI",
     "Haklander and Van Delden 2003", Thompson},
    {"     S{TT}", "S Index", Measure::TempDiff, "C", "##0.0",
     "TT - (T700 - Td700) - A, A 0, 2 or 6 by the Vertical Totals", "Reymann et al. 1998", SIndex},
    {"    Boyden", "Boyden Index", Measure::Number, "", "##0.0",
     "thickness 1000-700 hPa in decametres - T700 - 200", "Boyden 1963", Boydens},
    {"       CAP", "CAP Strength", Measure::TempDiff, "C", "##0.0",
     "largest excess of the surroundings over the parcel below the LFC",
     "Graziano and Carlson 1987", CapStrength},
    {"     SWEAT", "SWEAT Index", Measure::Number, "", "###0.0",
     "12 Td850 + 20 (TT - 49) + 2 V850 + V500 + 125 (sin(dd500 - dd850) + 0.2)", "Miller 1972",
     Sweat},
    {"  TQ Index", "TQ Index", Measure::TempDiff, "C", "##0.0", "(T850 + Td850) - 1.7 T700",
     "Henry 2000", TqIndex},
    {"       BRN", "BRN - Bulk Richardson No.", Measure::Number, "", "###0.0",
     "CAPE total / BRN shear", "Weisman and Klemp 1982", BulkRichardson},
    {" BRN Shear", "BRN Shear", Measure::Number, "m2/s2", "###0.0",
     "half the square of the 0-6 km minus the 0-0.5 km mean wind", "Weisman and Klemp 1982",
     BulkShear},
    {"     NCAPE", "NCAPE  (Normalized CAPE)", Measure::Number, "m/s2", "0.000",
     "CAPE total / (EL - LFC)", "Blanchard 1998", NormalizedCape},
    {"    Craven", "Craven SigSvr Parameter (mixed-layer lift)", Measure::Number, "1000 m3/s3",
     "###0.0", "mean-layer CAPE x shear 0-6 km", "Craven and Brooks 2004", Craven},
    {" Supercell", "Supercell Composite Parameter (SCP)", Measure::Number, "", "##0.0",
     "CAPE/1000 x helicity 0-3 km/100 x BRN shear/40", "Thompson et al. 2003", Supercell, true},
    {"s-rH 0-1km", "srH - storm-relative Helicity (0-1 km)", Measure::Number, "m2/s2", "####0",
     "area that the hodograph sweeps about the storm motion",
     "Davies-Jones, Burgess and Foster 1990", HelicityLowest, true},
    {"s-rH 0-2km", "srH - storm-relative Helicity (0-2 km)", Measure::Number, "m2/s2", "####0",
     "area that the hodograph sweeps about the storm motion",
     "Davies-Jones, Burgess and Foster 1990", HelicityMiddle, true},
    {"s-rH 0-3km", "srH - storm-relative Helicity (0-3 km)", Measure::Number, "m2/s2", "####0",
     "area that the hodograph sweeps about the storm motion",
     "Davies-Jones, Burgess and Foster 1990", HelicityDeep, true},
    {" EHI 0-xkm", "EHI - Energy Helicity Index", Measure::Number, "", "##0.00",
     "CAPE total x helicity / 160000", "Hart and Korotky 1991", EnergyHelicity, true},
    {" VGP 0-xkm", "VGP - Vorticity Generation Parameter", Measure::Number, "m/s2", "0.000",
     "mean shear x square root of CAPE total", "Rasmussen and Wilhelmson 1983",
     VorticityGeneration},
    {"CAPE total", "CAPE Total", Measure::Number, "J/kg", "####0",
     "buoyancy of the chosen parcel from LFC to EL", "Moncrieff and Miller 1976", CapeTotal},
    {"CAPE+ only", "CAPE positive only", Measure::Number, "J/kg", "####0",
     "every positive increment along the parcel's path", "Moncrieff and Miller 1976", CapePlusOnly},
    {"CAPE 0-xkm", "CAPE 0-x km, AGL", Measure::Number, "J/kg", "####0",
     "positive buoyancy of the chosen parcel in the lowest x km", "Moncrieff and Miller 1976",
     CapeToX},
    {" CIN total", "CIN Total", Measure::Number, "J/kg", "####0",
     "negative increments along the parcel's path", "Moncrieff and Miller 1976", CinTotal},
    {" DCAPE 6km", "DCAPE 0-6 km, MSL", Measure::Number, "J/kg", "####0",
     "energy of air that sinks saturated to the ground", "Emanuel 1994", DowndraftCape},
    {"CAPE..Hail", "CAPE of the hail growth zone", Measure::Number, "J/kg", "####0",
     "positive buoyancy where the parcel is between -10 and -30 C", "Doswell and Rasmussen 1994",
     CapeHail},
    {"       MVV", "Maximum vertical velocity", Measure::Number, "m/s", "##0.0",
     "square root of 2 CAPE total", "parcel theory", MaximumUpdraft},
    {"    T1Gust", "T1 gust", Measure::Speed, "kt", "##0",
     "13 x square root of T1, the inflow at 600 hPa minus T600", "Fawbush and Miller 1954",
     FirstGust},
    {"    T2Gust", "T2 gust", Measure::Speed, "kt", "##0",
     "mean wind 0-5000 ft / 3 + 13 x square root of (T1 + T2)/2, T2 = Ts - DownRush-T",
     "Fawbush and Miller 1954", SecondGust},
    {"      MDPI", "MDPI - Microburst Day Potential Index", Measure::Number, "", "0.00",
     "largest theta-e of the lowest 150 hPa minus the smallest of 650-500 hPa, / 30",
     "Wheeler and Spratt 1995", MicroburstDay},
    {"DownRush-T", "DownRush temperature", Measure::Temp, "C", "##0.0",
     "saturated adiabat through the 850 hPa wet bulb, at 1000 hPa", "Fawbush and Miller 1954",
     DownRush},
    {"    WindEX", "Windex", Measure::Speed, "kt", "##0",
     "5 x square root of HM RQ (lapse^2 - 30 + QL - 2 QM)", "McCann 1994", WindexGust},
    {"      WMSI", "WMSI - Wet Microburst Severity Index", Measure::Number, "", "###0.0",
     "CAPE x theta-e contrast / 1000", "Pryor and Ellrod 2004", WetMicroburst},
    {"  GOES HMI", "GOES HMI (Hybrid Microburst Index)", Measure::Number, "", "##0",
     "lapse 850-670 hPa + depression at 850 - depression at 670 hPa", "Pryor 2006", GoesHmi},
    {" Delta ePT", "Delta Theta-e (ePT)", Measure::Number, "K/30", "0.00",
     "largest theta-e below 850 hPa minus the smallest above 660 hPa, / 30",
     "Atkins and Wakimoto 1991", DeltaThetaE},
    {"700-500 LR", "700 - 500 mb lapse rate", Measure::Number, "C/km", "0.0",
     "(T700 - T500) / (z500 - z700)", "", LapseRate},
    {"   WBZ Hgt", "WBZ - WetBulb Zero Hgt", Measure::Agl, "m", "####0",
     "lowest height above ground where the wet bulb is 0 C", "Miller 1972", WetBulbZero},
    {"Wind-Chill", "Wind chill", Measure::Temp, "C", "##0.0", "of surface T and surface wind",
     "Siple and Passel 1945", WindChill},
    {"       THI", "Temperature humidity index", Measure::Number, "F", "##0.0",
     "0.4 (T + Tw) + 15 at the surface, F", "Thom 1959", HumidityIndex},
    {"   Fog FSI", "Fog stability index", Measure::Number, "", "##0.0",
     "4 Ts - 2 (T850 + Tds) + V850", "2WW/TN-79/008", FogStability},
    {"Fog Threat", "Fog threat", Measure::TempDiff, "C", "##0.0", "theta-w850 - fog point",
     "AFWA/TN-98/002", FogThreat},
    {" Fog Point", "Fog point", Measure::Temp, "C", "##0.0",
     "dew point at the surface of the moisture found at the LCL", "AFWA/TN-98/002", FogPoint},
    {"Mixing Hgt", "Mixing height", Measure::Agl, "m", "####0",
     "where the dry adiabat of the surface temperature meets the sounding, above ground",
     "Holzworth 1967", MixingHeight},
    {"     Water", "Precipitable water", Measure::Water, "cm", "0.00",
     "mixing ratio summed from the ground to 300 hPa", "Solot 1939", PrecipitableWater},
    {"      Hail", "Hail", Measure::Number, "in", "0.00",
     "size by the warmth of the cloud at -5 C and the dry descent from there to the CCL, melted "
     "below a high wet-bulb zero",
     "Fawbush and Miller 1953", HailSize},
    {"  Mean DPD", "Mean dew-point depression", Measure::TempDiff, "C", "##0.0",
     "mean of T - Td by ln p, ground to 500 hPa", "", MeanDepression},
    {"   Mean RH", "Mean relative humidity", Measure::Number, "%", "##0",
     "mean by ln p, ground to 500 hPa", "", MeanHumidity},
    {"Vent Index", "Ventilation index", Measure::Number, "m2/s", "#####0",
     "mixing height x mean wind below it", "fire-weather practice", VentIndex},
    {"    Haines", "Haines index", Measure::Number, "", "0",
     "stability term + moisture term, by elevation", "Haines 1988", Haines},
    {"MBE Vector", "Mesoscale propagation vector", Measure::Speed, "kt", "##0",
     "mean wind of 850, 700, 500 and 300 hPa minus the low-level jet",
     "Corfidi, Merritt and Fritsch 1996", MesoscaleVector},
    {"       WCD", "Warm cloud depth", Measure::Depth, "m", "####0",
     "freezing level minus LCL; 0 where the parcel condenses below 0 C", "Davis 2001",
     WarmCloudDepth},
    {"       DCI", "Deep convective index", Measure::TempDiff, "C", "##0.0", "T850 + Td850 - LI",
     "Barlow 1993", DeepConvective},
    {" Lift Mode", "Lift mode", Measure::Word, "", "0", "CAPE base level of the settings", "",
     LiftModeShown},
    {" Lift Type", "Lift type", Measure::Word, "", "0", "LPL of the settings", "", LiftTypeShown},
    {"       LPL", "Lifted parcel level", Measure::Press, "hPa", "###0.0",
     "where the chosen parcel starts", "", LiftLevel},
    {"   MPL Prs", "Maximum parcel level", Measure::Press, "hPa", "###0.0",
     "where the parcel has spent its CAPE above the EL", "Weisman and Klemp 1982", MplPressure},
    {"   MPL Hgt", "Maximum parcel level height", Measure::Height, "m", "####0",
     "where the parcel has spent its CAPE above the EL", "Weisman and Klemp 1982", MplHeight},
    {" Temp Base", "Temperature base", Measure::Word, "", "0", "CAPE temp base of the settings", "",
     TempBaseShown},
    {"  Stn Elev", "Station elevation", Measure::Ground, "m", "####0", "as the sounding gives it",
     "", StationElevation},
    {"  TROP Lvl", "Tropopause", Measure::Height, "m", "####0",
     "lowest level above 500 hPa with at most 2 K/km over 2 km", "WMO 1957", TropopauseLevel},
    {"  FRZG Lvl", "Freezing level", Measure::Height, "m", "####0",
     "lowest passage of 0 C with warmer air below", "", FreezingLevelShown},
    {" cclEL Hgt", "EL of free convection", Measure::Height, "m", "####0",
     "last crossing of the parcel from the CCL", "", CclElHeight},
    {" lfcEL Hgt", "EL of forced lift", Measure::Height, "m", "####0",
     "last crossing of the chosen parcel", "", LfcElHeight},
    {"   LFC Hgt", "LFC height", Measure::Height, "m", "####0",
     "where the chosen parcel becomes warmer than its surroundings", "Miller 1972", LfcHeight},
    {"   CCL Hgt", "CCL height", Measure::Height, "m", "####0",
     "where the mixed layer's moisture saturates the sounding", "AWS/TR-79/006", CclHeight},
    {"   LCL Hgt", "LCL height", Measure::Height, "m", "####0", "where the chosen parcel saturates",
     "", LclHeight},
    {"   LFC-LCL", "LFC-LCL height", Measure::Depth, "m", "####0",
     "height of the LFC above the LCL", "Davies 2004", LfcAboveLcl},
    {"   LFC Prs", "LFC - Level of Free Convection", Measure::Press, "hPa", "###0.0",
     "where the chosen parcel becomes warmer than its surroundings", "Miller 1972", LfcPressure},
    {"     TConv", "Convective temperature", Measure::Temp, "C", "##0.0",
     "the CCL brought down dry-adiabatically", "AWS/TR-79/006", ConvectiveTemp},
    {"DensityAlt", "Density altitude", Measure::Depth, "m", "####0",
     "height in the standard atmosphere of the surface density", "", DensityAltitudeShown},
    {" Shear xKm", "Shear of the lowest x km", Measure::Speed, "kt", "##0",
     "wind at the top of the layer minus the surface wind", "", ShearToX},
    {"T1/T2 Gust", "T1/T2 Gust", Measure::Speed, "kt", "##0", "the larger of the two",
     "Fawbush and Miller 1954", LargerGust},
    {"200mb Wind", "200 mb Wind Speed", Measure::Speed, "kt", "##0", "wind at 200 hPa", "",
     Wind200},
    {"500mb Wind", "500 mb Wind Speed", Measure::Speed, "kt", "##0", "wind at 500 hPa", "",
     Wind500},
    {"850mb Wind", "850 mb Wind Speed", Measure::Speed, "kt", "##0", "wind at 850 hPa", "",
     Wind850},
    {"  850mb Td", "850 mb Dewpoint", Measure::Temp, "C", "##0.0", "dew point at 850 hPa", "",
     Dewpoint850},
    {"Surface Td", "Surface Dewpoint", Measure::Temp, "C", "##0.0", "dew point of the lowest level",
     "", SurfaceDewpoint},
    {"  Eff Base", "Effective inflow layer, base", Measure::Agl, "m", "####0",
     "lowest level whose parcel has CAPE of 100 J/kg or more and CIN of -250 J/kg or less",
     "Thompson, Mead and Edwards 2007", EffectiveBase},
    {"   Eff Top", "Effective inflow layer, top", Measure::Agl, "m", "####0",
     "highest level up to which all parcels have such CAPE and CIN",
     "Thompson, Mead and Edwards 2007", EffectiveTop},
    {"      EBWD", "EBWD - Effective bulk wind difference", Measure::Speed, "kt", "##0",
     "wind half way from the effective base to the most unstable EL minus the wind at the base",
     "Thompson, Mead and Edwards 2007", EffectiveShear},
    {" s-rH 500m", "srH - storm-relative Helicity (0-500 m)", Measure::Number, "m2/s2", "####0",
     "area that the hodograph sweeps about the storm motion", "Coffer et al. 2019", HelicityHalfKm,
     true},
    {"  s-rH Eff", "srH - storm-relative Helicity of the effective layer", Measure::Number, "m2/s2",
     "####0", "area that the hodograph of the effective layer sweeps about the storm motion",
     "Thompson, Mead and Edwards 2007", EffectiveHelicity, true},
    {" STP fixed", "Significant Tornado Parameter, fixed layer (STP)", Measure::Number, "", "##0.0",
     "surface CAPE/1500 x (2000 - LCL)/1000 x helicity 0-1 km/150 x shear 0-6 km/20; LCL term at "
     "most 1, shear term 0 below 12.5 m/s and at most 1.5",
     "Thompson et al. 2003, 2012", TornadoFixed, true},
    {"   STP cin", "Significant Tornado Parameter, effective layer with CIN (STP)", Measure::Number,
     "", "##0.0",
     "mean-layer CAPE/1500 x (2000 - LCL)/1000 x effective helicity/150 x EBWD/20 x (200 + "
     "CIN)/150; "
     "LCL and CIN terms at most 1, shear term 0 below 12.5 m/s and at most 1.5; 0 where the "
     "effective layer begins above the ground",
     "Thompson, Smith, Grams, Dean and Broyles 2012", TornadoEffective, true},
    {"   SCP eff", "Supercell Composite Parameter, effective layer (SCP)", Measure::Number, "",
     "##0.0",
     "most unstable CAPE/1000 x effective helicity/50 x EBWD/20 x -40/CIN; shear term 0 below 10 "
     "m/s and at most 1, CIN term 1 above -40 J/kg",
     "Thompson, Mead and Edwards 2007; Gropp and Davenport 2018", SupercellEffective, true},
    {"      SHIP", "Significant Hail Parameter (SHIP)", Measure::Number, "", "##0.0",
     "most unstable CAPE x its mixing ratio x lapse rate 700-500 x -T500 x shear 0-6 km / "
     "42000000; "
     "mixing ratio 11-13.6 g/kg, T500 at most -5.5 C, shear 7-27 m/s; less below 1300 J/kg, 5.8 "
     "C/km and a freezing level of 2400 m",
     "Johnson and Sugden 2014", SignificantHail},
    {"Crit Angle", "Critical angle", Measure::Number, "deg", "##0",
     "angle at the surface wind between the shear 0-500 m and the way to the storm motion",
     "Esterheld and Giuliano 2008", CriticalAngle},
    {"Streamw500", "Streamwise vorticity of the lowest 500 m", Measure::Number, "%", "##0",
     "streamwise part of the horizontal vorticity / all of it", "Davies-Jones 1984",
     StreamwiseHalfKm, true},
    {"Streamw1km", "Streamwise vorticity of the lowest km", Measure::Number, "%", "##0",
     "streamwise part of the horizontal vorticity / all of it", "Davies-Jones 1984", StreamwiseKm,
     true},
    {"Streamw3km", "Streamwise vorticity of the lowest 3 km", Measure::Number, "%", "##0",
     "streamwise part of the horizontal vorticity / all of it", "Davies-Jones 1984", StreamwiseDeep,
     true},
    {" 0-3 km LR", "0 - 3 km lapse rate", Measure::Number, "C/km", "0.0",
     "T at the ground minus T 3 km above it, / 3", "", LapseLow},
    {" 3-6 km LR", "3 - 6 km lapse rate", Measure::Number, "C/km", "0.0",
     "T 3 km above ground minus T at 6 km, / 3", "", LapseMiddle},
    {"850-500 LR", "850 - 500 mb lapse rate", Measure::Number, "C/km", "0.0",
     "(T850 - T500) / (z500 - z850)", "", LapseDeep},
    {"0-3 km VLR", "0 - 3 km lapse rate of virtual temperature", Measure::Number, "C/km", "0.0",
     "Tv at the ground minus Tv 3 km above it, / 3", "", LapseLowVirtual},
    {"3-6 km VLR", "3 - 6 km lapse rate of virtual temperature", Measure::Number, "C/km", "0.0",
     "Tv 3 km above ground minus Tv at 6 km, / 3", "", LapseMiddleVirtual},
    {"850-500VLR", "850 - 500 mb lapse rate of virtual temperature", Measure::Number, "C/km", "0.0",
     "(Tv850 - Tv500) / (z500 - z850)", "", LapseDeepVirtual},
    {"700-500VLR", "700 - 500 mb lapse rate of virtual temperature", Measure::Number, "C/km", "0.0",
     "(Tv700 - Tv500) / (z500 - z700)", "", LapseHighVirtual},
    {"Corfidi Up", "Corfidi upshear vector", Measure::Speed, "kt", "##0",
     "mean wind 850-300 hPa minus mean wind 0-1.5 km: how storms build back into the low-level jet",
     "Corfidi 2003", CorfidiUpshear},
    {"Corfidi Dn", "Corfidi downshear vector", Measure::Speed, "kt", "##0",
     "twice the mean wind 850-300 hPa minus mean wind 0-1.5 km: how storms run with their outflow",
     "Corfidi 2003", CorfidiDownshear},
    {"  Eff Wind", "Mean wind of the effective layer", Measure::Speed, "kt", "##0",
     "mean from the effective base to its top, weighted by pressure",
     "Thompson, Mead and Edwards 2007", EffectiveWind},
    {"LCL-EL Wnd", "Mean wind of the cloud layer", Measure::Speed, "kt", "##0",
     "mean from the LCL to the EL of the most unstable parcel, weighted by pressure", "",
     CloudWind},
    {"       DCP", "Derecho Composite Parameter (DCP)", Measure::Number, "", "##0.0",
     "DCAPE/980 x most unstable CAPE/2000 x shear 0-6 km/20 x mean wind 0-6 km/16, winds in kt",
     "Evans and Doswell 2001", DerechoComposite},
    {"       ESP", "Enhanced Stretching Potential (ESP)", Measure::Number, "", "##0.0",
     "mean-layer CAPE 0-3 km/50 x (lapse rate 0-3 km - 7); 0 below 7 C/km and below 250 J/kg of "
     "mean-layer CAPE",
     "Caruso and Davies 2005", EnhancedStretching},
    {"     ECAPE", "ECAPE - Entraining CAPE", Measure::Number, "J/kg", "####0",
     "most unstable CAPE less what mixing takes, an updraft as wide as the storm-relative wind 0-1 "
     "km feeds, plus half the square of that wind",
     "Peters, Chavas, Su, Morrison and Coffer 2023", EntrainingCape},
    {" 3CAPE sfc", "CAPE 0-3 km of the surface parcel", Measure::Number, "J/kg", "####0",
     "positive buoyancy of the surface parcel in the lowest 3 km", "Rasmussen 2003",
     LowCapeSurface},
    {"  3CAPE ML", "CAPE 0-3 km of the mean-layer parcel", Measure::Number, "J/kg", "####0",
     "positive buoyancy of the mean-layer parcel in the lowest 3 km", "Rasmussen 2003",
     LowCapeMeanLayer},
    {"  3CAPE MU", "CAPE 0-3 km of the most unstable parcel", Measure::Number, "J/kg", "####0",
     "positive buoyancy of the most unstable parcel in the lowest 3 km", "Rasmussen 2003",
     LowCapeMostUnstable},
    {"    Mean w", "Mean mixing ratio", Measure::Number, "g/kg", "##0.0",
     "mean by pressure over the mean layer of the settings", "Craven, Jewell and Brooks 2002",
     MeanMixingRatio},
    {"PW sfc-850", "Precipitable water, ground to 850 mb", Measure::Water, "cm", "0.00",
     "mixing ratio summed from the ground to 850 hPa", "Solot 1939", WaterLowest},
    {"PW 850-700", "Precipitable water, 850 to 700 mb", Measure::Water, "cm", "0.00",
     "mixing ratio summed from 850 hPa or the ground to 700 hPa", "Solot 1939", WaterLow},
    {"PW 700-500", "Precipitable water, 700 to 500 mb", Measure::Water, "cm", "0.00",
     "mixing ratio summed from 700 hPa or the ground to 500 hPa", "Solot 1939", WaterMiddle},
    {"PW 500-300", "Precipitable water, 500 to 300 mb", Measure::Water, "cm", "0.00",
     "mixing ratio summed from 500 to 300 hPa", "Solot 1939", WaterHigh},
};

}  // namespace

std::span<const IndexRow> IndexTable() {
  return kRows;
}

const IndexRow* FindIndex(std::string_view label) {
  const std::string_view wanted = Trim(label);
  const auto* row = std::ranges::find_if(
      kRows, [&](const IndexRow& candidate) { return SameText(Trim(candidate.Label), wanted); });
  return row == std::end(kRows) ? nullptr : row;
}

namespace {

// Computes a row through its reader, into the index of which the reader tells.
void Compute(const IndexRow& row, IndexReader& reader, IndexValue& index) {
  const double value = row.Compute(reader);
  if (!reader.Failed() && !std::isfinite(value)) {
    reader.Fail("the formula has no value for these inputs");
  }
  if (reader.Failed()) index = {.Reason = std::move(index.Reason)};
  index.Row = &row;
  if (!reader.Failed()) index.Value = value;
}

void ComputeRow(const IndexRow& row, const SoundingRecord& sounding, const AnalysisResults& results,
                const AnalysisSettings& options, SharedReadings& shared, IndexValue& index) {
  IndexReader reader(sounding, results, options, shared, IndexReader::Notes::Drop, index);
  Compute(row, reader, index);
}

}  // namespace

IndexValue ComputeIndex(const IndexRow& row, const SoundingRecord& sounding,
                        const AnalysisResults& results, const AnalysisSettings& options) {
  SharedReadings shared;
  IndexValue index;
  ComputeRow(row, sounding, results, options, shared, index);
  return index;
}

std::vector<IndexValue> ComputeIndices(const SoundingRecord& sounding,
                                       const AnalysisResults& results,
                                       const AnalysisSettings& options) {
  std::vector<IndexValue> indices(std::size(kRows));
  SharedReadings shared;
  for (std::size_t i = 0; i < indices.size(); ++i) {
    ComputeRow(kRows[i], sounding, results, options, shared, indices[i]);
  }
  return indices;
}

const IndexValue* IndexOf(const AnalysisResults& results, const IndexRow& row) {
  const auto place = static_cast<std::size_t>(&row - kRows);
  return place < results.Indices.size() ? &results.Indices[place] : nullptr;
}

IndexUnits UnitsOf(const UnitSettings& settings, double ground) {
  return {.Temp = settings.ThermoTemp,
          .Length = settings.ThermoHeight,
          .Heights = settings.Heights,
          .Ground = ground,
          .Speed = settings.Speed,
          .IsWaterInches = settings.ThermoHeight == LengthUnits::Feet,
          .PressWord = PressureWord(settings.Pressure)};
}

namespace {

struct Converted {
  double Amount = 0;
  std::string Unit{};
};

// A value of a row in the units asked for, and the word of the unit.
Converted InUnits(const IndexRow& row, double value, const IndexUnits& units) {
  const auto length = [&units](double meters) -> Converted {
    return {ShownIn(meters, units.Length), std::string(UnitWord(units.Length))};
  };
  const auto above = [&length](double meters) -> Converted {
    const Converted depth = length(meters);
    return {depth.Amount, depth.Unit + " AGL"};
  };
  switch (row.Kind) {
    case Measure::Temp:
      return {ShownIn(value, units.Temp), std::string(Word(units.Temp))};
    case Measure::Height:
      return units.Heights == HeightMode::Agl && HasHeight(units.Ground)
                 ? above(value - units.Ground)
                 : length(value);
    case Measure::Agl:
      return above(value);
    case Measure::Ground:
    case Measure::Depth:
      return length(value);
    case Measure::Press:
      return {value, std::string(units.PressWord)};
    case Measure::Speed:
      if (units.Speed == SpeedUnits::MetersPerSecond) return {ShownIn(value, units.Speed), "m/s"};
      return {value, std::string(units.KnotWord)};
    case Measure::Water:
      return units.IsWaterInches ? Converted{value / kCentimetersPerInch, "in"}
                                 : Converted{value, "cm"};
    case Measure::TempDiff:
    case Measure::Number:
    case Measure::Word:
      break;
  }
  return {value, std::string(row.Unit)};
}

}  // namespace

ShownIndex ShowIndex(const IndexValue& index, const IndexUnits& units) {
  const IndexRow& row = *index.Row;
  const Converted converted = InUnits(row, index.Exists() ? index.Value : 0, units);
  ShownIndex shown{.Unit = converted.Unit};
  if (!index.Exists()) return shown;
  if (!index.Text.empty()) {
    shown.Number = index.Text;
    shown.Unit.clear();
    return shown;
  }
  shown.Amount = converted.Amount;
  if (index.IsBound) shown.Bound = index.Value < 0 ? "<" : ">";
  shown.Number = Mask(converted.Amount, row.Mask);
  if (index.Direction) shown.Number = DirectionText(*index.Direction) + "/" + shown.Number;
  if (index.Both) {
    const auto number = [&](double value) {
      return Mask(InUnits(row, value, units).Amount, row.Mask);
    };
    shown.Number = number(index.Both->front()) + "/" + number(index.Both->back());
  }
  return shown;
}

std::string ShownIndex::Text() const {
  const bool hasUnit = !Unit.empty() && Number != "--";
  return std::string(Bound) + Number + (hasUnit ? " " + Unit : "");
}

std::string ShownValue(const IndexValue& index, const UnitSettings& settings, double ground) {
  return ShowIndex(index, UnitsOf(settings, ground)).Text();
}

std::string Explain(const IndexRow& row, const SoundingRecord& sounding,
                    const AnalysisResults& results, const AnalysisSettings& options) {
  SharedReadings shared;
  IndexValue index;
  IndexReader reader(sounding, results, options, shared, IndexReader::Notes::Keep, index);
  Compute(row, reader, index);
  std::string text = std::string(Trim(row.Label)) + "  " + std::string(row.Name) + ": ";
  if (!index.Exists()) {
    text += "-- (" + index.Reason + ")";
  } else {
    text += ShowIndex(index, kRowUnits).Text();
  }
  text += "\n  = " + std::string(row.Formula) + "\n";
  for (const IndexInput& input : reader.Inputs()) {
    text += "  " + PadRight(input.Name, 26) + " " + input.Value + "\n";
  }
  if (!row.Source.empty()) text += "  Source: " + std::string(row.Source) + "\n";
  return text;
}

}  // namespace vexa::analysis
