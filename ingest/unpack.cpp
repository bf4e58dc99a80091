#include "ingest/unpack.h"

#include <zip.h>
#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace vexa::ingest {
namespace {

constexpr std::string_view kGzip = "\x1f\x8b";
constexpr std::string_view kZipEntry = "PK\x03\x04";
constexpr std::size_t kMostBytes = std::size_t{512} << 20;
constexpr int kWithGzipHeader = MAX_WBITS + 16;

Fault Damaged(std::string_view reason) {
  return Fault{kFaultEndOfFile, "Unpack", "the archive " + std::string(reason)};
}

// One gzip stream at the front of the bytes, which lose it.
Outcome<std::string> Inflate(std::string_view& bytes) {
  if (bytes.size() > kMostBytes) return Damaged("is too large");
  z_stream stream{};
  if (inflateInit2(&stream, kWithGzipHeader) != Z_OK) return Damaged("cannot be unpacked");
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

std::optional<std::chrono::sys_days> DayOf(std::int64_t seconds) {
  if (seconds <= 0) return std::nullopt;
  return std::chrono::floor<std::chrono::days>(
      std::chrono::sys_seconds(std::chrono::seconds(seconds)));
}

// Seconds since 1970 in the header, little-endian; 0 where the packer did not know.
std::int64_t GzipTime(std::string_view bytes) {
  constexpr std::size_t kAt = 4, kBytes = 4;
  std::int64_t seconds = 0;
  for (std::size_t i = kBytes; i > 0 && bytes.size() >= kAt + kBytes; --i) {
    seconds = seconds * 256 + static_cast<unsigned char>(bytes[kAt + i - 1]);
  }
  return seconds;
}

Outcome<std::vector<PackedFile>> UnpackGzip(std::string_view bytes) {
  PackedFile file{.WrittenOn = DayOf(GzipTime(bytes))};
  // Streams may follow each other; what else follows is padding.
  while (bytes.starts_with(kGzip)) {
    Outcome<std::string> part = Inflate(bytes);
    if (!part) return part.Error();
    file.Bytes += part.Value();
    if (file.Bytes.size() > kMostBytes) return Damaged("holds more than 512 MB");
  }
  return std::vector<PackedFile>{std::move(file)};
}

struct ZipEnd {
  void operator()(zip_source_t* source) const { zip_source_free(source); }
  void operator()(zip_t* archive) const { zip_discard(archive); }
  void operator()(zip_file_t* file) const { zip_fclose(file); }
};
using ZipSource = std::unique_ptr<zip_source_t, ZipEnd>;
using Zip = std::unique_ptr<zip_t, ZipEnd>;
using ZipFile = std::unique_ptr<zip_file_t, ZipEnd>;

// What the library finds wrong, in our words where users meet it.
Fault ZipFault(const zip_error_t& error) {
  switch (error.zip_err) {
    case ZIP_ER_CRC:
      return Damaged("has a wrong check sum");
    case ZIP_ER_NOZIP:
    case ZIP_ER_INCONS:
    case ZIP_ER_EOF:
    case ZIP_ER_SEEK:
    case ZIP_ER_ZLIB:
    case ZIP_ER_COMPRESSED_DATA:
      return Damaged("is damaged or cut off");
    case ZIP_ER_COMPNOTSUPP:
    case ZIP_ER_ENCRNOTSUPP:
      return Damaged("has a packing that is not known");
    case ZIP_ER_NOPASSWD:
    case ZIP_ER_WRONGPASSWD:
      return Damaged("is locked by a password");
    default: {
      zip_error_t copy = error;
      return Damaged(std::string("cannot be unpacked: ") + zip_error_strerror(&copy));
    }
  }
}

Outcome<std::string> UnpackEntry(zip_t& archive, zip_uint64_t index, std::size_t most) {
  const ZipFile file(zip_fopen_index(&archive, index, 0));
  if (!file) return ZipFault(*zip_get_error(&archive));
  std::string unpacked;
  std::string piece(std::size_t{1} << 16, '\0');
  for (;;) {
    const zip_int64_t count = zip_fread(file.get(), piece.data(), piece.size());
    if (count < 0) return ZipFault(*zip_file_get_error(file.get()));
    if (count == 0) return unpacked;
    unpacked.append(piece, 0, static_cast<std::size_t>(count));
    if (unpacked.size() > most) return Damaged("holds more than 512 MB");
  }
}

Outcome<std::vector<PackedFile>> UnpackZip(std::string_view bytes) {
  zip_error_t error;
  zip_error_init(&error);
  ZipSource source(zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error));
  if (!source) return ZipFault(error);
  const Zip archive(zip_open_from_source(source.get(), ZIP_RDONLY | ZIP_CHECKCONS, &error));
  if (!archive) return ZipFault(error);
  static_cast<void>(source.release());  // belongs to the archive now
  std::vector<PackedFile> files;
  std::size_t left = kMostBytes;
  for (zip_int64_t i = 0; i < zip_get_num_entries(archive.get(), 0); ++i) {
    const auto index = static_cast<zip_uint64_t>(i);
    zip_stat_t about;
    if (zip_stat_index(archive.get(), index, 0, &about) != 0) {
      return ZipFault(*zip_get_error(archive.get()));
    }
    if ((about.valid & ZIP_STAT_NAME) == 0) return Damaged("is damaged or cut off");
    PackedFile file{.Name = about.name};
    if (file.Name.ends_with('/')) continue;  // a folder
    if ((about.valid & ZIP_STAT_MTIME) != 0) file.WrittenOn = DayOf(about.mtime);
    Outcome<std::string> unpacked = UnpackEntry(*archive, index, left);
    if (unpacked) {
      left -= unpacked.Value().size();
      file.Bytes = std::move(unpacked.Value());
    } else {
      file.Trouble = unpacked.Error().Detail;
    }
    files.push_back(std::move(file));
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
