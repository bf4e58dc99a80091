// The stations of a locator file, always in order of their numbers, each number once: found by
// number at once, searched by fragment for a pick list, changed by the station editor.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/fault.h"
#include "core/station.h"

namespace vexa {

/// A line of a locator file that is no station, kept for it.
struct UnreadLine {
  int After = -1;  // the station that stood before it; -1: none
  std::string Text{};
  bool operator==(const UnreadLine&) const = default;
};

class StationList {
 public:
  StationList();

  /// The free lines ahead of the first record, without their ends; a new list has the program's.
  const std::vector<std::string>& Header() const { return header_; }
  void SetHeader(std::vector<std::string> lines) { header_ = std::move(lines); }

  const std::vector<Station>& All() const { return stations_; }
  int Count() const { return static_cast<int>(stations_.size()); }

  /// The station of a number, found by halving; null when the list lacks it. Changes of the list
  /// make the pointer stale.
  const Station* Find(int number) const;

  /// Puts a station in its place. Fault 380 when its number is taken or a field is wrong.
  [[nodiscard]] std::optional<Fault> Add(const Station& station);
  /// Replaces the station of a number, its number too. Fault 380 when there is none, the new
  /// number is another station's, or a field is wrong; the list stays then.
  [[nodiscard]] std::optional<Fault> Change(int number, const Station& station);
  /// Fault 380 when there is none.
  [[nodiscard]] std::optional<Fault> Delete(int number);

  /// Puts a station that a file gave in its place; false when its number is taken.
  bool Insert(Station station);

  /// What of the file is no station: lines that are not understood, in their order, and what stands
  /// behind the end of the list. Writing the list writes them again.
  const std::vector<UnreadLine>& Unread() const { return unread_; }
  void AddUnread(UnreadLine line) { unread_.push_back(std::move(line)); }
  const std::string& Trailer() const { return trailer_; }
  void SetTrailer(std::string text) { trailer_ = std::move(text); }

  bool operator==(const StationList&) const = default;

 private:
  std::vector<UnreadLine> unread_{};
  std::string trailer_{};
  std::vector<std::string> header_;
  std::vector<Station> stations_{};  // by rising number
};

/// The lines that head a locator file of the program.
std::vector<std::string> StationHeader();

/// The station of letters, "KOUN", or "OUN" as it is called in the United States, capitals or not;
/// null where none or several have them.
const Station* StationOfLetters(const StationList& list, std::string_view letters);

/// Stations for a pick list: digits find numbers that begin with them (leading zeros may be left
/// out), words find stations in whose identifier, name and region all of them occur, capitals or
/// not. Identifiers that match whole come first, then names that begin with the text, then the
/// rest; each by number. Nothing is found by an empty text.
///
/// most  number of stations at most
std::vector<const Station*> SearchStations(const StationList& list, std::string_view text,
                                           int most);

}  // namespace vexa
