#include "analysis/index_table.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include "analysis/interpolate.h"
#include "analysis/moist_air.h"
#include "core/numbers.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

using In = IndexReader;

double VerticalTotals(In& in) {
  return in.Temp(850) - in.Temp(500);
}
double CrossTotals(In& in) {
  return in.Dewpt(850) - in.Temp(500);
}
double TotalTotals(In& in) {
  return in.Temp(850) + in.Dewpt(850) - 2 * in.Temp(500);
}

double KIndex(In& in) {
  return (in.Temp(850) - in.Temp(500)) + in.Dewpt(850) - (in.Temp(700) - in.Dewpt(700));
}

// Temperature of the chosen parcel at a pressure, dry below its condensation level.
double ParcelTempAt(In& in, double press) {
  const ParcelAscent& parcel = in.Results().Chosen();
  if (!parcel.Start.Exists() || !parcel.Condensation.Exists()) return in.Fail("no parcel to lift");
  if (press > parcel.Start.Press) return in.Fail("the parcel starts above that level");
  const SaturationOver over = in.Set().Saturation;
  const LevelPoint& lcl = parcel.Condensation;
  const double temp =
      press <= lcl.Press
          ? LiftSat(ThetaPoint(lcl.Press, lcl.Temp, over).ThetaE, press, over).Temp
          : DryAdiabatTemp(ThetaPoint(parcel.Start.Press, parcel.Start.Temp, over).Theta, press);
  in.Setting("lift type", Text(in.Results().ChosenLift));
  return in.Note("parcel T " + Mask(press, "###0") + " hPa", temp, "C");
}

double LiftedIndex(In& in) {
  return in.Temp(500) - ParcelTempAt(in, 500);
}

double Showalter(In& in) {
  const double temp = in.Temp(850);
  const double dewpt = in.Dewpt(850);
  const double environment = in.Temp(500);
  if (in.Failed()) return 0;
  const SaturationOver over = in.Set().Saturation;
  const double thetaE = LevelThetaE(850, temp, std::min(dewpt, temp), over);
  return environment - in.Note("850 hPa parcel at 500 hPa", LiftSat(thetaE, 500, over).Temp, "C");
}

double SIndex(In& in) {
  const double vertical = VerticalTotals(in);
  double term = 6;
  if (vertical >= 25) {
    term = 0;
  } else if (vertical > 22) {
    term = 2;
  }
  return TotalTotals(in) - (in.Temp(700) - in.Dewpt(700)) - in.Note("A", term, "");
}

// The saturated adiabat through the wet bulb at 850 hPa, followed down to 1000 hPa; also the
// wet-bulb potential temperature of the Jefferson index.
double DownRush(In& in) {
  const double wetBulb = in.WetBulb(850);
  if (in.Failed()) return 0;
  const SaturationOver over = in.Set().Saturation;
  const double thetaE = ThetaPoint(850, wetBulb, over).ThetaE;
  return LiftSat(thetaE, kReferencePress, over).Temp;
}

double Jefferson(In& in) {
  return 1.6 * in.Note("DownRush-T", DownRush(in), "C") - in.Temp(500) -
         0.5 * (in.Temp(700) - in.Dewpt(700)) - 8;
}

double Thompson(In& in) {
  return KIndex(in) - in.Note("LI", LiftedIndex(in), "C");
}
double DeepConvective(In& in) {
  return in.Temp(850) + in.Dewpt(850) - in.Note("LI", LiftedIndex(in), "C");
}

// A missing 1000 hPa level lies below the ground: the lowest level stands in for it.
double KoIndex(In& in) {
  double bottom = GetTEMP(in.Levels(), 1000, Quantity::ThetaE);
  if (!NotAvailable(bottom)) {
    in.Note("theta-e 1000 hPa", bottom, "K");
  } else if (in.Levels().Count() > 0 && !NotAvailable(in.Levels().ThetaE(1))) {
    bottom = in.Note("theta-e of the lowest level", in.Levels().ThetaE(1), "K");
  } else {
    return in.Fail("no dew point at the lowest level");
  }
  const double at850 = in.ThetaE(850);
  return (in.ThetaE(500) + in.ThetaE(700)) / 2 - (bottom + at850) / 2;
}

double TqIndex(In& in) {
  return in.Temp(850) + in.Dewpt(850) - 1.7 * in.Temp(700);
}

double Boydens(In& in) {
  if (in.SurfacePress() < 700) in.Fail("the surface lies above 700 hPa");
  const double thickness = in.Height(700) - in.Height(1000);
  if (thickness == 0) in.Fail("no thickness of 1000 to 700 hPa");
  return thickness / 10 - in.Temp(700) - 200;
}

double GoesHmi(In& in) {
  const double rise = (in.Height(670) - in.Height(850)) / 1000;
  if (!(rise > 0)) return in.Fail("no height between 850 and 670 hPa");
  const double lapse = in.Note("lapse 850-670 hPa", (in.Temp(850) - in.Temp(670)) / rise, "C/km");
  return ToWhole(lapse + (in.Temp(850) - in.Dewpt(850)) - (in.Temp(670) - in.Dewpt(670)));
}

double DeltaThetaE(In& in) {
  const LevelProfile& levels = in.Levels();
  if (levels.Count() < 2) return in.Fail("fewer than 2 levels");
  if (!(levels.Press.Top() < 500)) return in.Fail("the sounding ends below 500 hPa");
  double most = 0;
  double least = 1000;
  for (int i = 1; i <= levels.Count() && levels.Press(i) >= 100; ++i) {
    const double thetaE = levels.ThetaE(i);
    if (NotAvailable(thetaE) || !(thetaE > 0)) continue;
    if (levels.Press(i) > 850) most = std::max(most, thetaE);
    if (levels.Press(i) < 660) least = std::min(least, thetaE);
  }
  const double at850 = GetTEMP(levels, 850, Quantity::ThetaE);
  const double at660 = GetTEMP(levels, 660, Quantity::ThetaE);
  if (!NotAvailable(at850)) most = std::max(most, at850);
  if (!NotAvailable(at660)) least = std::min(least, at660);
  if (most == 0 || least == 1000) return in.Fail("no dew points below 850 or above 660 hPa");
  in.Note("largest theta-e below 850 hPa", most, "K");
  in.Note("smallest theta-e above 660 hPa", least, "K");
  return (most - least) / 30;
}

double LapseRate(In& in) {
  const double rise = (in.Height(500) - in.Height(700)) / 1000;
  if (!(rise > 0)) return in.Fail("no height between 700 and 500 hPa");
  return (in.Temp(700) - in.Temp(500)) / rise;
}

double Sweat(In& in) {
  const double moisture = 12 * std::max(in.Dewpt(850), 0.0);
  const double totals = 20 * std::max(in.Note("TT", TotalTotals(in), "C") - 49, 0.0);
  const Wind low = in.WindAt(850);
  const Wind high = in.WindAt(500);
  const bool turns = low.Dir >= 130 && low.Dir <= 250 && high.Dir >= 210 && high.Dir <= 310 &&
                     high.Dir > low.Dir && low.Spd >= 15 && high.Spd >= 15;
  const double shear = turns ? 125 * (std::sin(Radians(high.Dir - low.Dir)) + 0.2) : 0;
  in.Note("shear term", shear, "");
  return moisture + totals + 2 * low.Spd + high.Spd + shear;
}

double BulkRichardson(In& in) {
  const double shear = in.BrnShear();
  if (!in.Failed() && shear < 1e-9) in.Fail("there is no shear");
  return in.Failed() ? 0 : in.Cape() / shear;
}

double BulkShear(In& in) {
  return in.BrnShear();
}

double EnergyHelicity(In& in) {
  return in.Cape() * in.Helicity(in.Set().EhiDepthKm) / 160000;
}

double Supercell(In& in) {
  const ParcelAscent& parcel = in.Results().Ascent(LiftType::MostUnstable);
  if (!parcel.Start.Exists()) return in.Fail("no parcel to lift");
  const double cape = in.Note("most unstable CAPE", parcel.CapeTotal, "J/kg");
  return cape / 1000 * (in.Helicity(3) / 100) * (in.BrnShear() / 40);
}

double Craven(In& in) {
  const ParcelAscent& parcel = in.Results().Ascent(LiftType::MeanLayer);
  if (!parcel.Start.Exists()) return in.Fail("no mean-layer parcel");
  const auto& shear = in.Results().Storm.Shear6km;
  if (!shear) return in.Fail("the winds do not cover 0-6 km");
  const double shearMs = in.Note("shear 0-6 km", kKnotToMs * std::hypot(shear->U, shear->V), "m/s");
  return in.Note("mean-layer CAPE", parcel.CapeTotal, "J/kg") * shearMs / 1000;
}

// The pair of winds that straddles the layer's top counts whole: keep.
double VorticityGeneration(In& in) {
  const double depth = in.Set().VgpDepthKm * 1000;
  if (!(depth > 0)) return in.Fail("the layer has no depth");
  const SoundingRecord& sounding = in.Sounding();
  if (sounding.NumWindLevels() < 2) return in.Fail("fewer than 2 winds");
  double sum = 0;
  for (int i = 1; i < sounding.NumWindLevels(); ++i) {
    if (sounding.WindHgt(i) - sounding.ElevM > depth) break;
    const WindVector a = Components({sounding.WindDir(i), sounding.WindSpd(i) * kKnotToMsPlot});
    const WindVector b =
        Components({sounding.WindDir(i + 1), sounding.WindSpd(i + 1) * kKnotToMsPlot});
    sum += std::hypot(b.U - a.U, b.V - a.V);
  }
  return in.Note("mean shear", sum / depth * 1000, "1/1000 s") / 1000 * std::sqrt(in.Cape());
}

double NormalizedCape(In& in) {
  const ParcelAscent& parcel = in.Results().Chosen();
  if (!parcel.FreeLevel.Exists() || !parcel.Equilibrium.Exists()) {
    return in.Fail("the parcel is never free");
  }
  const double depth =
      in.Note("EL minus LFC", parcel.Equilibrium.Height - parcel.FreeLevel.Height, "m");
  if (!(depth > 0)) return in.Fail("LFC and EL coincide");
  return in.Cape() / depth;
}

double MaximumUpdraft(In& in) {
  return std::sqrt(2 * in.Cape());
}

double CapStrength(In& in) {
  const ParcelAscent& parcel = in.Results().Chosen();
  if (!parcel.FreeLevel.Exists()) return in.Fail("the parcel is never free");
  double cap = 0;
  for (std::size_t i = 0; i < parcel.ParcelTemps.size(); ++i) {
    if (parcel.FirstPress - parcel.Step * static_cast<double>(i) < parcel.FreeLevel.Press) break;
    cap = std::max(cap, parcel.EnvTemps[i] - parcel.ParcelTemps[i]);
  }
  return cap;
}

// Largest θe of the lowest 150 hPa minus the smallest between 650 and 500 hPa.
double MicroburstContrast(In& in) {
  const double surface = in.SurfacePress();
  double most = 0;
  double least = 1e9;
  const auto take = [&](double press, double thetaE) {
    if (NotAvailable(thetaE)) return;
    if (press >= surface - 150) most = std::max(most, thetaE);
    if (press <= 650 && press >= 500) least = std::min(least, thetaE);
  };
  const LevelProfile& levels = in.Levels();
  for (int i = 1; i <= levels.Count(); ++i) take(levels.Press(i), levels.ThetaE(i));
  for (const double press : {surface - 150, 650.0, 500.0}) {
    const Sample at = SampleAt(levels, press, Quantity::ThetaE);
    if (at.Ok()) take(press, at.Value);
  }
  if (most == 0 || least == 1e9) {
    return in.Fail("no dew points near the ground or between 650 and 500 hPa");
  }
  in.Note("largest theta-e of the lowest 150 hPa", most, "K");
  in.Note("smallest theta-e of 650-500 hPa", least, "K");
  return most - least;
}

double MicroburstDay(In& in) {
  return MicroburstContrast(in) / 30;
}
double WetMicroburst(In& in) {
  return in.Cape() * MicroburstContrast(in) / 1000;
}

double WindChill(In& in) {
  const double temp = FahrenheitFromCelsius(in.SurfaceTemp());
  const double speed = in.SurfaceWind().Spd * 1.15155;  // mph
  const double chill =
      speed <= 4 ? temp
                 : 91.4 + 0.0817 * (3.71 * std::sqrt(speed) + 5.81 - 0.25 * speed) * (temp - 91.4);
  return (chill - 32) / 1.8;
}

double HumidityIndex(In& in) {
  const double temp = in.SurfaceTemp();
  in.SurfaceDewpt();
  if (in.Failed()) return 0;
  const double wetBulb = in.Note("surface Tw", in.Levels().WetBulb(1), "C");
  return 0.4 * (FahrenheitFromCelsius(temp) + FahrenheitFromCelsius(wetBulb)) + 15;
}

double FogPoint(In& in) {
  const ParcelAscent& parcel = in.Results().Lifts[0].Forced;
  const double surface = in.SurfacePress();
  if (!parcel.Condensation.Exists()) return in.Fail("no surface parcel");
  const double press = in.Note("LCL", parcel.Condensation.Press, "hPa");
  const Sample dewpt = SampleAt(in.Levels(), press, Quantity::Dewpt);
  if (!dewpt.Ok()) return in.Fail("no dew point at the LCL");
  const SaturationOver over = in.Set().Saturation;
  const double mixing = ThetaPoint(press, dewpt.Value, over).MixingRatio;
  return DewpointFromMixingRatio(surface, mixing, over);
}

double FogThreat(In& in) {
  return in.Note("DownRush-T", DownRush(in), "C") - in.Note("fog point", FogPoint(in), "C");
}

double FogStability(In& in) {
  return 4 * in.SurfaceTemp() - 2 * (in.Temp(850) + in.SurfaceDewpt()) + in.WindAt(850).Spd;
}

constexpr IndexRow kRows[] = {
    {"        KI", "K Index", "C", "##0.0", "(T850 - T500) + Td850 - (T700 - Td700)", "George 1960",
     KIndex},
    {"        TT", "TT - Total Totals", "C", "##0.0", "T850 + Td850 - 2 T500", "Miller 1972",
     TotalTotals},
    {"        VT", "VT - Vertical Totals", "C", "##0.0", "T850 - T500", "Miller 1972",
     VerticalTotals},
    {"        CT", "CT - Cross Totals", "C", "##0.0", "Td850 - T500", "Miller 1972", CrossTotals},
    {"        LI", "LI - Lifted Index", "C", "##0.0", "T500 minus the chosen parcel at 500 hPa",
     "Galway 1956", LiftedIndex},
    {"        SI", "SI - Showalter Index", "C", "##0.0",
     "T500 minus the 850 hPa parcel lifted to 500 hPa", "Showalter 1953", Showalter},
    {"        KO", "KO Index", "K", "##0.0",
     "mean theta-e of 500 and 700 hPa minus that of 1000 and 850 hPa", "Andersson et al. 1989",
     KoIndex},
    {"        JI", "JI - Jefferson Index", "", "##0.0",
     "1.6 theta-w850 - T500 - 0.5 (T700 - Td700) - 8", "Jefferson 1963, 1966", Jefferson},
    {"        TI", "TI - Thompson Index", "C", "##0.0", "KI - LI", "Haklander and Van Delden 2003",
     Thompson},
    {"     S{TT}", "S Index", "C", "##0.0",
     "TT - (T700 - Td700) - A, A 0, 2 or 6 by the Vertical Totals", "Reymann et al. 1998", SIndex},
    {"    Boyden", "Boyden Index", "", "##0.0", "thickness 1000-700 hPa in decametres - T700 - 200",
     "Boyden 1963", Boydens},
    {"       CAP", "CAP Strength", "C", "##0.0",
     "largest excess of the surroundings over the parcel below the LFC",
     "Graziano and Carlson 1987", CapStrength},
    {"     SWEAT", "SWEAT Index", "", "###0.0",
     "12 Td850 + 20 (TT - 49) + 2 V850 + V500 + 125 (sin(dd500 - dd850) + 0.2)", "Miller 1972",
     Sweat},
    {"  TQ Index", "TQ Index", "C", "##0.0", "(T850 + Td850) - 1.7 T700", "Henry 2000", TqIndex},
    {"       BRN", "BRN - Bulk Richardson No.", "", "###0.0", "CAPE total / BRN shear",
     "Weisman and Klemp 1982", BulkRichardson},
    {" BRN Shear", "BRN Shear", "m2/s2", "###0.0",
     "half the square of the 0-6 km minus the 0-0.5 km mean wind", "Weisman and Klemp 1982",
     BulkShear},
    {"     NCAPE", "NCAPE  (Normalized CAPE)", "m/s2", "0.000", "CAPE total / (EL - LFC)",
     "Blanchard 1998", NormalizedCape},
    {"    Craven", "Craven SigSvr Parameter (mixed-layer lift)", "1000 m3/s3", "###0.0",
     "mean-layer CAPE x shear 0-6 km", "Craven and Brooks 2004", Craven},
    {" Supercell", "Supercell Composite Parameter (SCP)", "", "##0.0",
     "CAPE/1000 x helicity 0-3 km/100 x BRN shear/40", "Thompson et al. 2003", Supercell},
    {" EHI 0-xkm", "EHI - Energy Helicity Index", "", "##0.00", "CAPE total x helicity / 160000",
     "Hart and Korotky 1991", EnergyHelicity},
    {" VGP 0-xkm", "VGP - Vorticity Generation Parameter", "m/s2", "0.000",
     "mean shear x square root of CAPE total", "Rasmussen and Wilhelmson 1983",
     VorticityGeneration},
    {"       MVV", "Maximum vertical velocity", "m/s", "##0.0", "square root of 2 CAPE total",
     "parcel theory", MaximumUpdraft},
    {"      MDPI", "MDPI - Microburst Day Potential Index", "", "0.00",
     "largest theta-e of the lowest 150 hPa minus the smallest of 650-500 hPa, / 30",
     "Wheeler and Spratt 1995", MicroburstDay},
    {"DownRush-T", "DownRush temperature", "C", "##0.0",
     "saturated adiabat through the 850 hPa wet bulb, at 1000 hPa", "Fawbush and Miller 1954",
     DownRush},
    {"      WMSI", "WMSI - Wet Microburst Severity Index", "", "###0.0",
     "CAPE x theta-e contrast / 1000", "Pryor and Ellrod 2004", WetMicroburst},
    {"  GOES HMI", "GOES HMI (Hybrid Microburst Index)", "", "##0",
     "lapse 850-670 hPa + depression at 850 - depression at 670 hPa", "Pryor 2006", GoesHmi},
    {" Delta ePT", "Delta Theta-e (ePT)", "", "0.00",
     "largest theta-e below 850 hPa minus the smallest above 660 hPa, / 30",
     "Atkins and Wakimoto 1991", DeltaThetaE},
    {"700-500 LR", "700 - 500 mb lapse rate (C/km)", "C/km", "0.0", "(T700 - T500) / (z500 - z700)",
     "", LapseRate},
    {"Wind-Chill", "Wind chill", "C", "##0.0", "of surface T and surface wind", "NWS", WindChill},
    {"       THI", "Temperature humidity index", "F", "##0.0",
     "0.4 (T + Tw) + 15 at the surface, F", "Thom 1959", HumidityIndex},
    {"   Fog FSI", "Fog stability index", "", "##0.0", "4 Ts - 2 (T850 + Tds) + V850",
     "2WW/TN-79/008", FogStability},
    {"Fog Threat", "Fog threat", "C", "##0.0", "theta-w850 - fog point", "AFWA/TN-98/002",
     FogThreat},
    {" Fog Point", "Fog point", "C", "##0.0",
     "dew point at the surface of the moisture found at the LCL", "AFWA/TN-98/002", FogPoint},
    {"       DCI", "Deep convective index", "C", "##0.0", "T850 + Td850 - LI", "Barlow 1993",
     DeepConvective},
};

}  // namespace

std::span<const IndexRow> IndexTable() {
  return kRows;
}

const IndexRow* FindIndex(std::string_view label) {
  const auto same = [](unsigned char a, unsigned char b) {
    return std::tolower(a) == std::tolower(b);
  };
  const std::string_view wanted = Trim(label);
  const auto* row = std::ranges::find_if(kRows, [&](const IndexRow& candidate) {
    return std::ranges::equal(Trim(candidate.Label), wanted, same);
  });
  return row == std::end(kRows) ? nullptr : row;
}

IndexValue ComputeIndex(const IndexRow& row, const SoundingRecord& sounding,
                        const AnalysisResults& results, const Options& options) {
  IndexReader reader(sounding, results, options);
  const double value = row.Compute(reader);
  IndexValue index{.Row = &row};
  if (reader.Failed()) {
    index.Reason = reader.Reason();
  } else if (!std::isfinite(value)) {
    index.Reason = "the formula has no value for these inputs";
  } else {
    index.Value = value;
  }
  index.Inputs = std::move(reader.Inputs());
  return index;
}

std::vector<IndexValue> ComputeIndices(const SoundingRecord& sounding,
                                       const AnalysisResults& results, const Options& options) {
  std::vector<IndexValue> indices;
  indices.reserve(std::size(kRows));
  for (const IndexRow& row : kRows) {
    indices.push_back(ComputeIndex(row, sounding, results, options));
  }
  return indices;
}

std::string Explain(const IndexValue& index) {
  const IndexRow& row = *index.Row;
  std::string text = std::string(Trim(row.Label)) + "  " + std::string(row.Name) + ": ";
  if (index.Exists()) {
    text += Mask(index.Value, row.Mask);
    if (!row.Unit.empty()) text += " " + std::string(row.Unit);
  } else {
    text += "-- (" + index.Reason + ")";
  }
  text += "\n  = " + std::string(row.Formula) + "\n";
  for (const IndexInput& input : index.Inputs) {
    text += "  " + PadRight(input.Name, 32) + " " + input.Value + "\n";
  }
  if (!row.Source.empty()) text += "  Source: " + std::string(row.Source) + "\n";
  return text;
}

}  // namespace vexa::analysis
