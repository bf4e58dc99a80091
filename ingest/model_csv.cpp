#include "ingest/model_csv.h"

#include <algorithm>
#include <string>
#include <utility>

#include "core/numbers.h"
#include "ingest/decode_block.h"
#include "ingest/source_table.h"

namespace vexa::ingest {
namespace {

constexpr std::string_view kModelCsvTag = "FCST";
constexpr std::string_view kModelColumns = "PRES, HGHT";

// The word behind "NAME =".
std::string_view ValueAfter(std::string_view line, std::string_view name) {
  const std::vector<std::string_view> words = Tokens(line);
  for (std::size_t i = 0; i + 2 < words.size(); ++i) {
    if (words[i] == name && words[i + 1] == "=") return words[i + 2];
  }
  return {};
}

// A block begins with its first label and holds one table; FirstRow is the line of its names.
std::vector<SoundingBlock> ModelBlocksOf(const SourceText& source) {
  std::vector<SoundingBlock> blocks;
  SourceHeading heading;
  for (int line = 1; line <= source.LineCount(); ++line) {
    const std::string_view text = Trim(source.Line(line));
    if (text.starts_with(kModelColumns)) {
      blocks.push_back({heading, line, source.LineCount() + 1});
    } else if (text.starts_with("TIME")) {
      heading.Time = ParseCompactTime(ValueAfter(text, "TIME")).value_or(ObservationTime{});
    } else if (text.starts_with("STID")) {
      heading.Station.Letters = ValueAfter(text, "STID");
      heading.Lat = ParseNumber(ValueAfter(text, "SLAT"));
      heading.Lon = ParseNumber(ValueAfter(text, "SLON"));
      heading.Elevation = ParseNumber(ValueAfter(text, "MALT"));
    }
  }
  return blocks;
}

}  // namespace

bool IsModelCsv(const SourceText& source) {
  constexpr int kMostHeadingLines = 20;
  bool isLabelled = false;
  for (int line = 1; line <= std::min(source.LineCount(), kMostHeadingLines); ++line) {
    const std::string_view text = Trim(source.Line(line));
    isLabelled = isLabelled || text.starts_with("MEM =") || text.starts_with("STID =");
    if (text.starts_with(kModelColumns)) return isLabelled;
  }
  return false;
}

std::vector<SourceEntry> ListModelCsv(const SourceText& source) {
  return Entries(ModelBlocksOf(source));
}

std::optional<Fault> DecodeModelCsv(const SourceText& source, LoadContext& context,
                                    SoundingRecord& into) {
  const auto read = [](const SourceText& text,
                       const SoundingBlock& block) -> Outcome<SourceSounding> {
    const std::optional<TableLayout> layout = LayoutAt(text, block.FirstRow);
    if (!layout) {
      return Fault{kFaultEndOfFile, "DecodeModelCsv",
                   AtLine(text, block.FirstRow, "no rows under these names")};
    }
    SourceSounding sounding{.Heading = block.Heading};
    if (auto fault = ReadTable(text, *layout, block.EndRow, "DecodeModelCsv", sounding)) {
      return *fault;
    }
    return sounding;
  };
  return DecodeBlock(source, context, into, ModelBlocksOf, read, kModelCsvTag);
}

}  // namespace vexa::ingest
