// The library that reads ZIP archives, opened at the first of them: with what it brings along it
// takes a fifth of the time in which the program is loaded.
#pragma once

#include <zip.h>

#include "core/late_library.h"

namespace vexa::ingest {

#ifdef VEXA_ZIP_LIBRARY
inline const LateLibrary& ZipLibrary() {
  static const LateLibrary kLibrary(VEXA_ZIP_LIBRARY);
  return kLibrary;
}
inline bool HasZip() {
  return ZipLibrary().IsOpen();
}
VEXA_LATE_FUNCTION(ZipLibrary, zip_discard);
VEXA_LATE_FUNCTION(ZipLibrary, zip_error_init);
VEXA_LATE_FUNCTION(ZipLibrary, zip_error_strerror);
VEXA_LATE_FUNCTION(ZipLibrary, zip_fclose);
VEXA_LATE_FUNCTION(ZipLibrary, zip_file_get_error);
VEXA_LATE_FUNCTION(ZipLibrary, zip_fopen_index);
VEXA_LATE_FUNCTION(ZipLibrary, zip_fread);
VEXA_LATE_FUNCTION(ZipLibrary, zip_get_error);
VEXA_LATE_FUNCTION(ZipLibrary, zip_get_num_entries);
VEXA_LATE_FUNCTION(ZipLibrary, zip_open);
VEXA_LATE_FUNCTION(ZipLibrary, zip_open_from_source);
VEXA_LATE_FUNCTION(ZipLibrary, zip_source_buffer_create);
VEXA_LATE_FUNCTION(ZipLibrary, zip_source_free);
VEXA_LATE_FUNCTION(ZipLibrary, zip_stat_index);
#else
constexpr bool HasZip() {
  return true;
}
#endif

}  // namespace vexa::ingest
