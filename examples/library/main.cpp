// Prints a few indices of each sounding given.
#include <vexa/vexa.h>
#include <iostream>

int main(int argc, char** argv) {
  vexa::engine::Settings settings;
  settings.StationFile = STATION_FILE;
  for (int i = 1; i < argc; ++i) {
    const vexa::engine::Loaded sounding = vexa::engine::Load(argv[i], settings);
    if (!sounding) {
      std::cerr << sounding.Reason << '\n';
      return 1;
    }
    std::cout << sounding->Title() << '\n';
    for (const char* label : {"KI", "SWEAT", "Water"}) {
      if (const auto value = sounding->Index(label)) std::cout << label << ' ' << *value << '\n';
    }
    if (const auto cape = sounding->Lifted(vexa::engine::Lift::MostUnstable).Cape) {
      std::cout << "CAPE " << *cape << " J/kg\n";
    }
  }
  return 0;
}
