#include "report/json.h"

#include <cmath>
#include <cstdint>

namespace vexa::report {

Json Number(std::optional<double> value) {
  constexpr double kMostWhole = 1e15;  // exact as a double, and within 64 bits
  if (!value || !std::isfinite(*value)) return nullptr;
  if (*value == std::trunc(*value) && std::abs(*value) < kMostWhole) {
    return static_cast<std::int64_t>(*value);
  }
  return *value;
}

Json Numbers(const std::vector<std::optional<double>>& values) {
  Json array = Json::array();
  for (const std::optional<double>& value : values) array.push_back(Number(value));
  return array;
}

Json WordsJson(std::string_view words) {
  return words.empty() ? Json(nullptr) : Json(words);
}

Json FindingJson(const QcFinding& finding) {
  if (finding.Number == 0) return nullptr;
  Json json;
  json["number"] = finding.Number;
  json["text"] = QcText(finding.Number);
  json["level"] = finding.Level == 0 ? Json(nullptr) : Json(finding.Level);
  return json;
}

Json FoundJson(std::string_view file, std::string_view station, const QcFinding& finding,
               const Json& found) {
  Json json;
  json["file"] = file;
  json["station"] = station;
  json["finding"] = FindingJson(finding);
  json.update(found);
  return json;
}

std::string JsonText(const Json& json) {
  constexpr int kIndent = 2;
  return json.dump(kIndent, ' ', false, Json::error_handler_t::replace);
}

}  // namespace vexa::report
