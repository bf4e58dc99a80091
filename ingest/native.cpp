#include "ingest/native.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "core/data_checks.h"
#include "core/raw_file.h"
#include "ingest/source_header.h"

namespace vexa::ingest {
namespace {

constexpr int kFewestLevels = 2;  // that are left of a file with impossible ones

}  // namespace

bool IsNative(const SourceText& source) {
  return RecogniseRaw(source.Bytes()).has_value();
}

std::optional<Fault> DecodeNative(const SourceText& source, LoadContext& context,
                                  SoundingRecord& into) {
  const RawVariant variant = RecogniseRaw(source.Bytes()).value_or(RawVariant::Plain);
  std::vector<RefusedWind> refused;
  std::optional<Fault> fault = ReadRaw(source.Bytes(), source.Name(), variant, into, refused);
  for (const RefusedWind& wind : refused) {
    const Box box = WindHeightBox(wind);
    context.Notes.push_back(box.Text);
    if (context.Ask != nullptr) context.Ask->Ask(box);
  }
  if (!into.Time.Known()) into.Time = TimeInTitle(into.StationTitle);
  const int levels = into.NumTempLevels();
  std::vector<std::string> notes = KeepPossible(into);
  if (!fault && into.NumTempLevels() < std::min(levels, kFewestLevels)) {
    fault = Fault{kFaultTooFewLevels, "LoadRAW", source.Name() + ": " + notes.front()};
  }
  std::ranges::move(notes, std::back_inserter(context.Notes));
  return fault;
}

}  // namespace vexa::ingest
