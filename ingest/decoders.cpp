#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "core/data_checks.h"
#include "core/error_report.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/raw_file.h"
#include "ingest/archive.h"
#include "ingest/avaps.h"
#include "ingest/bufkit.h"
#include "ingest/bufr.h"
#include "ingest/cards.h"
#include "ingest/class_text.h"
#include "ingest/coded.h"
#include "ingest/columns.h"
#include "ingest/decoder.h"
#include "ingest/frd.h"
#include "ingest/fsl.h"
#include "ingest/html_text.h"
#include "ingest/iem.h"
#include "ingest/igra.h"
#include "ingest/level_dump.h"
#include "ingest/model_csv.h"
#include "ingest/native.h"
#include "ingest/source_header.h"
#include "ingest/spc_text.h"
#include "ingest/td6201.h"
#include "ingest/wyoming.h"
#include "ingest/wyoming_csv.h"

namespace vexa::ingest {
namespace {

// The first that recognises a text reads it.
constexpr Decoder kDecoders[] = {
    {"BUFR", "BUFR messages", "*.bufr *.bfr *.bin", IsBufr, DecodeBufr, ListBufr, nullptr, true},
    {kRawTag, "VEXA sounding", "*.raw *.RAW", IsNative, DecodeNative},
    {"COLUMNS", "VEXA data dump", "*.txt *.csv", IsLevelDump, DecodeLevelDump, ListLevelDump},
    {"IEM", "IEM JSON", "*.json", IsIemJson, DecodeIemJson, ListIemJson},
    {"DROPSONDE", "Dropsonde file", "D*", IsAvaps, DecodeAvaps},
    {"CLASS", "CLASS and EOL files", "*.cls *.eol", IsClassText, DecodeClassText, ListClassText},
    {"FCST", "BUFKIT", "*.buf", IsBufkit, DecodeBufkit, ListBufkit},
    {"SPC", "SPC text", "*.spc *.txt", IsSpcText, DecodeSpcText, nullptr, SpcTextBeginnings},
    {"IGRA", "IGRA station file", "*.txt", IsIgra, DecodeIgra, ListIgra, nullptr,
     false, true},
    {"CARDS", "CARDS archive", "*.txt", IsCards, DecodeCards},
    {"TD6201", "TD-6201 archive", "*.txt *.dat", IsTd6201, DecodeTd6201, ListTd6201},
    {"FSL", "FSL rawinsonde text", "*.fsl *.txt", IsFsl, DecodeFsl, ListFsl, nullptr, false,
     true},
    {"WYOMING", "Wyoming CSV", "*.csv", IsWyomingCsv, DecodeWyomingCsv, nullptr,
     WyomingCsvBeginnings},
    {"WYOMING", "Wyoming listing", "*.html *.htm *.txt", IsWyoming, DecodeWyoming, nullptr,
     WyomingBeginnings},
    {"DROPSONDE", "Dropsonde report", "*.frd *.txt", IsFrd, DecodeFrd},
    {"IEM", "IEM table", "*.csv *.txt", IsIemTable, DecodeIemTable, ListIemTable},
    {"FCST", "Model profiles", "*.csv *.txt", IsModelCsv, DecodeModelCsv, ListModelCsv},
    {"CODED", "Coded messages", "*.txt", IsCoded, DecodeCoded, ListCoded, nullptr, true},
    {"COLUMNS", "Columns", "*.csv *.txt", IsColumns, DecodeColumns},
};

// A file of zeros is no text, and would take its time in every decoder.
bool IsEmptyOfText(const SourceText& plain) {
  constexpr std::size_t kMostBytes = 4096;
  const std::string_view start = std::string_view(plain.Bytes()).substr(0, kMostBytes);
  return start.find_first_not_of(std::string_view("\0 \t\r\n", 5)) == std::string_view::npos;
}

const Decoder* Recognise(const SourceText& plain) {
  if (IsEmptyOfText(plain) && plain.LineCount() == 1) return nullptr;
  const auto* decoder = std::ranges::find_if(
      kDecoders, [&plain](const Decoder& row) { return row.Recognises(plain); });
  return decoder == std::end(kDecoders) ? nullptr : decoder;
}

// What a server says in place of the data it does not have; empty for any other text.
std::string RefusalIn(const SourceText& plain) {
  constexpr int kMostLines = 100;
  constexpr std::size_t kMostBytes = 200;
  for (int line = 1; line <= std::min(plain.LineCount(), kMostLines); ++line) {
    const std::string_view text = Trim(plain.Line(line));
    for (const std::string_view opening :
         {"Can't get", "Unable to retrieve", "Software error", "Sorry"}) {
      if (!StartsWithNoCase(text, opening)) continue;
      std::string said(text);
      for (int next = line + 1; said.ends_with(':') && next <= plain.LineCount(); ++next) {
        const std::string_view reason = Trim(plain.Line(next));
        const bool isHeader = StartsWithNoCase(reason, "Content-type");
        if (!reason.empty() && !isHeader) said += ' ' + std::string(reason);
      }
      return said.substr(0, kMostBytes);
    }
  }
  return {};
}

// The lines where soundings begin in a text of several put together, and the one behind its last;
// of one sounding none.
std::vector<int> CutsOf(const Decoder& decoder, const SourceText& plain) {
  std::vector<int> cuts;
  if (decoder.Beginnings != nullptr) cuts = decoder.Beginnings(plain);
  if (cuts.size() < 2) return {};
  cuts.front() = 1;
  cuts.push_back(plain.LineCount() + 1);
  return cuts;
}

std::vector<SourceEntry> ListParts(const Decoder& decoder, const SourceText& plain,
                                   const std::vector<int>& cuts) {
  std::vector<SourceEntry> entries;
  for (std::size_t i = 0; i + 1 < cuts.size(); ++i) {
    LoadContext context;
    SoundingRecord record;
    ClearData(record);
    static_cast<void>(decoder.Decode(plain.Part(cuts[i], cuts[i + 1]), context, record));
    entries.push_back({.Title = record.StationTitle,
                       .Time = record.Time,
                       .FirstLine = cuts[i],
                       .EndLine = cuts[i + 1]});
  }
  return entries;
}

std::vector<SourceEntry> ListPlain(const SourceText& plain) {
  const Decoder* decoder = Recognise(plain);
  if (decoder == nullptr) return {};
  if (decoder->List != nullptr) return decoder->List(plain);
  if (const std::vector<int> cuts = CutsOf(*decoder, plain); !cuts.empty()) {
    return ListParts(*decoder, plain, cuts);
  }
  return {{.Title = plain.Name()}};
}

void Open(const SourceText& source, LoadContext& context) {
  OpenedText& opened = context.Opened;
  if (opened.Of == &source && opened.Bytes == source.Bytes().data()) return;
  if (opened.Of != nullptr) context.Kept.reset();
  opened = {.Of = &source, .Bytes = source.Bytes().data()};
  if (IsHtml(source)) opened.Plain = std::make_shared<const SourceText>(WithoutTags(source));
  opened.Row = Recognise(opened.Text());
  if (opened.Row != nullptr) opened.Cuts = CutsOf(*opened.Row, opened.Text());
}

std::optional<Fault> DecodeChosen(const Decoder& decoder, const SourceText& plain,
                                  LoadContext& context, SoundingRecord& into) {
  const std::vector<int>& cuts = context.Opened.Cuts;
  if (cuts.empty() && decoder.List != nullptr) return decoder.Decode(plain, context, into);
  const std::size_t count = cuts.empty() ? 1 : cuts.size() - 1;
  const Outcome<std::size_t> index = ChooseSounding(count, plain, context);
  if (!index) return index.Error();
  if (cuts.empty()) return decoder.Decode(plain, context, into);
  return decoder.Decode(plain.Part(cuts[index.Value()], cuts[index.Value() + 1]), context, into);
}

// Two temperature levels are wanted. Two winds do as well in all formats but the native one: those
// of a PILOT message have a hodograph, though no temperatures.
std::optional<Fault> Sufficiency(const std::string& name, LoadContext& context,
                                 SoundingRecord& into) {
  constexpr int kFewest = 2;
  if (into.NumTempLevels() >= kFewest) return std::nullopt;
  if (into.DataFormat == kRawTag || into.NumWindLevels() < kFewest) {
    return Fault{kFaultTooFewLevels, "DecodeSounding",
                 name + ": too few levels" +
                     (into.WmoNumber == 0 ? "" : " of " + Mask(into.WmoNumber, "00000")) + ", " +
                     Shortest(into.NumTempLevels()) + " with a temperature and " +
                     Shortest(into.NumWindLevels()) + " with a wind",
                 name};
  }
  if (into.NumTempLevels() > 0) {
    context.Notes.push_back("The only temperature, at " + Shortest(into.Press(1)) +
                            " hPa, was left out.");
    into.Press.Clear();
    into.Temp.Clear();
    into.Dewpt.Clear();
  }
  context.Notes.push_back("Winds only: there are no temperatures to analyse.");
  return std::nullopt;
}

std::optional<Fault> DecodeOpened(LoadContext& context, SoundingRecord& into) {
  const SourceText& plain = context.Opened.Text();
  const Decoder* decoder = context.Opened.Row;
  if (decoder == nullptr) {
    if (const std::string refusal = RefusalIn(plain); !refusal.empty()) {
      return Fault{kFaultEndOfFile, "DecodeSounding", plain.Name() + ": " + refusal, plain.Name()};
    }
    return Fault{kFaultFormat, "DecodeSounding",
                 plain.Name() + (Trim(plain.Bytes()).empty() ? ": the file is empty"
                                                             : ": in none of the known formats"),
                 plain.Name()};
  }
  context.Count = 1;
  std::optional<Fault> fault = DecodeChosen(*decoder, plain, context, into);
  PressureDupe(into);
  SortData(into);
  PressureDupe(into);
  if (fault) {
    fault->File = plain.Name();
    return fault;
  }
  return Sufficiency(plain.Name(), context, into);
}

}  // namespace

std::span<const Decoder> Decoders() {
  return kDecoders;
}

const Decoder* FindDecoder(const SourceText& source) {
  if (!source.Members().empty()) return FindDecoder(source.Members().front());
  return IsHtml(source) ? Recognise(WithoutTags(source)) : Recognise(source);
}

std::vector<SourceEntry> ListSoundings(const SourceText& source) {
  if (!source.Members().empty()) return ListArchive(source);
  return IsHtml(source) ? ListPlain(WithoutTags(source)) : ListPlain(source);
}

std::optional<Fault> DecodeSounding(const SourceText& source, LoadContext& context,
                                    SoundingRecord& into) {
  ClearData(into);
  return Guarded("DecodeSounding", [&] {
    if (!source.Members().empty()) return DecodeFromArchive(source, context, into);
    Open(source, context);
    return DecodeOpened(context, into);
  });
}

}  // namespace vexa::ingest
