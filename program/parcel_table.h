// Four parcels of the sounding in work side by side: from the surface, the mixed lowest layer, the
// most unstable level, and one that the user sets.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "analysis/analysis.h"
#include "program/program.h"

namespace vexa {

inline constexpr int kShownParcels = 4;

struct ParcelLine {
  std::string Label{};  // with its unit
  std::array<std::string, kShownParcels> Values{};
};

/// Captions of the columns.
std::array<std::string, kShownParcels> ParcelTitles();

/// A parcel to begin with: the surface's.
analysis::ParcelStart OwnParcel(const Program& program);

/// The user's parcel lifted through the sounding in work; without a path when it starts outside.
analysis::ParcelAscent LiftOwn(const Program& program, const analysis::ParcelStart& own);

/// The lines of the panel, all parcels under forced lift; "--" for what a parcel does not have.
std::vector<ParcelLine> ParcelTable(const Program& program, const analysis::ParcelStart& own);

}  // namespace vexa
