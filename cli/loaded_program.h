// The program as the window has it when it has opened one file, so that a command draws, prints and
// exports what the window would.
#pragma once

#include <filesystem>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "cli/commands.h"
#include "cli/inputs.h"
#include "cli/settings.h"
#include "core/interaction.h"
#include "core/station_list.h"
#include "mountainwave/mountain.h"
#include "program/program.h"

namespace vexa::cli {

/// Settings and, where --root names one, the program folder that they came from.
struct CommandSetup {
  SettingsStore Settings{};
  std::filesystem::path Root{};
  StationList Stations{};                // of the root; without one those of the command line
  int Index = 0;                         // of the sounding in its file
  std::filesystem::path MountainFile{};  // of the root, else the shipped one; empty: there is none
  std::span<const DisplayRow> Displays = AllDisplays();
};
Outcome<CommandSetup> SetupOf(const Arguments& arguments, Console& console);

/// The mountains of soundings by the mountain file of a command. What is wrong with the file is
/// told on the error output, the same fault once, and leaves the exit code alone: the default
/// mountain stands in.
class StationMountains {
 public:
  StationMountains(std::filesystem::path file, Console& console)
      : file_(std::move(file)), console_(console) {}
  mountainwave::Site Of(const SoundingRecord& sounding);

 private:
  std::filesystem::path file_;
  Console& console_;
  std::set<std::string> told_{};
};

/// A program with one sounding in work, analysed and not yet drawn.
class LoadedProgram {
 public:
  LoadedProgram(const CommandSetup& setup, Console& console);
  /// A sounding, or the state of a wave display with the sounding that it names. False where the
  /// file failed, which has been told.
  bool Load(const std::string& file);
  /// Puts a further file beside the loaded one, for an overlay or a comparison.
  bool LoadBeside(const std::string& file, diagram::MultiMode mode);
  const Program& Get() const { return program_; }
  /// The first of the files that can be loaded in work, and every sounding of all of them listed.
  bool LoadAll(const std::vector<std::string>& files);
  /// The layout of the diagram's page; null for the first of the table.
  void LayOut(const LayoutRow* layout) { program_.View.Layout = layout; }
  /// Where what fails is told.
  Inputs& In() { return inputs_; }

 private:
  bool LoadAt(const std::string& file, std::optional<int> index);
  bool LoadWaveDisplay(const std::string& file);

  SilentInteraction quiet_{};
  Program program_{};
  Inputs inputs_;
  StationMountains mountains_;
};

}  // namespace vexa::cli
