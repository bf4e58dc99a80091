#include "download/http_answer.h"

#include <charconv>

#include "core/gzip.h"
#include "core/letter_case.h"
#include "core/numbers.h"

namespace vexa::download {
namespace {

constexpr std::size_t kLongestHead = std::size_t{1} << 16;
constexpr int kFirstFinal = 200, kNoContent = 204, kNotModified = 304;

std::optional<std::size_t> WholeNumber(std::string_view text, int base) {
  std::size_t value = 0;
  const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (failed != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

}  // namespace

std::string_view HttpAnswer::Field(std::string_view name) const {
  const std::string wanted = Lower(name);
  for (const auto& [key, value] : fields_) {
    if (key == wanted) return value;
  }
  return {};
}

HttpAnswer::State HttpAnswer::Take(std::string_view bytes) {
  waiting_ += bytes;
  while (state_ == State::ComingIn && Step()) {
  }
  waiting_.erase(0, std::exchange(at_, 0));
  return state_;
}

HttpAnswer::State HttpAnswer::Close() {
  if (state_ != State::ComingIn) return state_;
  if (part_ == Part::ToTheEnd) {
    Finish();
  } else {
    End(State::Cut);
  }
  return state_;
}

// False when it takes more bytes to go on.
bool HttpAnswer::Step() {
  switch (part_) {
    case Part::Head:
      return TakeHead();
    case Part::Counted:
    case Part::Chunk:
    case Part::ToTheEnd:
      return TakeBytes();
    case Part::ChunkSize:
      return TakeChunkSize();
    case Part::ChunkEnd: {
      const std::optional<std::string_view> line = TakeLine();
      if (!line) return false;
      if (!line->empty()) return End(State::Damaged);
      part_ = Part::ChunkSize;
      return true;
    }
    case Part::Trailer: {
      const std::optional<std::string_view> line = TakeLine();
      return line && (!line->empty() || Finish());
    }
  }
  return false;
}

std::optional<std::string_view> HttpAnswer::TakeLine() {
  const std::size_t end = waiting_.find('\n', at_);
  if (end == std::string::npos) {
    if (waiting_.size() - at_ > kLongestHead) End(State::Damaged);
    return std::nullopt;
  }
  std::string_view line = std::string_view(waiting_).substr(at_, end - at_);
  if (line.ends_with('\r')) line.remove_suffix(1);
  at_ = end + 1;
  return line;
}

bool HttpAnswer::TakeHead() {
  for (;;) {
    const std::optional<std::string_view> line = TakeLine();
    if (!line) return false;
    headBytes_ += line->size() + 1;
    if (headBytes_ > kLongestHead) return End(State::Damaged);
    if (status_ == 0) {
      // "HTTP/1.1 200 OK"
      const std::size_t blank = line->find(' ');
      const auto status = blank == std::string_view::npos
                              ? std::nullopt
                              : ParseWhole(line->substr(blank + 1).substr(0, 3));
      if (!line->starts_with("HTTP/1.") || !status) return End(State::Damaged);
      status_ = *status;
    } else if (line->empty()) {
      break;
    } else if (const std::size_t colon = line->find(':'); colon != std::string_view::npos) {
      fields_.emplace_back(Lower(line->substr(0, colon)), Trim(line->substr(colon + 1)));
    }
  }
  if (status_ < kFirstFinal) {  // "100 Continue": the answer proper follows
    status_ = 0;
    fields_.clear();
    return true;
  }
  BeginBody();
  return true;
}

void HttpAnswer::BeginBody() {
  const std::string transfer = Lower(Field("Transfer-Encoding"));
  if (status_ == kNoContent || status_ == kNotModified) {
    Finish();
  } else if (transfer == "chunked") {
    part_ = Part::ChunkSize;
  } else if (!transfer.empty()) {
    End(State::Damaged);
  } else if (const std::string_view told = Field("Content-Length"); !told.empty()) {
    length_ = WholeNumber(told, 10);
    if (!length_) return static_cast<void>(End(State::Damaged));
    if (*length_ > most_) return static_cast<void>(End(State::TooLarge));
    part_ = Part::Counted;
    left_ = *length_;
    if (left_ == 0) Finish();
  } else {
    part_ = Part::ToTheEnd;
  }
}

bool HttpAnswer::TakeBytes() {
  std::string_view bytes = std::string_view(waiting_).substr(at_);
  if (part_ != Part::ToTheEnd) bytes = bytes.substr(0, left_);
  if (bytes.empty()) return false;
  if (body_.size() + bytes.size() > most_) return End(State::TooLarge);
  body_ += bytes;
  at_ += bytes.size();
  if (part_ == Part::ToTheEnd) return false;
  left_ -= bytes.size();
  if (left_ > 0) return false;
  if (part_ == Part::Counted) return Finish();
  part_ = Part::ChunkEnd;
  return true;
}

bool HttpAnswer::TakeChunkSize() {
  const std::optional<std::string_view> line = TakeLine();
  if (!line) return false;
  const std::optional<std::size_t> size = WholeNumber(Trim(line->substr(0, line->find(';'))), 16);
  if (!size) return End(State::Damaged);
  if (*size > most_) return End(State::TooLarge);
  left_ = *size;
  part_ = *size == 0 ? Part::Trailer : Part::Chunk;
  return true;
}

bool HttpAnswer::End(State state) {
  state_ = state;
  return false;
}

bool HttpAnswer::Finish() {
  const std::string coding = Lower(Field("Content-Encoding"));
  if (coding.empty() || coding == "identity" || body_.empty()) return End(State::Whole);
  if (coding != "gzip" && coding != "x-gzip") return End(State::Damaged);
  if (!std::string_view(body_).starts_with(kGzipMark)) return End(State::Damaged);
  Gunzipped unpacked = Gunzip(body_, most_);
  if (unpacked.End != GzipEnd::Whole) {
    return End(unpacked.End == GzipEnd::TooLarge ? State::TooLarge : State::Cut);
  }
  body_ = std::move(unpacked.Text);
  return End(State::Whole);
}

}  // namespace vexa::download
