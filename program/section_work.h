// Makes sections of files: whoever wants one, a window or a command, gives the files and gets the
// columns with what is computed of each once.
#pragma once

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "analysis/adiabat_table.h"
#include "config/options.h"
#include "core/interaction.h"
#include "crosssection/column.h"
#include "crosssection/section_options.h"
#include "sounding/analysed_sounding.h"
#include "sounding/sounding_reader.h"
#include "sounding/sounding_set.h"

namespace vexa {

/// Which of the soundings of the files are taken.
struct SectionChoice {
  std::set<int> Indices{};                // in each file, from 0; none: all of them
  std::optional<ObservationTime> From{};  // of known times
  std::optional<ObservationTime> Until{};
};

/// Whether a time lies in the span of a choice; one that is not known lies in none.
bool IsChosen(const ObservationTime& time, const SectionChoice& choice);

/// What could not be read of the files, and what is doubtful.
struct SectionTrouble {
  std::string Name{};  // of the file, with the number of the sounding where there are several
  std::optional<Fault> Failed{};
  QcFinding Finding{};
};

class SectionWork {
 public:
  /// mountains  the file of mountains for wave turbulence; empty: none
  SectionWork(const AnalysisSettings& set, std::filesystem::path mountains)
      : set_(set), mountains_(std::move(mountains)) {}

  /// A sounding as a column with its wave turbulence.
  crosssection::Column ColumnOf(const SoundingRecord& sounding, const std::string& source);

  /// Every chosen sounding of the files as columns, not yet arranged. False when the user stopped.
  bool Load(const std::vector<std::filesystem::path>& files, const SectionChoice& choice,
            const LoadPolicy& policy, Progress progress, crosssection::Section& into);

  /// The members of a set of soundings in a span of time; each file is opened once.
  bool Load(const std::vector<SoundingSet::Member>& members, const SectionChoice& span,
            const LoadPolicy& policy, Progress progress, crosssection::Section& into);

  /// Puts interpolated soundings between the columns.
  void Interpolate(crosssection::Section& section);

  const std::vector<SectionTrouble>& Troubles() const { return troubles_; }

 private:
  bool LoadFile(const std::filesystem::path& file, const SectionChoice& choice,
                const LoadPolicy& policy, Progress& progress, double done, double part,
                crosssection::Section& into);

  /// Takes a sounding that was loaded as a column, unless it failed or is not chosen.
  void Keep(const Loading& loading, const std::string& file, const std::string& numbered,
            const SectionChoice& choice, crosssection::Section& into);

  AnalysisSettings set_;
  std::filesystem::path mountains_;
  analysis::AdiabatTable adiabats_{};
  std::vector<SectionTrouble> troubles_{};
  SoundingReader reader_{};
};

/// The section's own options where a program folder has them, else those of the program in place of
/// their defaults.
crosssection::SectionOptions SectionOptionsFor(const std::filesystem::path& root,
                                               const Options& options);

/// Bytes that columns take, about.
std::size_t BytesOf(const std::vector<crosssection::Column>& columns);

}  // namespace vexa
