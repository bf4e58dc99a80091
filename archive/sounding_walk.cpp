#include "archive/sounding_walk.h"

#include <algorithm>
#include <utility>

#include "core/files.h"
#include "ingest/decoder.h"

namespace vexa::archive {

SoundingWalk::SoundingWalk(std::filesystem::path file, std::size_t piece)
    : file_(std::move(file)), piece_(piece) {}

std::optional<Fault> SoundingWalk::Begin() {
  source_.reset();
  texts_.clear();
  nextText_ = 0;
  first_ = count_ = 0;
  Outcome<ingest::SourceStream> stream = ingest::SourceStream::Open(file_, piece_);
  if (!stream) return stream.Error();
  stream_.emplace(std::move(stream.Value()));
  return std::nullopt;
}

std::optional<Fault> SoundingWalk::Advance() {
  while (nextText_ == texts_.size()) {
    Outcome<std::optional<SourceText>> piece = stream_->Next();
    if (!piece) return piece.Error();
    if (!piece.Value()) {
      const std::string count = std::to_string(first_ + count_);
      return Fault{kFaultEndOfFile, "SoundingWalk", "the file has " + count + " soundings now",
                   TextFromPath(file_)};
    }
    texts_ = piece.Value()->Members();
    if (texts_.empty()) texts_.push_back(*std::move(piece.Value()));
    nextText_ = 0;
  }
  SourceText& text = texts_[nextText_++];
  first_ += count_;
  count_ = std::max(1, static_cast<int>(ingest::ListSoundings(text).size()));
  source_.emplace(std::move(text));
  return std::nullopt;
}

Loading SoundingWalk::Load(int index, const LoadPolicy& policy) {
  std::optional<Fault> fault;
  if (!stream_ || index < first_) fault = Begin();
  while (!fault && (!source_ || index >= first_ + count_)) fault = Advance();
  if (fault) {
    stream_.reset();
    return {.Failed = std::move(fault)};
  }
  return source_->Load(index - first_, policy);
}

}  // namespace vexa::archive
