#include "core/gzip.h"

#include <zlib.h>

#include <algorithm>
#include <limits>
#include <memory>

namespace vexa {
namespace {

constexpr int kWithGzipHeader = MAX_WBITS + 16;

struct StreamEnd {
  void operator()(z_stream* stream) const {
    inflateEnd(stream);
    delete stream;
  }
};

// Gives the unpacked bytes to `take` in pieces, at most one beyond `most` of them. The library
// checks each stream's length and sum.
template <class Take>
GzipEnd Inflate(std::string_view bytes, std::size_t most, const Take& take) {
  std::string piece(std::size_t{1} << 16, '\0');
  std::size_t count = 0;
  while (bytes.starts_with(kGzipMark)) {
    const std::unique_ptr<z_stream, StreamEnd> stream(new z_stream{});
    if (inflateInit2(stream.get(), kWithGzipHeader) != Z_OK) return GzipEnd::Damaged;
    int state = Z_OK;
    while (state == Z_OK) {
      constexpr std::size_t kMostIn = std::numeric_limits<uInt>::max();
      const auto in = static_cast<uInt>(std::min(bytes.size(), kMostIn));
      // The library promises not to write to its input.
      stream->next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
      stream->avail_in = in;
      stream->next_out = reinterpret_cast<Bytef*>(piece.data());
      stream->avail_out = static_cast<uInt>(piece.size());
      state = inflate(stream.get(), Z_NO_FLUSH);
      bytes.remove_prefix(in - stream->avail_in);
      const std::size_t got = piece.size() - stream->avail_out;
      count += got;
      take(std::string_view(piece).substr(0, got));
      if (count > most) return GzipEnd::TooLarge;
    }
    if (state != Z_STREAM_END) return GzipEnd::Damaged;
  }
  return GzipEnd::Whole;
}

}  // namespace

Gunzipped Gunzip(std::string_view bytes, std::size_t most) {
  Gunzipped result;
  result.End =
      Inflate(bytes, most, [&](std::string_view piece) { result.Bytes += piece.size(); });
  if (result.End != GzipEnd::Whole) return result;
  result.Text.reserve(result.Bytes);
  Inflate(bytes, most, [&](std::string_view piece) { result.Text += piece; });
  return result;
}

}  // namespace vexa
