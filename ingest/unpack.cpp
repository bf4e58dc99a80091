#include "ingest/unpack.h"

#include <zlib.h>

#include <algorithm>
#include <cstddef>
#include <optional>

namespace vexa::ingest {
namespace {

constexpr std::string_view kGzip = "\x1f\x8b";
constexpr std::string_view kZipEntry = "PK\x03\x04";
constexpr std::string_view kZipDirectory = "PK\x01\x02";
constexpr std::string_view kZipEnd = "PK\x05\x06";
constexpr std::size_t kMostBytes = std::size_t{512} << 20;
constexpr int kRawDeflate = -MAX_WBITS, kWithGzipHeader = MAX_WBITS + 16;

Fault Damaged(std::string_view reason) {
  return Fault{kFaultEndOfFile, "Unpack", "the archive " + std::string(reason)};
}

// One stream at the front of the bytes, which lose it.
Outcome<std::string> Inflate(std::string_view& bytes, int windowBits) {
  if (bytes.size() > kMostBytes) return Damaged("is too large");
  z_stream stream{};
  if (inflateInit2(&stream, windowBits) != Z_OK) return Damaged("cannot be unpacked");
  // The library promises not to write to its input.
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  std::string unpacked;
  std::string piece(std::size_t{1} << 16, '\0');
  int state = Z_OK;
  while (state == Z_OK && unpacked.size() <= kMostBytes) {
    stream.next_out = reinterpret_cast<Bytef*>(piece.data());
    stream.avail_out = static_cast<uInt>(piece.size());
    state = inflate(&stream, Z_NO_FLUSH);
    unpacked.append(piece, 0, piece.size() - stream.avail_out);
  }
  bytes.remove_prefix(bytes.size() - stream.avail_in);
  inflateEnd(&stream);
  if (unpacked.size() > kMostBytes) return Damaged("holds more than 512 MB");
  if (state != Z_STREAM_END) return Damaged("is damaged or cut off");
  return unpacked;
}

Outcome<std::vector<PackedFile>> UnpackGzip(std::string_view bytes) {
  PackedFile file;
  // Streams may follow each other; what else follows is padding.
  while (bytes.starts_with(kGzip)) {
    Outcome<std::string> part = Inflate(bytes, kWithGzipHeader);
    if (!part) return part.Error();
    file.Bytes += part.Value();
    if (file.Bytes.size() > kMostBytes) return Damaged("holds more than 512 MB");
  }
  return std::vector<PackedFile>{std::move(file)};
}

// Little-endian figures of a ZIP header; 0 behind the end.
std::size_t Figure(std::string_view bytes, std::size_t at, std::size_t count) {
  std::size_t value = 0;
  if (at > bytes.size() || count > bytes.size() - at) return 0;
  for (std::size_t i = count; i > 0; --i) {
    value = value << 8 | static_cast<unsigned char>(bytes[at + i - 1]);
  }
  return value;
}

std::string_view Part(std::string_view bytes, std::size_t at, std::size_t count) {
  return at <= bytes.size() && count <= bytes.size() - at ? bytes.substr(at, count)
                                                          : std::string_view();
}

// The file of one directory entry.
Outcome<PackedFile> UnpackEntry(std::string_view bytes, std::string_view entry) {
  const std::size_t method = Figure(entry, 10, 2), check = Figure(entry, 16, 4);
  const std::size_t packed = Figure(entry, 20, 4), local = Figure(entry, 42, 4);
  PackedFile file{.Name = std::string(Part(entry, 46, Figure(entry, 28, 2)))};
  if (Part(bytes, local, kZipEntry.size()) != kZipEntry) return Damaged("is damaged");
  constexpr std::size_t kLocalHeader = 30;
  const std::size_t begin =
      local + kLocalHeader + Figure(bytes, local + 26, 2) + Figure(bytes, local + 28, 2);
  std::string_view data = Part(bytes, begin, packed);
  if (data.size() != packed) return Damaged("is cut off");
  constexpr std::size_t kStored = 0, kDeflated = 8;
  if (method == kStored) {
    file.Bytes = data;
  } else if (method == kDeflated) {
    Outcome<std::string> unpacked = Inflate(data, kRawDeflate);
    if (!unpacked) return unpacked.Error();
    file.Bytes = std::move(unpacked.Value());
  } else {
    return Damaged("has a packing that is not known");
  }
  const auto* start = reinterpret_cast<const Bytef*>(file.Bytes.data());
  if (crc32(0, start, static_cast<uInt>(file.Bytes.size())) != check) {
    return Damaged("has a wrong check sum");
  }
  return file;
}

Outcome<std::vector<PackedFile>> UnpackZip(std::string_view bytes) {
  const std::size_t end = bytes.rfind(kZipEnd);
  constexpr std::size_t kEndRecord = 22;
  if (end == std::string_view::npos || bytes.size() - end < kEndRecord) {
    return Damaged("is cut off");
  }
  std::vector<PackedFile> files;
  const std::size_t count = Figure(bytes, end + 10, 2);
  std::size_t at = Figure(bytes, end + 16, 4), total = 0;
  for (std::size_t i = 0; i < count; ++i) {
    constexpr std::size_t kHeader = 46;
    if (Part(bytes, at, kZipDirectory.size()) != kZipDirectory) return Damaged("is damaged");
    const std::string_view entry = bytes.substr(at);
    Outcome<PackedFile> file = UnpackEntry(bytes, entry);
    if (!file) return file.Error();
    total += file.Value().Bytes.size();
    if (total > kMostBytes) return Damaged("holds more than 512 MB");
    if (!file.Value().Name.ends_with('/')) files.push_back(std::move(file.Value()));
    at += kHeader + Figure(entry, 28, 2) + Figure(entry, 30, 2) + Figure(entry, 32, 2);
  }
  return files;
}

}  // namespace

bool IsPacked(std::string_view bytes) {
  return bytes.starts_with(kGzip) || bytes.starts_with(kZipEntry);
}

Outcome<std::vector<PackedFile>> Unpack(std::string_view bytes) {
  if (bytes.starts_with(kGzip)) return UnpackGzip(bytes);
  if (bytes.starts_with(kZipEntry)) return UnpackZip(bytes);
  return Damaged("is of no known kind");
}

}  // namespace vexa::ingest
