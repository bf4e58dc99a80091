// The map of a cross-section: every station whose soundings are loaded, which of them the section
// takes, and how a user picks them.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "map/area_map.h"
#include "program/display_row.h"
#include "program/section_display.h"

namespace vexa {

/// A station of the loaded soundings; those of the section first, in its order.
struct SectionStation {
  map::Place At{};
  std::string Name{};
  std::vector<const crosssection::Column*> Columns{};
  bool IsIn = false;  // the section has one of them at least
};
std::vector<SectionStation> StationsOf(const SectionView& view);

/// The map, of a part of the globe where a frame says so; `laid` is a line that is being laid.
map::AreaMap MapOfSection(const DisplayInput& from, const Surface& on,
                          const map::MapFrame* frame = nullptr,
                          const std::vector<map::Place>& laid = {});
Picture PlotSectionMap(const DisplayInput& from, const Surface& on);
std::span<const ControlRow> SectionMapControls();

/// "12 of 37 stations in the section".
std::string PickText(const SectionView& view);

namespace commands {

/// Takes the soundings of a place into the section, or out of it.
void PickStation(Program& program, const map::Place& at);
/// The section is of the stations within so many kilometres of the line from one place to another,
/// and runs that way. False when these are fewer than two: the section stays.
bool PickAlong(Program& program, const map::Place& from, const map::Place& to, double withinKm);
/// All stations are in the section.
void PickAllStations(Program& program);
/// The section is of the soundings from one time to another; an empty one is no limit.
void PickSpan(Program& program, const std::optional<ObservationTime>& from,
              const std::optional<ObservationTime>& until);

}  // namespace commands

}  // namespace vexa
