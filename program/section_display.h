// The cross-section's display: its section, made of the soundings that were opened together or of a
// dataset, its settings, and what its window's commands do.
#pragma once

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "crosssection/dataset.h"
#include "crosssection/intervals.h"
#include "crosssection/section_plot.h"
#include "program/display_row.h"
#include "program/program.h"
#include "program/section_work.h"

namespace vexa {

/// What the cross-section keeps while the program runs.
struct SectionView {
  crosssection::Section Of{};
  std::vector<crosssection::Column> Aside{};  // loaded, but not in the section
  std::set<int> Out{};                        // soundings that the user left out, by their order
  SectionChoice Span{};                       // of time, that it is of
  std::string Why{};                          // a sentence, when there is no section
  std::vector<std::string> Remarks{};         // what is odd about it
  std::vector<SoundingSet::Member> MadeOf{};
  AnalysisSettings Under{};
  std::optional<crosssection::SectionKind> Kind{};  // as chosen; none: by the soundings
  bool IsDataset = false;
  bool Interpolates = false;
  crosssection::SectionOptions Set{};
  crosssection::IntervalSettings Intervals{};
  crosssection::SectionState State{};
  bool HasSettings = false;  // they have been read
  double MapPress = 500;     // hPa, of the winds on the map
  int OnMap = 0;             // the sounding that was handed to the map, by its order; 0: none
};

/// Soundings opened together, or a section that is there already.
std::string_view NeedsSection(const Program& program);

/// Its picture; of what is kept, else of the soundings that were opened together.
Picture PlotCrossSection(const DisplayInput& from, const Surface& on);
std::vector<std::string> ListCrossSection(const Program& program);

/// A section of the soundings that were opened together, made for a picture alone: for commands
/// that have no window.
SectionView SectionViewOnce(const Program& program);

/// Reads the settings of the program folder once; keeps them.
SectionView& SectionViewOf(Program& program);
void SaveSectionSettings(Program& program);

/// Makes the section anew where the soundings or the analyses have changed. False when the user
/// stopped: the one before stays.
bool FollowSoundings(Program& program);
/// Reads the soundings that were opened together anew, those of the span of time alone. False when
/// the user stopped: the section stays.
bool ReadSectionAgain(Program& program);
/// Bytes that all that is loaded takes, about.
std::size_t BytesOf(const SectionView& view);
/// A small diagram of a column's sounding.
Picture MiniSounding(Program& program, std::size_t column, const Surface& on);
/// Makes the section of what is loaded, with the soundings, kind, direction and interpolation in
/// force.
void ArrangeSection(Program& program);

namespace commands {

/// Asks for the checks of a field and chooses it; false when the user cancels.
bool ChooseField(Program& program, std::string_view code);
void ChooseKind(Program& program, crosssection::SectionKind kind);
void TurnSection(Program& program);
void InterpolateSection(Program& program, bool on);

/// What a dataset is opened for; an old one is refused with other words to be edited.
enum class DatasetUse { Show, Edit };
/// Opens a dataset; what cannot be used has been told on false.
bool OpenDataset(Program& program, const std::filesystem::path& path,
                 DatasetUse use = DatasetUse::Show);
/// Writes the section as a dataset, and the list of its files beside it. Faults have been told.
bool SaveDataset(Program& program, const std::filesystem::path& path);
/// Marks the section as the one that comes at the next start, or takes the mark away; tells which.
void AutoLoadSection(Program& program);
/// Opens the last dataset when it is to come at the start.
void RestoreSection(Program& program);
/// Adds newer soundings of the same station from the files that the section came from; asks first.
/// Gives how many came.
int UpdateSection(Program& program);
/// Puts a column's sounding in work in the main window.
Changes TransferToSounding(Program& program, std::size_t column);

}  // namespace commands

}  // namespace vexa
