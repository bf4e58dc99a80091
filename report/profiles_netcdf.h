// Soundings as profiles in one netCDF file after the CF conventions for discrete sampling
// geometries: contiguous ragged arrays, the levels of one sounding behind those of another, with
// every index as a variable of the profile. They are written one after the other and forgotten.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "config/display_settings.h"
#include "core/fault.h"
#include "report/sounding_json.h"

namespace vexa::report {

class ProfilesNetcdf {
 public:
  /// A new file, which stands under its name when it is closed. Fault where the program was built
  /// without the netCDF library.
  ///
  /// settings  under which the soundings were analysed, in words
  static Outcome<ProfilesNetcdf> Begin(const std::filesystem::path& path,
                                       const std::string& settings);
  ProfilesNetcdf(ProfilesNetcdf&&) noexcept;
  ProfilesNetcdf& operator=(ProfilesNetcdf&&) noexcept;
  ~ProfilesNetcdf();

  /// name  by which the sounding is found again: its file, and which of it
  void Add(const ReportedSounding& sounding, const std::string& name);
  /// The fault of any of what was done.
  [[nodiscard]] std::optional<Fault> End();

 private:
  struct Made;
  explicit ProfilesNetcdf(std::unique_ptr<Made> made);
  std::unique_ptr<Made> made_;
};

}  // namespace vexa::report
