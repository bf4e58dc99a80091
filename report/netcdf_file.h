// A netCDF file in the making, for what is written after the CF conventions: a section's grid in
// memory, or soundings one after the other on the disk. What goes wrong first is kept; nothing is
// done after it.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/fault.h"

namespace vexa::report {

/// What is answered where the netCDF library is not there, as when the program was built without.
Fault WithoutNetcdf();

}  // namespace vexa::report

#if VEXA_NETCDF
#include <netcdf.h>

namespace vexa::report {

class NetcdfFile {
 public:
  /// In memory, in the classic format.
  explicit NetcdfFile(const char* name);
  /// On the disk, with any number of dimensions that grow.
  explicit NetcdfFile(const std::filesystem::path& path);
  ~NetcdfFile();
  NetcdfFile(const NetcdfFile&) = delete;
  NetcdfFile& operator=(const NetcdfFile&) = delete;

  int Dimension(const char* name, std::size_t size);  // NC_UNLIMITED grows
  int Variable(std::string_view name, nc_type type, const std::vector<int>& dimensions);
  void Text(int variable, const char* name, std::string_view text);
  void Fill(int variable);  // of a float
  void Flags(int variable, const std::vector<float>& values, std::string_view meanings);
  void Pack(int variable);  // compressed on the disk
  void EndDefinitions();
  void Put(int variable, const std::vector<double>& values);
  void Put(int variable, const std::vector<float>& values);
  void Put(int variable, const std::string& letters);
  /// Behind what is there, from a place on.
  void PutFrom(int variable, std::size_t first, const std::vector<float>& values);
  void PutFrom(int variable, std::size_t first, const std::vector<double>& values);
  void PutFrom(int variable, std::size_t first, const std::vector<int>& values);
  void PutFrom(int variable, std::size_t first, const std::vector<std::string>& values);

  /// The bytes of a file in memory; none of one on the disk.
  Outcome<std::string> Close();
  bool Ok() const { return status_ == NC_NOERR; }
  Fault Failure() const;

 private:
  void Check(int status) {
    if (status_ == NC_NOERR) status_ = status;
  }

  int id_ = -1;
  int status_ = NC_NOERR;
  bool isOpen_ = false;
  bool isInMemory_ = false;
};

/// A unit of ours as UDUNITS names it.
std::string_view UdUnit(std::string_view unit);

}  // namespace vexa::report
#endif
