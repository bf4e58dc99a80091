// The place of the BUFR library in a build without it.
#include "core/late_library.h"
#include "ingest/bufr_messages.h"

namespace vexa::ingest {

Outcome<std::vector<BufrSubset>> UnpackByLibrary(std::string_view) {
  return NoLibrary("UnpackByLibrary",
                   "a message has elements that are known to the BUFR library (ecCodes) alone, and "
                   "this program was built without it");
}

}  // namespace vexa::ingest
