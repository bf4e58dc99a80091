// Options that menu commands and dialogs set in passing.
#include "config/option_rows.h"
#include "config/row_builder.h"

namespace vexa {
namespace {

template <auto Member>
constexpr auto kSystem = At<&Options::System, Member>;
template <auto Member>
constexpr auto kDump = At<&Options::System, &SystemOptions::Dump, Member>;

constexpr std::string_view kPlace = "System";
constexpr auto kWindow = SettingsFile::Window;

// "light" and "darker" differ in the strength of the grid alone.
void SchemeFollowsGrid(Options& options) {
  if (options.Darklines && options.Scheme == ColorScheme::Light) {
    options.Scheme = ColorScheme::Darker;
  } else if (!options.Darklines && options.Scheme == ColorScheme::Darker) {
    options.Scheme = ColorScheme::Light;
  }
}

constexpr OptionRow kRows[] = {
    Row<kSystem<&SystemOptions::DataFolder>>("Drive D/X/Ref = ", kPlace)
        .As("Drive D")
        .Named("Data folder")
        .Says("Folder of the sounding files."),
    Row<kSystem<&SystemOptions::CrossSectionFolder>>(", ", kPlace, Record::Same)
        .As("Drive X")
        .Named("Cross-section folder")
        .Says("Folder of the cross-section datasets; not the data folder."),
    Row<kSystem<&SystemOptions::ReferenceFolder>>(", ", kPlace, Record::Same)
        .As("Drive Ref")
        .Named("Reference folder")
        .Says("Folder of the reference sounding; empty for the program's own folder."),
    Row<kSystem<&SystemOptions::HeaderFile>>("", kPlace)
        .As("Header file")
        .Named("Header list")
        .Says("File that lists the headers of the soundings chosen for stepping."),
    Row<kSystem<&SystemOptions::Catalogue>>("", kPlace)
        .As("Catalogue")
        .Named("Catalogue of soundings")
        .Says(
            "Catalogue that tells how usual a sounding is, in the panels and on the diagram; empty "
            "for none."),
    Row<kSystem<&SystemOptions::CursorGrid>>("CursorGrid = ", kPlace)
        .Named("Cursor grid labels")
        .Says("Labels the cursor with the values of the diagram's grid.")
        .KeptIn(kWindow),
    Row<kSystem<&SystemOptions::CursorData>>("  CursorData = ", kPlace, Record::Same)
        .Named("Cursor data labels")
        .Says("Labels the cursor with the values of the sounding.")
        .KeptIn(kWindow),
    Row<kSystem<&SystemOptions::Autoload>>("Autoload = ", kPlace)
        .Named("Load at start")
        .Says("Loads the marked sounding when the program starts."),
    Row<kSystem<&SystemOptions::AutoDrive>>(" AutoDrive = ", kPlace, Record::Same)
        .Named("Start folder")
        .Says("Folder of the sounding that is loaded at start."),
    Row<kSystem<&SystemOptions::AutoFile>>("", kPlace)
        .As("AutoFile")
        .Named("Start file")
        .Says("File that is loaded at start; \".multiple.\" for the soundings listed last."),
    Row<kSystem<&SystemOptions::AutoType>>("AutoType = ", kPlace)
        .Named("Start format")
        .Says("Format of the sounding that is loaded at start."),
    Row<kSystem<&SystemOptions::FilterIndexNum>, kTrue, Range{1, 99}>(" FilterIndexNum = ", kPlace,
                                                                      Record::Same)
        .Named("File filter")
        .Says("Filter that the file dialog starts with, counted from the first."),
    Row<kSystem<&SystemOptions::ShortCutValue>, kTrue, Range{0, 99}>("ShortCutValue = ", kPlace)
        .Named("Last shortcut")
        .Says("Shortcut used last.")
        .KeptIn(kWindow),
    Row<kSystem<&SystemOptions::SortMode>>("SortMode = ", kPlace)
        .Named("File order")
        .Says("What file lists are sorted by.")
        .KeptIn(kWindow),
    Row<kSystem<&SystemOptions::SoftFlip>>("  SoftFlip = ", kPlace, Record::Same)
        .Named("Reversed order")
        .Says("Turns the order of file lists round.")
        .KeptIn(kWindow),
    Row<At<&AnalysisSettings::TriggerHgt>, kTrue, Range{0, 30000}>("TriggerHgt = ", kPlace)
        .Named("Trigger height")
        .In("ft AGL")
        .Says("Height that thermals must reach for the soaring day to begin.")
        .KeptIn(SettingsFile::Soaring),
    Row<At<&AnalysisSettings::LiftEq>, kTrue, OneOf({1, 2})>(" LiftEq = ", kPlace, Record::Same)
        .Named("Lift equation")
        .Says("Thermal strength by the soaring index rule (1) or the convective velocity (2).")
        .KeptIn(SettingsFile::Soaring),
    Row<At<&ViewSettings::SoarHgtMode>>(" SoarHgtMode = ", kPlace, Record::Same)
        .Named("Soaring heights")
        .Says("Soaring heights above mean sea level or above ground.")
        .KeptIn(SettingsFile::Soaring),
    Row<At<&AnalysisSettings::SoarTm>, kTrue, Range{-90, 70}>("", kPlace)
        .As("SoarTm")
        .Named("Surface temperature of the day")
        .In("°C")
        .Says(
            "Warmest temperature expected at the ground; empty takes the 850 hPa air brought down.")
        .KeptIn(SettingsFile::Soaring),
    Row<At<&ViewSettings::Darklines>>("Darklines = ", kPlace)
        .Named("Dark grid lines")
        .Says("Draws the diagram's grid in full instead of pale colours.")
        .Then(SchemeFollowsGrid),
    Row<At<&ViewSettings::HodoInvert>>("HodoInvert = ", kPlace)
        .Named("Hodograph white on black")
        .Says("Draws the hodograph white on black.")
        .KeptIn(SettingsFile::Hodograph),
    Row<At<&ViewSettings::HodoAnalInvert>>("HodoAnalInvert = ", kPlace)
        .Named("Hodograph panel white on black")
        .Says("Shows the hodograph's analysis panel white on black.")
        .KeptIn(SettingsFile::Hodograph),
    Row<kSystem<&SystemOptions::AutoAnalysisLoad>>("Auto Analysis Load = ", kPlace)
        .Named("Restore analyses")
        .Says("Shows at start the analyses that were shown last.")
        .KeptIn(kWindow),
    Row<kSystem<&SystemOptions::DataChecks>>("", kPlace)
        .As("DataChecks")
        .Named("Check data")
        .Says("Tests every sounding after its load for levels that cannot be right.")
        .KeptIn(kWindow),
    Row<kSystem<&SystemOptions::StepChecks>>("", kPlace)
        .As("StepChecks")
        .Named("Check data when stepping")
        .Says("Tests soundings also when they are stepped through or shown in a loop.")
        .KeptIn(kWindow),
    Row<kSystem<&SystemOptions::PrintTitleMemory>>("PrintTitleMemory = ", kPlace)
        .Named("Print title")
        .Says("Title printed last.")
        .KeptIn(kWindow),
    Row<kSystem<&SystemOptions::DarklinesMemory>>(" DarklinesMemory = ", kPlace, Record::Same)
        .Named("Dark lines in print")
        .Says("Prints the diagram's grid in full colours.")
        .KeptIn(kWindow),
    Row<kDump<&DumpOptions::Height>>("DumpData1-7 ", kPlace)
        .As("DumpData1")
        .Named("Export height unit")
        .Says("Unit of exported heights.")
        .KeptIn(kWindow),
    Row<kDump<&DumpOptions::Reference>>(", ", kPlace, Record::Same)
        .As("DumpData2")
        .Named("Export height reference")
        .Says("Exported heights above mean sea level or above ground.")
        .KeptIn(kWindow),
    Row<kDump<&DumpOptions::Speed>>(", ", kPlace, Record::Same)
        .As("DumpData3")
        .Named("Export wind unit")
        .Says("Unit of exported wind speeds.")
        .KeptIn(kWindow),
    Row<kDump<&DumpOptions::Temp>>(", ", kPlace, Record::Same)
        .As("DumpData4")
        .Named("Export temperature unit")
        .Says("Unit of exported temperatures.")
        .KeptIn(kWindow),
    Row<kDump<&DumpOptions::Water>>(", ", kPlace, Record::Same)
        .As("DumpData5")
        .Named("Export water unit")
        .Says("Unit of exported precipitable water.")
        .KeptIn(kWindow),
    Row<kDump<&DumpOptions::FormatBlock>>(", ", kPlace, Record::Same)
        .As("DumpData6")
        .Named("Export format block")
        .Says("Describes the columns at the end of an exported file.")
        .KeptIn(kWindow),
    Row<kDump<&DumpOptions::SignificantOnly>>(", ", kPlace, Record::Same)
        .As("DumpData7")
        .Named("Export significant levels only")
        .Says("Exports the significant levels instead of all.")
        .KeptIn(kWindow),
};

}  // namespace

std::vector<OptionRow> SystemRows() {
  return {std::begin(kRows), std::end(kRows)};
}

}  // namespace vexa
