// How a file of several soundings is decoded once its blocks are known.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "ingest/decoder.h"
#include "ingest/source_sounding.h"

namespace vexa::ingest {

/// Reads the block that the context chooses and fills the record from it.
///
/// find  the blocks of the whole file
/// read  the sounding of one block, an Outcome<SourceSounding>
/// tag   of the format
template <class Block, class Read>
std::optional<Fault> DecodeBlock(const SourceText& source, LoadContext& context,
                                 SoundingRecord& into,
                                 std::vector<Block> (*find)(const SourceText&), Read&& read,
                                 std::string_view tag) {
  const std::vector<Block>& blocks = Kept(context, source, find);
  const Outcome<std::size_t> index = ChooseSounding(blocks.size(), source, context);
  if (!index) return index.Error();
  Outcome<SourceSounding> sounding = read(source, blocks[index.Value()]);
  if (!sounding) return sounding.Error();
  FillRecord(std::move(sounding.Value()), source.Name(), context, into);
  into.DataFormat = tag;
  return std::nullopt;
}

}  // namespace vexa::ingest
