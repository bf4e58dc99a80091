#include "forecast/listings.h"

#include "core/numbers.h"
#include "core/platform.h"
#include "core/record_text.h"
#include "core/units.h"

namespace vexa::forecast {
namespace {

constexpr int kNameWidth = 39;

std::string NameOf(const Profile& profile) {
  const std::string title(Trim(profile.Sounding.StationTitle));
  return title.empty() ? profile.Source : title;
}

// A record for each: file, title, latitude, longitude, bearing, range and whether it lies upwind.
std::string RecordsOf(const Region& region, bool upwindAlone) {
  RecordWriter writer;
  for (const Neighbour& neighbour : region.Near) {
    if (upwindAlone && !neighbour.IsUpwind) continue;
    const SoundingRecord& sounding = neighbour.Of->Sounding;
    writer.Text(neighbour.Of->Source)
        .Text(sounding.StationTitle)
        .Number(Rounded(sounding.LatSigned, 4))
        .Number(Rounded(sounding.LonSigned, 4))
        .Number(Rounded(neighbour.Bearing, 2))
        .Number(Rounded(neighbour.RangeKm, 2))
        .Number(neighbour.IsUpwind ? 1 : 0);
    writer.EndRecord();
  }
  return writer.Take();
}

}  // namespace

std::string ListRow(const Neighbour& neighbour, std::size_t number) {
  const double range = neighbour.RangeKm;
  return PadLeft(Shortest(static_cast<int>(number)), 5) + "  " +
         PadRight(CutTitle(NameOf(*neighbour.Of), kNameWidth), kNameWidth) + " " +
         PadLeft(Mask(neighbour.Bearing, "##0"), 5) + "   " + PadLeft(Mask(range, "###0"), 7) +
         PadLeft(Mask(range / kKmPerNauticalMile, "###0"), 7);
}

std::vector<std::string> RegionListing(const Region& region) {
  const std::string header(kListHeader), rule(kListRule);
  std::vector<std::string> lines = {"Nearby soundings:", header, rule};
  for (std::size_t i = 0; i < region.Near.size(); ++i) {
    const Neighbour& neighbour = region.Near[i];
    lines.push_back(ListRow(neighbour, i + 1) + std::string(neighbour.IsUpwind ? kUpwindMark : ""));
  }
  lines.insert(lines.end(), {"", "Upwind soundings:"});
  if (!region.HasUpwind()) {
    lines.emplace_back("No upwind data.");
    return lines;
  }
  lines.insert(lines.end(), {header, rule});
  for (std::size_t i = 0; i < region.Near.size(); ++i) {
    if (region.Near[i].IsUpwind) lines.push_back(ListRow(region.Near[i], i + 1));
  }
  return lines;
}

std::string StepText(const ForecastStep& step) {
  const StepChoice& choice = step.Choice;
  std::string line = PadLeft(Shortest(choice.Hour), 3) + " hrs  ";
  if (step.IsAlone) return line + "the station's own advection";
  line += "Advection rate: " + Mask(choice.RateKt, "##0.0") + " kts from " +
          Mask(choice.WindFrom, "##0") + ", " + Mask(choice.UpwindKm, "###0") + " km upwind:";
  constexpr double kLeastShown = 0.005;
  int faint = 0;
  for (const Contribution& part : choice.Parts) {
    if (part.Weight < kLeastShown) {
      ++faint;
      continue;
    }
    line += (part.Of ? " #" + Shortest(static_cast<int>(*part.Of) + 1) : " itself") + " " +
            Mask(100 * part.Weight, "##0") + "%";
  }
  if (faint > 0) line += ", " + Shortest(faint) + " more under 1% each";
  return line;
}

std::optional<Fault> SaveWorkFiles(const std::filesystem::path& folder, const Region& region,
                                   FileOps& ops) {
  const std::error_code failed = MakeFolders(folder);
  if (failed) return Fault{FaultNumber(failed), "SaveWorkFiles", TextFromPath(folder)};
  std::string list = std::string(kListHeader) + "\n" + std::string(kListRule) + "\n";
  for (std::size_t i = 0; i < region.Near.size(); ++i) {
    list += ListRow(region.Near[i], i + 1) +
            std::string(region.Near[i].IsUpwind ? kUpwindMark : "") + "\n";
  }
  const auto save = [&](std::string_view name, const std::string& text) {
    return SaveFile(folder / PathFromText(name), text, ops, Links::Replace);
  };
  if (auto fault = save(kFoundInRange, list)) return fault;
  if (auto fault = save(kFoundFiles, RecordsOf(region, false))) return fault;
  const bool isOneFile =
      AreOne(folder / PathFromText(kFoundInRange), folder / PathFromText(kCandidates));
  return save(isOneFile ? kCandidatesElse : kCandidates, RecordsOf(region, true));
}

}  // namespace vexa::forecast
