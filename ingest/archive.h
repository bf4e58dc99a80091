// Archives as sources: the soundings of all the files inside, one after another.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/source_text.h"
#include "ingest/decoder.h"

namespace vexa::ingest {

/// One source of the texts of an archive. Texts in no known format are left out and named in a
/// note; those of a format in parts (coded messages, BUFR) read on as one text where their names
/// hold the same date or none and they were written on the same day. Of one text only, this is the
/// source itself; where none is known, the first.
SourceText MakeArchive(const std::string& name, std::vector<SourceText> texts,
                       std::vector<std::string>& notes);

/// Whether the texts of two files, the second behind the first in an archive, make one text.
bool ReadsOn(const SourceText& text, const SourceText& next);

/// Where one sounding of a source stands: its text, and which of that text's soundings it is.
struct SoundingPlace {
  const SourceText* Text = nullptr;
  int Index = 0;
};

/// The place of the sounding that LoadContext::Index or ListSoundings would give this number; of a
/// source that is no archive, the source itself.
SoundingPlace PlaceOf(const SourceText& source, int index);

/// As ListSoundings, of all texts in their order; those of one sounding go by their file's name.
std::vector<SourceEntry> ListArchive(const SourceText& archive);

/// As DecodeSounding, of the sounding that the context's Index chooses in the whole archive.
std::optional<Fault> DecodeFromArchive(const SourceText& archive, LoadContext& context,
                                       SoundingRecord& into);

}  // namespace vexa::ingest
