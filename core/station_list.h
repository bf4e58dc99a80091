// The stations of a locator file, always in order of their numbers, each number once: found by
// number at once, searched by fragment for a pick list, changed by the station editor.
#pragma once

#include <functional>
#include <memory>
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

/// Where a list's stations are found one by one without reading the list.
struct StationLookup {
  std::function<std::optional<Station>(int number)> OfNumber{};
  std::function<std::optional<Station>(std::string_view ident)> OfIdent{};  // none of several
};

class StationList {
 public:
  StationList();
  /// A list that is read when it is first looked into, by whatever thread, for more than the lookup
  /// finds; its copies share the reading. Most soundings name their stations themselves or need
  /// one.
  static StationList ReadLater(std::function<StationList()> read, StationLookup lookup = {});

  /// The free lines ahead of the first record, without their ends; a new list has the program's.
  const std::vector<std::string>& Header() const { return Held().Header; }
  void SetHeader(std::vector<std::string> lines) { Own().Header = std::move(lines); }

  const std::vector<Station>& All() const { return Held().Stations; }
  int Count() const { return static_cast<int>(All().size()); }

  /// The station of a number; null when the list lacks it. Changes of the list make the pointer
  /// stale.
  const Station* Find(int number) const;
  /// The same of an identifier, in capitals; null where none or several have it.
  const Station* FindIdent(std::string_view ident) const;

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
  const std::vector<UnreadLine>& Unread() const { return Held().Unread; }
  void AddUnread(UnreadLine line) { Own().Unread.push_back(std::move(line)); }
  const std::string& Trailer() const { return Held().Trailer; }
  void SetTrailer(std::string text) { Own().Trailer = std::move(text); }

  bool operator==(const StationList& other) const { return Held() == other.Held(); }

 private:
  struct Parts {
    std::vector<UnreadLine> Unread{};
    std::string Trailer{};
    std::vector<std::string> Header{};
    std::vector<Station> Stations{};  // by rising number
    bool operator==(const Parts&) const = default;
  };
  class Later;

  const Parts& Held() const;
  Parts& Own();  // to change

  Parts own_{};
  std::shared_ptr<Later> later_{};  // holds the parts until they are changed
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
