#include "core/sounding_record.h"

#include <cmath>

#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"
#include "core/utf8.h"

namespace vexa {

bool SoundingRecord::HasWind(int level) const {
  return HasHeight(WindHgt(level)) && !NotAvailable(WindDir(level)) &&
         !NotAvailable(WindSpd(level));
}

void SoundingRecord::AddTemp(double press, double temp, double dewpt) {
  Press.Add(press);
  Temp.Add(temp);
  Dewpt.Add(dewpt);
}

void SoundingRecord::AddWind(double height, double direction, double speed) {
  WindHgt.Add(height);
  WindDir.Add(direction);
  WindSpd.Add(speed);
  WorkWindDir.Add(static_cast<float>(direction));
  WorkWindSpd.Add(static_cast<float>(speed));
}

bool SoundingRecord::HasWorkWinds() const {
  return NumWindLevels() > 0 && WorkWindDir.Count() == NumWindLevels() &&
         WorkWindSpd.Count() == NumWindLevels();
}

void ClearData(SoundingRecord& record) {
  record = SoundingRecord{};
}

std::string CutTitle(std::string_view given, int most) {
  // What is no UTF-8 is an older text of single bytes.
  std::string text = IsUtf8(given) ? std::string(given) : Utf8FromLatin1(given);
  std::size_t end = 0;
  for (int characters = 0; characters < most && end < text.size(); ++characters) {
    end += Utf8Length(std::string_view(text).substr(end));
  }
  text.resize(end);
  return text;
}

void SetElevation(SoundingRecord& record, int elevM) {
  record.ElevM = elevM;
  record.ElevFt = FeetFromMeters(elevM);
  record.ElevUnknown = false;
}

void SetElevationUnknown(SoundingRecord& record) {
  SetElevation(record, 0);
  record.ElevUnknown = true;
}

void SetDecimalPosition(SoundingRecord& record, double latSigned, double lonSigned) {
  record.LatSigned = latSigned;
  record.LonSigned = lonSigned;
  record.LatValue = std::fabs(latSigned);
  record.LonValue = static_cast<float>(std::fabs(lonSigned));
  record.LatHemi = latSigned < 0 ? "S" : "N";
  record.LonHemi = lonSigned < 0 ? "W" : "E";
  record.LatLonNotation = "dec";
}

AngleParts SplitAngle(std::string_view magnitude) {
  AngleParts parts;
  const std::string_view text = Trim(magnitude);
  const std::size_t point = text.find('.');
  const std::string_view degrees = text.substr(0, point);
  const std::string_view rest =
      point == std::string_view::npos ? std::string_view{} : text.substr(point + 1);
  const auto twoDigits = [](std::string_view digits, std::string& part) {
    if (digits.empty()) return;
    part = digits.substr(0, 2);
    if (part.size() == 1) part += '0';
  };
  if (!degrees.empty()) parts.Degrees = degrees;
  twoDigits(rest, parts.Minutes);
  if (rest.size() > 2) twoDigits(rest.substr(2), parts.Seconds);
  return parts;
}

double DecimalDegrees(const AngleParts& parts) {
  const auto number = [](const std::string& text) { return ParseNumber(text).value_or(0); };
  return number(parts.Degrees) + number(parts.Minutes) / 60 + number(parts.Seconds) / 3600;
}

void ParseLatLon(SoundingRecord& record) {
  record.LatParts = SplitAngle(Shortest(record.LatValue));
  record.LonParts = SplitAngle(Shortest(record.LonValue));
  record.LatSigned = DecimalDegrees(record.LatParts) * (record.LatHemi == "S" ? -1 : 1);
  record.LonSigned = DecimalDegrees(record.LonParts) * (record.LonHemi == "W" ? -1 : 1);
}

}  // namespace vexa
