// The table of decoders: one row per exchange format, each with the tag it leaves in the record,
// a recogniser that looks at the text and the function that fills the record. A new format is one
// file pair and one row here.
#pragma once

#include <any>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/current_sounding.h"
#include "core/fault.h"
#include "core/sounding_record.h"
#include "core/source_text.h"
#include "core/station_list.h"
#include "ingest/source_sounding.h"

namespace vexa::ingest {

struct Decoder;

/// What a text is, found once however many of its soundings are decoded with the same context.
struct OpenedText {
  const SourceText* Of = nullptr;
  const char* Bytes = nullptr;                // where it lies: another text may come to its place
  std::shared_ptr<const SourceText> Plain{};  // of a web page, without its tags
  const Decoder* Row = nullptr;
  std::vector<int> Cuts{};  // lines where soundings begin that were put together

  const SourceText& Text() const { return Plain ? *Plain : *Of; }
};

/// What a decoder may ask for besides the text.
struct LoadContext {
  Interaction* Ask = nullptr;
  int Index = 0;                          // which sounding of the file, 0: the first
  const StationList* Stations = nullptr;  // for soundings that name their station by number only
  std::vector<std::string> Notes{};       // what was left out, changed or worked out, for the user
  int Garbled = 0;                        // of the notes those on what is garbled, or may be
  int Count = 1;                          // soundings of the file, set by formats of several
  OpenedText Opened{};                    // the text that was decoded last
  std::any Kept{};                        // what a decoder worked out of it, see Kept()
  std::vector<int> Held{};                // of an archive: the soundings of each text in it
  std::size_t Member = 0;                 // and the text that Kept is about
};

/// What `find` gives of the whole text: the soundings of a file are found once however many of them
/// are decoded with the same context, which must then always come with the same text.
template <class T>
const T& Kept(LoadContext& context, const SourceText& source, T (*find)(const SourceText&)) {
  if (!std::any_cast<T>(&context.Kept)) context.Kept = find(source);
  return *std::any_cast<T>(&context.Kept);
}

struct Decoder {
  std::string_view Tag;           // left in SoundingRecord::DataFormat
  std::string_view Name;          // for messages and the file dialog
  std::string_view FilePatterns;  // "*.html *.htm *.txt"
  bool (*Recognises)(const SourceText& source);
  /// Fills a record that ClearData has emptied and sets DataFormat last; on a fault the record
  /// keeps what was read so far. The text of a web page comes without its tags.
  std::optional<Fault> (*Decode)(const SourceText& source, LoadContext& context,
                                 SoundingRecord& into);
  /// The soundings that the text holds, in the order of LoadContext::Index; null for a format of
  /// one sounding a file.
  std::vector<SourceEntry> (*List)(const SourceText& source) = nullptr;
  /// For a format of one sounding a file: the lines where soundings begin whose texts were put
  /// together in one file.
  std::vector<int> (*Beginnings)(const SourceText& source) = nullptr;
  bool IsInParts = false;  // an ascent may be spread over several files, which read on as one text
  bool IsSeries = false;   // each sounding stands by itself: a long file can be read in pieces
};

std::span<const Decoder> Decoders();

/// The first decoder that recognises the text; null when none does.
const Decoder* FindDecoder(const SourceText& source);

/// The soundings of a text, for the user to choose from: titles with station and time. A format of
/// one sounding a file gives one entry titled by the file's name; an unknown format gives none.
std::vector<SourceEntry> ListSoundings(const SourceText& source);

/// Recognises, decodes and orders the sounding that the context's Index chooses: PressureDupe,
/// SortData, PressureDupe. Fault 1209 when no format is recognised, 62 for damage and for a
/// server's answer that it has no data, 2222 for fewer than two levels; the detail
/// names the file, the line where there is one, and the reason, the server's own words where it
/// gave some. Two winds without temperatures are a sounding too, except in a native file.
std::optional<Fault> DecodeSounding(const SourceText& source, LoadContext& context,
                                    SoundingRecord& into);

/// A file's text as decoders take it. A gzip or ZIP file is unpacked; of several files inside,
/// those in known formats stand one behind the other, see MakeArchive, and a note names the rest.
Outcome<SourceText> ReadSource(const std::filesystem::path& path, std::vector<std::string>& notes);

/// The same for bytes that came by another way, under a name of their own.
Outcome<SourceText> ReadSource(const std::string& name, std::string bytes,
                               std::vector<std::string>& notes);

}  // namespace vexa::ingest
