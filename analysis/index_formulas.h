// The functions behind the rows of the index table. Each reads what it needs through the reader,
// which notes it, and gives its value in the unit of its row; the table has formulas and sources.
#pragma once

#include <string>

#include "analysis/index_reader.h"

namespace vexa::analysis::formula {

using In = IndexReader;

// Stability and moisture.
double KIndex(In& in);
double TotalTotals(In& in);
double VerticalTotals(In& in);
double CrossTotals(In& in);
double LiftedIndex(In& in);
double Showalter(In& in);
double SIndex(In& in);
double DownRush(In& in);  // °C, also the wet-bulb potential temperature of the Jefferson index
double Jefferson(In& in);
double Thompson(In& in);
double DeepConvective(In& in);
double KoIndex(In& in);
double TqIndex(In& in);
double Boydens(In& in);
double GoesHmi(In& in);
double DeltaThetaE(In& in);
double LapseRate(In& in);
double MicroburstContrast(In& in);  // K, θe near the ground minus the smallest aloft
double MicroburstDay(In& in);

// Energy, shear and storm-relative wind.
double Sweat(In& in);
double BulkRichardson(In& in);
double BulkShear(In& in);
double EnergyHelicity(In& in);
double Supercell(In& in);
double Craven(In& in);
double VorticityGeneration(In& in);
double NormalizedCape(In& in);
double MaximumUpdraft(In& in);
double CapStrength(In& in);
double WetMicroburst(In& in);
double HelicityLowest(In& in);
double HelicityMiddle(In& in);
double HelicityDeep(In& in);
double ShearToX(In& in);
double CapeTotal(In& in);
double CapePlusOnly(In& in);
double CapeToX(In& in);
double CapeHail(In& in);
double CinTotal(In& in);
double DowndraftCape(In& in);
double MesoscaleVector(In& in);
double Wind200(In& in);
double Wind500(In& in);
double Wind850(In& in);

// The air that storms draw in.
const EffectiveLayer& NeedEffectiveLayer(In& in);  // fails, with the reason, where there is none
double EffectiveBase(In& in);                      // m above ground
double EffectiveTop(In& in);
double EffectiveShear(In& in);  // kt
double EffectiveHelicity(In& in);
double HelicityHalfKm(In& in);
double CriticalAngle(In& in);
double StreamwiseHalfKm(In& in);
double StreamwiseKm(In& in);
double StreamwiseDeep(In& in);
double EffectiveWind(In& in);
double CloudWind(In& in);
double CorfidiUpshear(In& in);
double CorfidiDownshear(In& in);

// Composites and the energy of the lowest 3 km.
double TornadoFixed(In& in);
double TornadoEffective(In& in);
double SupercellEffective(In& in);
double SignificantHail(In& in);
double DerechoComposite(In& in);
double EnhancedStretching(In& in);
double EntrainingCape(In& in);
/// CAPE, J/kg, of an updraft that mixes with air about it and draws in the wind's energy.
///
/// dilution  J/kg, what mixing takes; inflowMs storm-relative wind, m/s; depth EL, m above ground
double EntrainedEnergy(double cape, double dilution, double inflowMs, double depth);
double LowCapeSurface(In& in);
double LowCapeMeanLayer(In& in);
double LowCapeMostUnstable(In& in);

// Lapse rates and moisture of layers.
double LapseLow(In& in);
double LapseLowVirtual(In& in);
double LapseMiddle(In& in);
double LapseMiddleVirtual(In& in);
double LapseDeep(In& in);
double LapseDeepVirtual(In& in);
double LapseHighVirtual(In& in);
double MeanMixingRatio(In& in);
double WaterLowest(In& in);
double WaterLow(In& in);
double WaterMiddle(In& in);
double WaterHigh(In& in);

// Gusts and hail.
double WetBulbZero(In& in);
double FirstGust(In& in);
double SecondGust(In& in);
double LargerGust(In& in);
double WindexGust(In& in);
double HailSize(In& in);

// Near the ground, and the column's moisture.
double WindChill(In& in);
double HumidityIndex(In& in);
double FogPoint(In& in);
double FogThreat(In& in);
double FogStability(In& in);
double Haines(In& in);
double MixingHeight(In& in);
double VentIndex(In& in);
double MeanHumidity(In& in);
double MeanDepression(In& in);
double PrecipitableWater(In& in);
double SurfaceDewpoint(In& in);
double Dewpoint850(In& in);

// Levels.
double LiftModeShown(In& in);
double LiftTypeShown(In& in);
double TempBaseShown(In& in);
double LiftLevel(In& in);
double MplPressure(In& in);
double MplHeight(In& in);
double StationElevation(In& in);
double TropopauseLevel(In& in);
double FreezingLevelShown(In& in);
double CclElHeight(In& in);
double LfcElHeight(In& in);
double LfcHeight(In& in);
double LfcPressure(In& in);
double CclHeight(In& in);
double LclHeight(In& in);
double LfcAboveLcl(In& in);
double WarmCloudDepth(In& in);
double ConvectiveTemp(In& in);
double DensityAltitudeShown(In& in);

}  // namespace vexa::analysis::formula
