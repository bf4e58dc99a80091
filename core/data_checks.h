// What puts a freshly loaded sounding into the shape that every analysis assumes: repeated
// pressures removed, both profiles in order, and a plausibility check that reports the first fault
// and changes nothing.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/current_sounding.h"
#include "core/fault.h"
#include "core/sounding_record.h"

namespace vexa {

/// Of neighbouring temperature levels with equal pressures the last one stays. Equal pressures
/// that are no neighbours are left.
void PressureDupe(SoundingRecord& record);

/// Removes temperature levels with a pressure of 0 and wind levels with a direction of 0 (north
/// is 360), then orders temperature levels by falling pressure and wind levels by rising height;
/// levels that tie keep their order.
///
/// returns Status::YesHeights when the working winds cover all wind levels: they then move along
/// with them; else Status::NoHeights
Status SortData(SoundingRecord& record);

/// Takes away levels, winds and cloud layers with values that nothing can have (IsPossible), wild
/// supplementary values and elevations: files made by hand or by another program may hold anything.
///
/// returns  notes on what was taken, temperature levels first
std::vector<std::string> KeepPossible(SoundingRecord& record);

/// The first fault that the check found: 1 to 8, 0 for none.
struct QcFinding {
  int Number = 0;
  int Level = 0;  // 1-based; 0 for the elevation
  bool operator==(const QcFinding&) const = default;
};

/// Text of a finding, "Pressures are vertically inconsistent." for 1; empty for 0.
std::string_view QcText(int number);

/// The same with its level, "Pressures are vertically inconsistent. Level 3."; empty for none.
std::string FindingText(const QcFinding& finding);
/// Where it is told beside a file's name: "the data are doubtful: ", and the finding.
std::string DoubtText(const QcFinding& finding);

/// Tests a record for physical plausibility; the first test that fails decides.
QcFinding CheckRecord(const SoundingRecord& record);

/// Checks the sounding in work and tells the user. Leaves the status text "OK", "QC-ERROR" (the
/// user wants to correct, or nobody is there) or "QC-CANCEL"; QcFault keeps what was found.
///
/// checkingOff  nothing is done at all; Status::Ok
Status DataQC(CurrentSounding& current, bool checkingOff = false);

}  // namespace vexa
