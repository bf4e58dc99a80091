#include "ingest/native.h"

#include "core/raw_file.h"
#include "ingest/source_header.h"

namespace vexa::ingest {

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
  return fault;
}

}  // namespace vexa::ingest
