// Options of the program form.
#include <algorithm>

#include "config/option_rows.h"
#include "config/row_builder.h"

namespace vexa {
namespace {

constexpr Range kIndexDepths{0.5, 6};

// EHI and VGP are computed for the layer of CAPE 0-x; they may then be set apart from it.
void DepthsFollowCape(Options& options) {
  const double depth = std::clamp(options.CapeDepthKm, kIndexDepths.Least, kIndexDepths.Most);
  options.EhiDepthKm = depth;
  options.VgpDepthKm = depth;
}

void SchemeFollowsPaper(Options& options) {
  options.Scheme = SchemeOn(options.Screen, options.Scheme);
}

constexpr std::string_view kProgramTab1 = "Program/Tab 1";

constexpr OptionRow kProgramTab1Rows[] = {
    Row<At<&ViewSettings::Above100mb>, kYes>("Above 100mb = ", kProgramTab1)
        .Says("Lets the diagram reach above 100 hPa when the sounding does."),
    Row<At<&ViewSettings::TitleAboveDiagram>, kYes>("Screen title above skewt = ", kProgramTab1)
        .Says("Puts the station title above the diagram instead of inside it."),
    Row<At<&ViewSettings::MonthYear>, kYes>("Month-Year option = ", kProgramTab1)
        .Says("Shows the date in titles as month and year, for climate means."),
    Row<At<&ViewSettings::WindPlotRatio>, kTrue, Range{0, 50}>("Wind plot ratio = ", kProgramTab1)
        .Says("Draws only every n-th wind beside the diagram; 0 thins dense winds by itself."),
    Row<At<&ViewSettings::WindPlotSectionRatio>, kTrue, Range{0, 50}>(
        "Wind plot (x-section) ratio = ", kProgramTab1)
        .Says("Draws only every n-th wind in cross-sections; 0 thins dense winds by itself."),
    Row<At<&ViewSettings::BarbFeathers>>("Feathers = ", kProgramTab1)
        .Says("Side of the shaft that carries the feathers; default goes by the hemisphere."),
    Row<At<&ViewSettings::BarbHemisphere>>("Hemisphere = ", kProgramTab1)
        .Says("Hemisphere whose custom the wind barbs follow; by latitude that of the sounding."),
    Row<At<&ViewSettings::Pressure>>("Pressure Units = ", kProgramTab1)
        .Says("Unit of pressure labels; inches of mercury apply to QNH only."),
    Row<At<&ViewSettings::ShowQnh>, kYes>("QNH = ", kProgramTab1)
        .Says("Writes the altimeter setting beside the surface line."),
    Row<At<&ViewSettings::GpmUnits>>("GPM units = ", kProgramTab1)
        .Says("Unit of geopotential heights in listings."),
    Row<At<&ViewSettings::Screen>>("Screen color = ", kProgramTab1)
        .Says("Paper colour of every display.")
        .Then(SchemeFollowsPaper),
    Row<At<&Options::System, &SystemOptions::AutoDirectoryUpdate>, kYes>("Auto directory update = ",
                                                                         kProgramTab1)
        .Says("Makes the folder of the file opened last the one that file dialogs start in."),
};

constexpr std::string_view kProgramTab2 = "Program/Tab 2";

bool IsMovedByHand(const Options& options) {
  return options.MotionMode == Scaling::Manual;
}
bool IsBunkers(const Options& options) {
  return options.Motion == StormMotion::Bunkers;
}
bool IsTraditional(const Options& options) {
  return options.Motion == StormMotion::Traditional;
}

constexpr OptionRow kProgramTab2Rows[] = {
    Row<At<&AnalysisSettings::Cat>>("CAT type = ", kProgramTab2)
        .Named("Clear-air turbulence")
        .Says("Scale by which clear-air turbulence is graded."),
    Row<At<&AnalysisSettings::ShearNormalization>, kYes>("Shear normalization = ", kProgramTab2)
        .Says("Grades shear over layers of 1000 ft at least, not between every two levels."),
    Row<At<&AnalysisSettings::Ice>>("Ice type = ", kProgramTab2)
        .Named("Icing method")
        .Says("Method by which aircraft icing is judged."),
    Row<At<&AnalysisSettings::ContrailRh>, kTrue, Range{0, 100}>("RH% = ", kProgramTab2)
        .Named("Contrail humidity")
        .In("%")
        .Says("Humidity assumed for contrails where the dew point is missing."),
    Row<At<&AnalysisSettings::Motion>>("Storm motion = ", kProgramTab2)
        .Says("Bunkers adds a deviation across the shear; Traditional turns the mean wind."),
    Row<At<&AnalysisSettings::DeviationFactor>, kTrue, Range{0, 10}>("", kProgramTab2)
        .As("Bunkers deviation factor")
        .Named("Bunkers deviation factor")
        .In("x 15 kts")
        .When(IsBunkers)
        .Says("Distance of supercells from the mean wind in multiples of 15 kts.")
        .KeptIn(SettingsFile::Hodograph),
    Row<At<&AnalysisSettings::Mover>>("", kProgramTab2)
        .As("Storm mover")
        .Named("Storm mover")
        .Says("Mover for storm-relative values: the cyclonic one (right in the north, left in the "
              "south), the right or the left one.")
        .KeptIn(SettingsFile::Hodograph),
    Row<At<&AnalysisSettings::MotionMode>>("", kProgramTab2)
        .As("Storm motion mode")
        .Named("Storm motion mode")
        .Says("AUTO computes the storm motion; MANUAL takes the one entered for the chosen mover.")
        .KeptIn(SettingsFile::Hodograph),
    Row<At<&AnalysisSettings::ManualMotionDir>, kTrue, Range{1, 360}>("", kProgramTab2)
        .As("Manual storm direction")
        .Named("Manual storm direction")
        .In("degrees")
        .When(IsMovedByHand)
        .Says("Direction from which the storm comes when the motion is MANUAL.")
        .KeptIn(SettingsFile::Hodograph),
    Row<At<&AnalysisSettings::ManualMotionSpd>, kTrue, Range{0, 200}>("", kProgramTab2)
        .As("Manual storm speed")
        .Named("Manual storm speed")
        .In("kts")
        .When(IsMovedByHand)
        .Says("Speed of the storm when the motion is MANUAL.")
        .KeptIn(SettingsFile::Hodograph),
    Row<At<&AnalysisSettings::ShearLayerTopKm>, kTrue, Range{1, 15}>("Shear SR Layer Top = ",
                                                                     kProgramTab2)
        .Named("Steering layer top")
        .In("km AGL")
        .When(IsTraditional)
        .Says("Top of the mean-wind layer of the traditional storm motion."),
    Row<At<&AnalysisSettings::ShearLayerBottomKm>, kTrue, Range{0, 10}>("Shear SR Layer Bot = ",
                                                                        kProgramTab2)
        .Named("Steering layer bottom")
        .In("km AGL")
        .When(IsTraditional)
        .Says("Bottom of the mean-wind layer of the traditional storm motion; below its top."),
    Row<At<&AnalysisSettings::ShearLayerDeg>, kTrue, Range{-90, 90}>("Shear SR Layer Deg = ",
                                                                     kProgramTab2)
        .Named("Deviation angle")
        .In("degrees")
        .When(IsTraditional)
        .Says("Angle by which the traditional storm motion turns off the mean wind."),
    Row<At<&AnalysisSettings::ShearLayerPct>, kTrue, Range{1, 150}>("Shear SR Layer Pct = ",
                                                                    kProgramTab2)
        .Named("Share of steering flow")
        .In("%")
        .When(IsTraditional)
        .Says("Share of the mean wind speed that the traditional storm motion keeps."),
    Row<At<&AnalysisSettings::ShearXLayerTopKm>, kTrue, Range{0.5, 15}>("Shear xLayer top = ",
                                                                        kProgramTab2)
        .Named("Shear layer top")
        .In("km AGL")
        .Says("Top of the layer whose shear the panels show."),
    Row<At<&AnalysisSettings::Saturation>>("Sat vapor pres = ", kProgramTab2)
        .Named("Saturation over")
        .Says("Takes saturation vapour pressure over water, or over ice at 0 °C and colder."),
    Row<At<&AnalysisSettings::DuctingThreshold>, kTrue, Range{-500, 0}>("Ducting threshold = ",
                                                                        kProgramTab2)
        .In("N/km")
        .Says("Gradient of refractivity below which a layer ducts radar and radio waves."),
};

constexpr std::string_view kProgramTab3 = "Program/Tab 3";

constexpr OptionRow kProgramTab3Rows[] = {
    Row<At<&AnalysisSettings::Lpl>>("LPL = ", kProgramTab3)
        .Named("Lifted parcel level")
        .Says("Parcel that is lifted: mean of the lower layer, surface, or most unstable."),
    Row<At<&AnalysisSettings::MultiLift>, kYes>("Multi-lift = ", kProgramTab3)
        .Says("Lifts every level within the search depth and keeps the one with most CAPE."),
    Row<At<&AnalysisSettings::SearchDepth>, kTrue, Range{50, 500}>("Search depth = ", kProgramTab3)
        .In("hPa")
        .Says("Depth above the surface in which the most unstable parcel is sought."),
    Row<At<&AnalysisSettings::CclMeanLayer>, kTrue, Range{10, 200}>("CCL mean layer = ",
                                                                    kProgramTab3)
        .In("hPa")
        .Says("Depth of the mixed layer for the mean parcel and the CCL."),
    Row<At<&AnalysisSettings::ElLowerLimit>, kTrue, Range{100, 1050}>("EL lower limit = ",
                                                                      kProgramTab3)
        .In("hPa")
        .Says("Equilibrium levels at a higher pressure count as none; 1050 admits all."),
    Row<At<&AnalysisSettings::BaseLevel>>("CAPE base level = ", kProgramTab3)
        .Says("LFC for forced lift from the parcel's level, CCL for convection after heating."),
    Row<At<&AnalysisSettings::CapeTempBase>>("CAPE temp base = ", kProgramTab3)
        .Says("Compares parcel and air by their dry or by their virtual temperatures."),
    Row<At<&AnalysisSettings::CapeInterval>, kTrue, Range{1, 50}>("CAPE interval = ", kProgramTab3)
        .In("hPa")
        .Says("Pressure step of the parcel ascent and of its energies."),
    Row<At<&AnalysisSettings::MplDisplay>, kYes>("MPL display = ", kProgramTab3)
        .Says("Computes and shows the maximum parcel level above the equilibrium level."),
    Row<At<&ViewSettings::CapeDepth>>("CAPE depth display = ", kProgramTab3)
        .Says("CAPE figures of the panel: the total, the layer's, or both."),
    Row<At<&AnalysisSettings::CapeDepthKm>, kTrue, Range{0.5, 10}>("CAPE depth xKm depth = ",
                                                                   kProgramTab3)
        .Named("CAPE layer depth")
        .In("km")
        .Says("Depth x of CAPE 0-x; a change sets the EHI and VGP depths to the same.")
        .Then(DepthsFollowCape),
    Row<At<&AnalysisSettings::Dcape>>("DCAPE mode = ", kProgramTab3)
        .Says("Lets every level up to 6 km sink, or quickly only the one of least theta-e."),
    Row<At<&AnalysisSettings::EhiDepthKm>, kTrue, kIndexDepths>("EHI depth = ", kProgramTab3)
        .In("km")
        .Says("Depth of the helicity in the energy-helicity index."),
    Row<At<&AnalysisSettings::VgpDepthKm>, kTrue, kIndexDepths>("VGP depth = ", kProgramTab3)
        .In("km")
        .Says("Depth of the mean shear in the vorticity generation parameter."),
};

constexpr std::string_view kOther = "Program/Other";

constexpr OptionRow kOtherRows[] = {
    Row<At<&ViewSettings::ThermoNum>, kTrue, Range{1, 7}>("ThermoNum = ", kOther)
        .Named("Analysis page")
        .Says("Page that the analysis box shows first."),
    Row<At<&Options::System, &SystemOptions::MovieTime>, kTrue, Range{0.1, 60}>("Movie time = ",
                                                                                kOther)
        .In("s")
        .Says("Time for which a loop holds each sounding."),
    Row<At<&Options::System, &SystemOptions::SkipLoop>, kYes>("  Skiploop = ", kOther, Record::Same)
        .Named("Skip bad soundings")
        .Says("Lets a loop pass over soundings that cannot be read."),
    Row<At<&Options::System, &SystemOptions::LoopNoRescaling>, kYes>("  LoopNoReScaling = ", kOther)
        .Named("Keep scale in loops")
        .Says("Keeps the first sounding's scale through a loop."),
};

}  // namespace

std::vector<OptionRow> ProgramRows() {
  std::vector<OptionRow> all;
  for (const std::span<const OptionRow> tab :
       {std::span<const OptionRow>(kProgramTab1Rows), std::span<const OptionRow>(kProgramTab2Rows),
        std::span<const OptionRow>(kProgramTab3Rows), std::span<const OptionRow>(kOtherRows)}) {
    all.insert(all.end(), tab.begin(), tab.end());
  }
  return all;
}

}  // namespace vexa
