#include "core/station_list.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <mutex>
#include <utility>

#include "core/letter_case.h"
#include "core/numbers.h"

namespace vexa {
namespace {

Fault Refused(std::string_view procedure, int number, std::string_view reason) {
  return Fault{kFaultInvalidValue, std::string(procedure),
               "Station " + Mask(number, "00000") + ' ' + std::string(reason)};
}

std::optional<Fault> CheckFields(const Station& station) {
  const Outcome<Station> checked = StationFrom(TextsOf(station));
  if (checked) return std::nullopt;
  return checked.Error();
}

std::vector<std::string_view> Words(std::string_view text) {
  std::vector<std::string_view> words;
  while (!(text = Trim(text)).empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    words.push_back(text.substr(0, end));
    text.remove_prefix(end);
  }
  return words;
}

// How well a station answers a text in capitals: 0 best, kNoMatch not at all.
constexpr int kNoMatch = 3;
int Rank(const Station& station, std::string_view text,
         const std::vector<std::string_view>& words) {
  const std::string ident = Upper(station.Ident);
  const std::string name = Upper(station.Name);
  if (ident == text) return 0;
  if (name.starts_with(text)) return 1;
  const std::string all = ident + '\n' + name + '\n' + Upper(station.Region);
  const bool hasAll = std::ranges::all_of(
      words, [&all](std::string_view word) { return all.find(word) != std::string::npos; });
  return hasAll ? 2 : kNoMatch;
}

int RankByNumber(const Station& station, std::string_view digits) {
  if (Mask(station.Number, "00000").starts_with(digits)) return 0;
  return Shortest(station.Number).starts_with(digits) ? 1 : kNoMatch;
}

}  // namespace

std::vector<std::string> StationHeader() {
  return {"VEXA STATION LISTING",
          "WMO numbers must be sequential.      Coordinates are in decimal degrees."};
}

class StationList::Later {
 public:
  Later(std::function<StationList()> read, StationLookup lookup)
      : read_(std::move(read)), lookup_(std::move(lookup)) {}
  const Parts& Get() {
    std::call_once(once_, [this] {
      StationList list = read_();
      parts_ = std::move(list.Own());
      read_ = {};
    });
    return parts_;
  }
  bool HasLookup() const { return lookup_.OfNumber && lookup_.OfIdent; }
  const Station* Find(int number) { return Kept(byNumber_, number, lookup_.OfNumber); }
  const Station* FindIdent(const std::string& ident) {
    return Kept(byIdent_, ident, lookup_.OfIdent);
  }

 private:
  // What was looked up stays where it is.
  template <class Key, class Lookup>
  const Station* Kept(std::map<Key, std::optional<Station>>& known, const Key& key,
                      const Lookup& lookup) {
    const std::lock_guard<std::mutex> here(lock_);
    auto at = known.find(key);
    if (at == known.end()) at = known.emplace(key, lookup(key)).first;
    return at->second ? &*at->second : nullptr;
  }

  std::once_flag once_{};
  std::function<StationList()> read_;
  Parts parts_{};
  StationLookup lookup_;
  std::mutex lock_{};
  std::map<int, std::optional<Station>> byNumber_{};
  std::map<std::string, std::optional<Station>> byIdent_{};
};

StationList::StationList() : own_{.Header = StationHeader()} {}

StationList StationList::ReadLater(std::function<StationList()> read, StationLookup lookup) {
  StationList list;
  list.later_ = std::make_shared<Later>(std::move(read), std::move(lookup));
  return list;
}

const StationList::Parts& StationList::Held() const {
  return later_ ? later_->Get() : own_;
}

StationList::Parts& StationList::Own() {
  if (later_) {
    own_ = later_->Get();
    later_.reset();
  }
  return own_;
}

const Station* StationList::Find(int number) const {
  if (later_ && later_->HasLookup()) return later_->Find(number);
  const std::vector<Station>& all = All();
  const auto place = std::ranges::lower_bound(all, number, {}, &Station::Number);
  return place != all.end() && place->Number == number ? &*place : nullptr;
}

const Station* StationList::FindIdent(std::string_view ident) const {
  if (later_ && later_->HasLookup()) return later_->FindIdent(std::string(ident));
  const auto isSought = [ident](const Station& station) { return station.Ident == ident; };
  const std::vector<Station>& all = All();
  const auto found = std::ranges::find_if(all, isSought);
  if (found == all.end() || std::find_if(found + 1, all.end(), isSought) != all.end()) {
    return nullptr;
  }
  return &*found;
}

bool StationList::Insert(Station station) {
  // A file brings them in order, about as many as the shipped one has.
  constexpr std::size_t kUsual = 4096;
  std::vector<Station>& stations = Own().Stations;
  if (stations.empty()) stations.reserve(kUsual);
  if (stations.empty() || stations.back().Number < station.Number) {
    stations.push_back(std::move(station));
    return true;
  }
  const auto place = std::ranges::lower_bound(stations, station.Number, {}, &Station::Number);
  if (place != stations.end() && place->Number == station.Number) return false;
  stations.insert(place, std::move(station));
  return true;
}

std::optional<Fault> StationList::Add(const Station& station) {
  if (std::optional<Fault> fault = CheckFields(station)) return fault;
  if (!Insert(station)) return Refused("Add", station.Number, "is in the list already");
  return std::nullopt;
}

std::optional<Fault> StationList::Change(int number, const Station& station) {
  if (Find(number) == nullptr) return Refused("Change", number, "is not in the list");
  if (std::optional<Fault> fault = CheckFields(station)) return fault;
  if (station.Number != number && Find(station.Number) != nullptr) {
    return Refused("Change", station.Number, "is in the list already");
  }
  const Station changed = station;  // may be one of the list's own
  if (std::optional<Fault> fault = Delete(number)) return fault;
  Insert(changed);
  return std::nullopt;
}

std::optional<Fault> StationList::Delete(int number) {
  std::vector<Station>& stations = Own().Stations;
  const Station* station = Find(number);
  if (station == nullptr) return Refused("Delete", number, "is not in the list");
  stations.erase(stations.begin() + std::distance(std::as_const(stations).data(), station));
  return std::nullopt;
}

const Station* StationOfLetters(const StationList& list, std::string_view letters) {
  constexpr std::size_t kWithoutCountry = 3, kWhole = 4;
  const bool isShort = letters.size() == kWithoutCountry;
  if (!isShort && letters.size() != kWhole) return nullptr;
  return list.FindIdent(Upper((isShort ? "K" : "") + std::string(letters)));
}

std::vector<const Station*> SearchStations(const StationList& list, std::string_view text,
                                           int most) {
  const std::string wanted = Upper(Trim(text));
  if (wanted.empty() || most <= 0) return {};
  const bool isNumber = std::ranges::all_of(wanted, [](char c) { return c >= '0' && c <= '9'; });
  const std::vector<std::string_view> words = Words(wanted);

  std::vector<std::vector<const Station*>> byRank(kNoMatch);
  for (const Station& station : list.All()) {
    const int rank = isNumber ? RankByNumber(station, wanted) : Rank(station, wanted, words);
    if (rank < kNoMatch) byRank[static_cast<std::size_t>(rank)].push_back(&station);
  }
  std::vector<const Station*> found;
  for (const auto& group : byRank) found.insert(found.end(), group.begin(), group.end());
  if (found.size() > static_cast<std::size_t>(most)) found.resize(static_cast<std::size_t>(most));
  return found;
}

}  // namespace vexa
