// The place of the BUFR library in a build without it.
#include "ingest/bufr_messages.h"

namespace vexa::ingest {

Outcome<BufrMessage> UnpackBufr(std::string_view) {
  return Fault{kFaultFormat, "UnpackBufr", "this build of the program does not read BUFR messages"};
}

}  // namespace vexa::ingest
