#include "core/shown_values.h"

#include "core/numbers.h"

namespace vexa {
namespace {

std::string DateAndHour(const ObservationTime& time, std::string_view between) {
  return Mask(time.Year, "0000") + '-' + Mask(time.Month, "00") + '-' + Mask(time.Day, "00") +
         std::string(between) + Mask(time.Hour, "00") + ':' + Mask(time.Minute, "00");
}

}  // namespace

double ShownIn(double celsius, TempUnits units) {
  switch (units) {
    case TempUnits::Fahrenheit:
      return FahrenheitFromCelsius(celsius);
    case TempUnits::Kelvin:
      return celsius + kKelvinOffset;
    case TempUnits::Celsius:
      break;
  }
  return celsius;
}

std::string LengthText(double meters, LengthUnits units) {
  return Mask(ShownIn(meters, units), "#####0") + ' ' + std::string(UnitWord(units));
}

std::string TimeText(const ObservationTime& time) {
  return time.Known() ? DateAndHour(time, " ") : std::string();
}

std::string IsoTimeText(const ObservationTime& time) {
  return time.Known() ? DateAndHour(time, "T") + 'Z' : std::string();
}

}  // namespace vexa
