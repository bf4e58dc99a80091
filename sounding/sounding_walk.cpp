#include "sounding/sounding_walk.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "core/files.h"
#include "core/no_such_sounding.h"
#include "core/numbers.h"
#include "ingest/decoder.h"
#include "sounding/sounding_reader.h"

namespace vexa {

SoundingWalk::SoundingWalk(std::filesystem::path file, std::size_t piece)
    : file_(std::move(file)), piece_(piece) {}

std::optional<Fault> SoundingWalk::Begin() {
  source_.reset();
  notes_.clear();
  told_ = 0;
  first_ = count_ = 0;
  Outcome<ingest::SourceStream> stream = ingest::SourceStream::Open(file_, piece_);
  if (!stream) return stream.Error();
  stream_.emplace(std::move(stream.Value()));
  return std::nullopt;
}

// To the next text. One that is the whole file is counted when it is decoded.
Outcome<SoundingWalk::Reached> SoundingWalk::Advance() {
  const bool isFirst = !source_;
  first_ += count_;
  count_ = 0;
  Outcome<std::optional<SourceText>> text = stream_->Next();
  std::ranges::move(stream_->TakeNotes(), std::back_inserter(notes_));
  if (!text) return text.Error();
  if (!text.Value()) return Reached::BehindLast;
  const bool isWhole = isFirst && stream_->IsAtEnd();
  source_.emplace(*std::move(text.Value()));
  if (isWhole) return Reached::Here;
  count_ = stream_->Count();
  if (count_ == 0) {
    count_ = std::max(1, static_cast<int>(ingest::ListSoundings(source_->Text()).size()));
  }
  return Reached::Here;
}

Outcome<SoundingWalk::Reached> SoundingWalk::Reach(int index) {
  Outcome<Reached> reached = Reached::Here;
  std::optional<Fault> fault = Guarded("SoundingWalk", [&]() -> std::optional<Fault> {
    if (!stream_ || index < first_) {
      if (std::optional<Fault> refused = Begin()) return refused;
    }
    while (reached && reached.Value() == Reached::Here &&
           (!source_ || (count_ > 0 && index >= first_ + count_))) {
      reached = source_ && stream_->IsAtEnd() ? Reached::BehindLast : Advance();
    }
    return reached ? std::nullopt : std::optional(reached.Error());
  });
  if (!fault) return reached;
  stream_.reset();
  return *std::move(fault);
}

Fault SoundingWalk::TooFew(int index) const {
  Fault fault =
      NoSuchSounding("SoundingWalk", TextFromPath(file_.filename()), first_ + count_, index);
  fault.File = TextFromPath(file_);
  return fault;
}

Loading SoundingWalk::LoadHere(int index, const LoadPolicy& policy, std::size_t firstNote) {
  Loading loading = source_->Load(index - first_, policy);
  if (count_ == 0) count_ = loading.Count;
  loading.Count = first_ + count_;
  loading.HasMore = !stream_->IsAtEnd();
  if (loading.Sounding) loading.Sounding->From.Index = index;
  std::vector<std::string>& notes = loading.Sounding ? loading.Sounding->Notes : loading.Notes;
  notes.insert(notes.begin(), notes_.begin() + static_cast<std::ptrdiff_t>(firstNote),
               notes_.end());
  return loading;
}

Loading SoundingWalk::Load(int index, const LoadPolicy& policy) {
  next_ = index + 1;
  isOver_ = false;
  const Outcome<Reached> reached = Reach(index);
  if (!reached) return {.Failed = reached.Error()};
  if (reached.Value() == Reached::BehindLast) return {.Failed = TooFew(index)};
  return LoadHere(index, policy, 0);
}

std::optional<Loading> SoundingWalk::Next(const LoadPolicy& policy) {
  if (isOver_) return std::nullopt;
  const int index = next_++;
  const Outcome<Reached> reached = Reach(index);
  isOver_ = !reached || reached.Value() == Reached::BehindLast;
  if (!reached) return Loading{.Failed = reached.Error()};
  if (isOver_) return std::nullopt;
  return LoadHere(index, policy, std::exchange(told_, notes_.size()));
}

Outcome<SoundingWalk::Place> SoundingWalk::Take(int index) && {
  const Outcome<Reached> reached = Reach(index);
  if (!reached) return reached.Error();
  if (reached.Value() == Reached::BehindLast) return TooFew(index);
  return Place{std::move(*source_), std::move(notes_), first_};
}

Outcome<std::vector<ingest::SourceEntry>> ListOf(const std::filesystem::path& file,
                                                 std::size_t piece) {
  if (NamedSounding(file)) {
    const Outcome<SoundingSource> named = SoundingSource::Open(file);
    if (!named) return named.Error();
    return named.Value().List();
  }
  std::vector<ingest::SourceEntry> entries;
  const std::optional<Fault> fault = Guarded("ListOf", [&]() -> std::optional<Fault> {
    Outcome<ingest::SourceStream> stream = ingest::SourceStream::Open(file, piece);
    if (!stream) return stream.Error();
    for (;;) {
      const Outcome<std::optional<SourceText>> text = stream.Value().Next();
      if (!text) return text.Error();
      if (!text.Value()) return std::nullopt;
      std::ranges::move(ingest::ListSoundings(*text.Value()), std::back_inserter(entries));
    }
  });
  if (fault) return *fault;
  return entries;
}

}  // namespace vexa
