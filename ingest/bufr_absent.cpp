// The place of the BUFR library in a build without it.
#include "ingest/bufr_messages.h"

namespace vexa::ingest {

Outcome<std::vector<BufrSubset>> UnpackByLibrary(std::string_view) {
  return Fault{kFaultFormat, "UnpackByLibrary",
               "a message has elements that this build of the program does not know"};
}

}  // namespace vexa::ingest
