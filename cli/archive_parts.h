// What the parts of `vexa-cli archive` share: the words behind the part's name, the catalogue, and
// how it fails.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "archive/catalogue.h"
#include "cli/commands.h"

namespace vexa::cli {

/// A part with the words behind its name.
struct ArchiveWork {
  const Arguments& Given;
  Console& Out;
  std::string Name{};                // of the catalogue
  std::vector<std::string> Words{};  // behind it
};

/// Wrong usage; gives the exit code.
int WrongWords(const ArchiveWork& work, std::string_view reason);
/// The catalogue, or what is made of it, cannot be read or written; gives the exit code.
int CatalogueFailed(const ArchiveWork& work, const std::string& name, const Fault& fault);
Outcome<archive::Catalogue> OpenCatalogue(const ArchiveWork& work, archive::Opening opening);

/// The columns of "A,B,C", or every one for "all". Fault 380 for a name that is none.
Outcome<std::vector<const archive::Column*>> ColumnsNamed(const std::string& names);

/// How what is asked of the catalogue is spread at a station, and where a sounding lies in it.
int RunClimate(const ArchiveWork& work);
/// The soundings that are most like one.
int RunAnalogues(const ArchiveWork& work);

}  // namespace vexa::cli
