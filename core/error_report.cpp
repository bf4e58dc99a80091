#include "core/error_report.h"

#include <algorithm>
#include <iterator>

#include "core/late_library.h"
#include "core/no_such_sounding.h"
#include "core/numbers.h"

namespace vexa {
namespace {

enum class When { Always, AutoLoading, Unattended, DatasetMode };
enum class Names { Nothing, File };

struct FaultRow {
  int Number;
  When Holds;
  std::string_view Text;
  Names Named = Names::Nothing;
  std::string_view Rest{};  // behind the name
  BoxButtons Buttons = BoxButtons::Ok;
};

// The first row whose number and circumstance fit decides.
constexpr FaultRow kFaults[] = {
    {kFaultNoMemory, When::Always, "There is not enough memory for this."},
    {kFaultBadData, When::Always, "Source contains bad data"},
    {kFaultNoLibrary, When::Always, "A library that this needs is not there."},
    {kFaultBadFileName, When::Always, "Incorrect Path and/or Filename"},
    {kFaultFileNotFound, When::Always, "", Names::File, " does not exist."},
    {kFaultDeviceError, When::Always, "The device reports an error in reading or writing."},
    {kFaultFileExists, When::Always, "", Names::File, " already exists.\nReplace existing file?",
     BoxButtons::YesNo},
    {kFaultDiskFull, When::Always, "Disk is probably full."},
    {kFaultEndOfFile, When::AutoLoading, "Data for ", Names::File, " can not be found."},
    {kFaultEndOfFile, When::Always, "Data file is corrupt, incomplete, or has incorrect format."},
    {kFaultNoSuchSounding, When::AutoLoading, "Data for ", Names::File, " can not be found."},
    {kFaultNoSuchSounding, When::Always, "The file holds no sounding of this number."},
    {kFaultTooManyFiles, When::Always, "Too many files: open at the same time, or unfinished."},
    {kFaultDeviceUnavailable, When::Always, "Selected device is not available."},
    {kFaultAccessRefused, When::Always,
     "Access is refused: the file, its folder or the disk is protected."},
    {kFaultDiskNotReady, When::Always,
     "Destination DRIVE does not exist, or\nInsert a disk in the drive and close the door."},
    {kFaultPathAccess, When::Always, "Drive and/or File Path does not exist."},
    {kFaultPathNotFound, When::Always, "Drive and/or File Path does not exist."},
    {kFaultInvalidValue, When::Always, "Invalid keyboard entry."},
    {kFaultPicture, When::Always, "The picture cannot be made."},
    {kFaultPrinter, When::Always, "Printer Problem."},
    {kFaultFormat, When::Always, "Warning ...  ", Names::File,
     "\nhas a format problem, or this is a new/different data type."},
    {kFaultNonStandard, When::Always, "Data format is probably non-standard."},
    {kFaultTooFewLevels, When::Always,
     "Data file must have at least 2 Pressure/Temperature levels."},
    {kFaultFirstWindHeight, When::Always, "The first Wind data level Height must equal 0 meters."},
    {kFaultUnusable, When::Unattended, "Non-standard format and/or bad data."},
    {kFaultUnusable, When::DatasetMode,
     "This sounding has bad data or a non-standard format.\n"
     "This sounding will not be used for this dataset."},
    {kFaultUnusable, When::Always,
     "VEXA encountered one of the following problems ...\n"
     "   - Datafile contains data in a non-standard format.\n"
     "   - One or more data items are way out of normal limits.\n"
     "   - Data is in a format not recognized by VEXA.\n"
     "Resulting data calculations are not reliable."},
    {kFaultBadUrl, When::Always, "The URL is bad."},
};

bool Holds(When when, const CurrentSounding& current) {
  switch (when) {
    case When::AutoLoading:
      return current.AutoLoading;
    case When::Unattended:
      return current.Ask == nullptr || current.Ask->Unattended();
    case When::DatasetMode:
      return current.DatasetMode;
    case When::Always:
      break;
  }
  return true;
}

const FaultRow* FindRow(const CurrentSounding& current, int number) {
  const auto row = std::ranges::find_if(kFaults, [&](const FaultRow& candidate) {
    return candidate.Number == number && Holds(candidate.Holds, current);
  });
  return row == std::end(kFaults) ? nullptr : &*row;
}

}  // namespace

std::string FaultMessage(const CurrentSounding& current, const Fault& fault) {
  const FaultRow* row = FindRow(current, fault.Number);
  if (row == nullptr) {
    return "Unexpected error from " +
           (fault.Procedure.empty() ? current.Procedure : fault.Procedure) +
           " error = " + Shortest(fault.Number);
  }
  std::string text(row->Text);
  if (row->Named == Names::File) text += fault.File.empty() ? current.FileName : fault.File;
  text += row->Rest;
  return text;
}

Answer ErrorReport(CurrentSounding& current, const Fault& fault, BoxIcon icon) {
  const FaultRow* row = FindRow(current, fault.Number);
  const std::string message = FaultMessage(current, fault);
  Box box{.Title = std::string(kErrorBoxTitle), .Text = message, .Icon = icon};
  if (!fault.Detail.empty()) box.Text += '\n' + fault.Detail;
  if (row != nullptr && row->Buttons == BoxButtons::YesNo) {
    box.Buttons = row->Buttons;
    box.WhenSilent = Answer::No;
  }
  current.LastFault = fault;
  current.StatusText = message;
  return current.Ask == nullptr ? box.WhenSilent : current.Ask->Ask(box);
}

}  // namespace vexa
