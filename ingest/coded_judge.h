// What a message says several times over must agree: temperatures of mandatory levels with the
// profile between the significant ones, heights with the weight of the air between them, every
// layer with what an atmosphere can be. Where it does not, one value is garbled.
#pragma once

#include <string>
#include <vector>

#include "ingest/coded_part.h"

namespace vexa::ingest {

/// Whether the atmosphere may be so warm or cold at a pressure, anywhere and at any season.
bool IsPossibleTemp(double press, double temp);

/// Takes away temperatures and heights that cannot be beside all others, as few as need be: a value
/// is garbled when without it the rest agrees. Where two values would do, neither is believed. A
/// note names each. The checks, with tolerances that the reports of sixty stations meet:
/// - two temperatures at one pressure,
/// - those of parts A and C beside the straight lines between the levels of parts B and D,
/// - lapse rates beyond the dry adiabatic one, and inversions beyond what has been seen,
/// - mandatory heights beside the thickness of the layer by its virtual temperatures (the
///   hydrostatic check of Collins and Gandin, Mon. Wea. Rev. 118, 1990),
/// - levels beneath the surface.
/// What lies within these and yet beyond what all but a few of these stations report stays, and
/// is doubted (TellDoubts). A temperature that is doubtful in itself stays only where parts B or D
/// bear it out.
void LeaveOutMisfits(std::vector<CodedLevel>& levels, std::vector<std::string>& notes);

/// Whether a part with mandatory levels (A or C) and one with significant levels (B or D) tell of
/// the same air: the same surface in A and B, and temperatures of the one on the lines of the
/// other, two at least. What garbles a value may also garble the number of a station.
bool TellOfSameAir(const std::vector<CodedLevel>& mandatory,
                   const std::vector<CodedLevel>& significant);

}  // namespace vexa::ingest
