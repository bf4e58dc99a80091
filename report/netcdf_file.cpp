#include "report/netcdf_file.h"

#include "core/late_library.h"

#if VEXA_NETCDF
#include <netcdf_mem.h>

#include <cstdlib>
#include <utility>

#include "core/files.h"
#endif

namespace vexa::report {

Fault WithoutNetcdf() {
  return NoLibrary("NetcdfFile", std::string(VEXA_NETCDF ? "this system lacks"
                                                         : "this program was built without") +
                                     " the netCDF library; json and csv need none");
}

#if VEXA_NETCDF

namespace {

#ifdef VEXA_NETCDF_LIBRARY
VEXA_LATE_LIBRARY(Netcdf, VEXA_NETCDF_LIBRARY);
VEXA_LATE_FUNCTION(NetcdfLibrary, nc_abort);
VEXA_LATE_FUNCTION(NetcdfLibrary, nc_close);
VEXA_LATE_FUNCTION(NetcdfLibrary, nc_close_memio);
VEXA_LATE_FUNCTION(NetcdfLibrary, nc_create);
VEXA_LATE_FUNCTION(NetcdfLibrary, nc_create_mem);
VEXA_LATE_FUNCTION(NetcdfLibrary, nc_def_dim);
VEXA_LATE_FUNCTION(NetcdfLibrary, nc_def_var);
VEXA_LATE_FUNCTION(NetcdfLibrary, nc_def_var_deflate);
VEXA_LATE_FUNCTION(NetcdfLibrary, nc_enddef);
VEXA_LATE_FUNCTION(NetcdfLibrary, nc_put_att_float);
VEXA_LATE_FUNCTION(NetcdfLibrary, nc_put_att_text);
VEXA_LATE_FUNCTION(NetcdfLibrary, nc_put_var_double);
VEXA_LATE_FUNCTION(NetcdfLibrary, nc_put_var_float);
VEXA_LATE_FUNCTION(NetcdfLibrary, nc_put_var_text);
VEXA_LATE_FUNCTION(NetcdfLibrary, nc_put_vara_double);
VEXA_LATE_FUNCTION(NetcdfLibrary, nc_put_vara_float);
VEXA_LATE_FUNCTION(NetcdfLibrary, nc_put_vara_int);
VEXA_LATE_FUNCTION(NetcdfLibrary, nc_put_vara_string);
VEXA_LATE_FUNCTION(NetcdfLibrary, nc_strerror);
#else
constexpr bool HasNetcdf() {
  return true;
}
#endif

}  // namespace

NetcdfFile::NetcdfFile(const char* name) : isInMemory_(true) {
  Check(HasNetcdf() ? nc_create_mem(name, NC_64BIT_OFFSET, 1 << 16, &id_) : NC_EBADID);
  isOpen_ = Ok();
}

NetcdfFile::NetcdfFile(const std::filesystem::path& path) {
  const std::string name = TextFromPath(path);
  Check(HasNetcdf() ? nc_create(name.c_str(), NC_NETCDF4 | NC_CLOBBER, &id_) : NC_EBADID);
  isOpen_ = Ok();
}

NetcdfFile::~NetcdfFile() {
  if (isOpen_) nc_abort(id_);
}

int NetcdfFile::Dimension(const char* name, std::size_t size) {
  int dimension = -1;
  if (Ok()) Check(nc_def_dim(id_, name, size, &dimension));
  return dimension;
}

int NetcdfFile::Variable(std::string_view name, nc_type type, const std::vector<int>& dimensions) {
  int variable = -1;
  if (Ok()) {
    Check(nc_def_var(id_, std::string(name).c_str(), type, static_cast<int>(dimensions.size()),
                     dimensions.data(), &variable));
  }
  return variable;
}

void NetcdfFile::Text(int variable, const char* name, std::string_view text) {
  if (Ok() && !text.empty()) {
    Check(nc_put_att_text(id_, variable, name, text.size(), text.data()));
  }
}

void NetcdfFile::Fill(int variable) {
  const float none = NC_FILL_FLOAT;
  if (Ok()) Check(nc_put_att_float(id_, variable, "_FillValue", NC_FLOAT, 1, &none));
}

void NetcdfFile::Flags(int variable, const std::vector<float>& values, std::string_view meanings) {
  if (Ok()) {
    Check(nc_put_att_float(id_, variable, "flag_values", NC_FLOAT, values.size(), values.data()));
  }
  Text(variable, "flag_meanings", meanings);
}

void NetcdfFile::Pack(int variable) {
  constexpr int kQuick = 1;
  if (Ok()) Check(nc_def_var_deflate(id_, variable, NC_SHUFFLE, 1, kQuick));
}

void NetcdfFile::EndDefinitions() {
  if (Ok()) Check(nc_enddef(id_));
}

void NetcdfFile::Put(int variable, const std::vector<double>& values) {
  if (Ok()) Check(nc_put_var_double(id_, variable, values.data()));
}

void NetcdfFile::Put(int variable, const std::vector<float>& values) {
  if (Ok()) Check(nc_put_var_float(id_, variable, values.data()));
}

void NetcdfFile::Put(int variable, const std::string& letters) {
  if (Ok()) Check(nc_put_var_text(id_, variable, letters.data()));
}

void NetcdfFile::PutFrom(int variable, std::size_t first, const std::vector<float>& values) {
  const std::size_t count = values.size();
  if (Ok() && count > 0) Check(nc_put_vara_float(id_, variable, &first, &count, values.data()));
}

void NetcdfFile::PutFrom(int variable, std::size_t first, const std::vector<double>& values) {
  const std::size_t count = values.size();
  if (Ok() && count > 0) Check(nc_put_vara_double(id_, variable, &first, &count, values.data()));
}

void NetcdfFile::PutFrom(int variable, std::size_t first, const std::vector<int>& values) {
  const std::size_t count = values.size();
  if (Ok() && count > 0) Check(nc_put_vara_int(id_, variable, &first, &count, values.data()));
}

void NetcdfFile::PutFrom(int variable, std::size_t first, const std::vector<std::string>& values) {
  std::vector<const char*> texts;
  for (const std::string& value : values) texts.push_back(value.c_str());
  const std::size_t count = texts.size();
  if (Ok() && count > 0) Check(nc_put_vara_string(id_, variable, &first, &count, texts.data()));
}

Fault NetcdfFile::Failure() const {
  if (!HasNetcdf()) return WithoutNetcdf();
  return {kFaultDeviceError, "NetcdfFile",
          std::string("the netCDF library says: ") + nc_strerror(status_)};
}

Outcome<std::string> NetcdfFile::Close() {
  NC_memio memory{};
  if (Ok()) {
    isOpen_ = false;
    Check(isInMemory_ ? nc_close_memio(id_, &memory) : nc_close(id_));
  }
  if (!Ok()) return Failure();
  std::string bytes;
  if (memory.memory != nullptr) bytes.assign(static_cast<const char*>(memory.memory), memory.size);
  std::free(memory.memory);
  return bytes;
}

std::string_view UdUnit(std::string_view unit) {
  constexpr std::pair<std::string_view, std::string_view> kUnits[] = {
      {"C", "degC"},
      {"F", "degF"},
      {"knots", "knot"},
      {"kt", "knot"},
      {"m/s", "m s-1"},
      {"m2/s2", "m2 s-2"},
      {"m2/s", "m2 s-1"},
      {"m/s2", "m s-2"},
      {"J/kg", "J kg-1"},
      {"C/km", "K km-1"},
      {"in", "inch"},
      {"%", "percent"},
      {"1000 m3/s3", "1000 m3 s-3"},
  };
  for (const auto& [ours, theirs] : kUnits) {
    if (unit == ours) return theirs;
  }
  return unit;
}

#endif

}  // namespace vexa::report
