#include "config/old_places.h"

namespace vexa {
namespace {

struct OldFile {
  SettingsFile File;
  std::string_view Records;  // a line for each, keys between bars
};

constexpr OldFile kOldFiles[] = {
    {SettingsFile::Soaring,
     "TriggerHgt|LiftEq|SoarHgtMode\n"
     "SoarTm\n"
     "height unit|lift unit|temperature unit"},
    {SettingsFile::Hodograph,
     "Bunkers deviation factor|Storm mover|Storm motion mode\n"
     "Manual storm direction|Manual storm speed\n"
     "HodoInvert|HodoAnalInvert\n"
     "ring scaling|ring limit|distance unit\n"
     "storm vectors hidden|floating panel|held storm vector|helicity contours|propagation vector\n"
     "frame of the winds|inverted wind table|comparison traces\n"
     "front control|held front|front speed unit\n"
     "thermal wind interval|thermal wind mode\n"
     "frontal slope|gradient threshold|angular threshold|lower frontal limit\n"
     "trace hidden|captions above the plot"},
    {SettingsFile::Hodogram3D,
     "azimuth|tilt\n"
     "step angle|rotation interval\n"
     "distance unit|north pointer"},
    {SettingsFile::Main,
     "Above 100mb|Screen title above skewt|Month-Year option\n"
     "Wind plot ratio|Wind plot (x-section) ratio|Feathers\n"
     "Hemisphere|Pressure Units|QNH\n"
     "GPM units|Screen color|Auto directory update\n"
     "CAT type|Shear normalization|Ice type\n"
     "RH%|Storm motion|Shear SR Layer Top\n"
     "Shear SR Layer Bot|Shear SR Layer Deg|Shear SR Layer Pct\n"
     "Shear xLayer top|Sat vapor pres|Ducting threshold\n"
     "LPL|Multi-lift|Search depth\n"
     "CCL mean layer|EL lower limit|CAPE base level\n"
     "CAPE temp base|CAPE interval|MPL display\n"
     "CAPE depth display|CAPE depth xKm depth|DCAPE mode\n"
     "EHI depth|VGP depth\n"
     "ThermoNum|Movie time|Skiploop\n"
     "LoopNoReScaling\n"
     "Diagram type|Auto high-altitude emagram|Emagram temperature lines\n"
     "Tephigram warning|Stability bars|Height scale\n"
     "Surface line|All TTAA lines|Auto display analyses\n"
     "Analyses box|Wind plots box|Shade ground block\n"
     "Cursor sounding|Cursor diagram grid|Height mode\n"
     "Freeze line|Tropo line\n"
     "MB limit|Auto MB select|Y-Grid units\n"
     "Y-Grid interval|Temp grid units|Temp dual scale\n"
     "Temp grid interval|Temp grid scaling|Temp MIN\n"
     "Temp MAX|Overlay scaling|Compare scaling\n"
     "Dry adiabats|Saturation adiabats|Mixing ratio lines\n"
     "Color scheme|Dry color|Sat color\n"
     "Wet color|Dry label|Sat label\n"
     "Wet label|Dry Ref Val|Dry Ref Val Plot\n"
     "Dry Ref Val Label|Sat Ref Val|Sat Ref Val Plot\n"
     "Sat Ref Val Label|Mix Ref Val|Mix Ref Val Plot\n"
     "Mix Ref Val Label\n"
     "T/Td dots|T/Td circles|T/Td thick lines\n"
     "Td lines None/Dash/Solid|Td color|Wind shafts\n"
     "Wind dots|Wind display|Wind speed units\n"
     "Wind size\n"
     "Thermo display type|Main|Europe\n"
     "CAPE|Fog|Thermo units\n"
     "Thermo units temperature|Custom panel|PTunits\n"
     "Plot Hodo|Plot SM Vector|Hodo location\n"
     "Hodo Grid origin|Hodo depth mode|Depth limit\n"
     "ICAO line|ICAO None/5/10\n"
     "Drive D|Drive X|Drive Ref\n"
     "Header file|Autoload|AutoDrive\n"
     "AutoFile|AutoType|FilterIndexNum\n"
     "Darklines\n"
     "Line #1 Plot|Line #1 Label|Line #1 Color|Line #1 Height|Line #1 Style\n"
     "Line #2 Plot|Line #2 Label|Line #2 Color|Line #2 Height|Line #2 Style\n"
     "Line #3 Plot|Line #3 Label|Line #3 Color|Line #3 Height|Line #3 Style\n"
     "Line #4 Plot|Line #4 Label|Line #4 Color|Line #4 Height|Line #4 Style\n"
     "Line #5 Plot|Line #5 Label|Line #5 Color|Line #5 Height|Line #5 Style"},
    {SettingsFile::Window,
     "CursorGrid|CursorData|ShortCutValue\n"
     "SortMode|SoftFlip|Auto Analysis Load\n"
     "DataChecks|StepChecks|PrintTitleMemory\n"
     "DarklinesMemory|DumpData1|DumpData2\n"
     "DumpData3|DumpData4|DumpData5\n"
     "DumpData6|DumpData7\n"
     "width|height|left edge|top edge|maximized\n"
     "cursor mode|information box\n"
     "image folder\n"
     "recent file 1\n"
     "recent file 2\n"
     "recent file 3\n"
     "recent file 4\n"
     "recent file 5"},
    {SettingsFile::Listing,
     "listing|height interval|top-down order\n"
     "data type printed|coordinates printed|all listings printed\n"
     "width|height"},
};

// What stands between separators.
std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (std::size_t end = 0; end != text.npos;) {
    end = text.find(separator);
    parts.push_back(text.substr(0, end));
    if (end != text.npos) text.remove_prefix(end + 1);
  }
  return parts;
}

}  // namespace

FieldPlaces OldPlaces(SettingsFile file) {
  FieldPlaces places;
  for (const OldFile& old : kOldFiles) {
    if (old.File != file) continue;
    for (const std::string_view record : Split(old.Records, '\n')) {
      places.push_back(Split(record, '|'));
    }
  }
  return places;
}

}  // namespace vexa
