#include "ingest/unpack.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

#include "core/gzip.h"
#include "core/numbers.h"
#include "core/platform.h"
#include "ingest/zip_library.h"

namespace vexa::ingest {
namespace {

constexpr std::string_view kZipEntry = "PK\x03\x04";

Fault Damaged(std::string_view reason) {
  return Fault{kFaultEndOfFile, "Unpack", "the archive " + std::string(reason)};
}

std::string TooMuch() {
  return "holds more than " + Shortest(static_cast<int>(UnpackRoom{}.Bytes >> 20)) + " MB";
}

Fault UsedUp(UnpackRoom& room, std::string_view reason) {
  room.IsUsedUp = true;
  return Damaged(reason);
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

Outcome<std::vector<PackedFile>> UnpackGzip(std::string_view bytes, UnpackRoom& room) {
  if (--room.Files < 0) return UsedUp(room, "holds too many files");
  Gunzipped unpacked = Gunzip(bytes, room.Bytes);
  if (unpacked.End == GzipEnd::TooLarge) return UsedUp(room, TooMuch());
  room.Bytes -= unpacked.Bytes;
  if (unpacked.End == GzipEnd::Damaged) return Damaged("is damaged or cut off");
  PackedFile file{.WrittenOn = DayOf(GzipTime(bytes))};
  file.Bytes = std::move(unpacked.Text);
  std::vector<PackedFile> files;
  files.push_back(std::move(file));
  return files;
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

// A file of as many bytes as the archive says.
Outcome<std::string> UnpackEntry(zip_t& archive, zip_uint64_t index, std::size_t size) {
  const ZipFile file(zip_fopen_index(&archive, index, 0));
  if (!file) return ZipFault(*zip_get_error(&archive));
  std::string unpacked;
  unpacked.reserve(size);
  std::string piece(std::size_t{1} << 16, '\0');
  for (;;) {
    const zip_int64_t count = zip_fread(file.get(), piece.data(), piece.size());
    if (count < 0) return ZipFault(*zip_file_get_error(file.get()));
    if (count == 0 && unpacked.size() == size) return unpacked;
    if (count == 0 || unpacked.size() + static_cast<std::size_t>(count) > size) {
      return Damaged("is damaged or cut off");
    }
    unpacked.append(piece, 0, static_cast<std::size_t>(count));
  }
}

Outcome<std::vector<PackedFile>> UnpackZip(std::string_view bytes, UnpackRoom& room) {
  if (!HasZip()) return NoLibrary("Unpack", "the archive needs libzip, which this system lacks");
  zip_error_t error;
  zip_error_init(&error);
  ZipSource source(zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error));
  if (!source) return ZipFault(error);
  const Zip archive(zip_open_from_source(source.get(), ZIP_RDONLY | ZIP_CHECKCONS, &error));
  if (!archive) return ZipFault(error);
  static_cast<void>(source.release());  // belongs to the archive now
  std::vector<PackedFile> files;
  const zip_int64_t entries = zip_get_num_entries(archive.get(), 0);
  if (entries > room.Files) return UsedUp(room, "holds too many files");
  room.Files -= static_cast<int>(entries);
  for (zip_int64_t i = 0; i < entries; ++i) {
    const auto index = static_cast<zip_uint64_t>(i);
    zip_stat_t about;
    if (zip_stat_index(archive.get(), index, 0, &about) != 0) {
      return ZipFault(*zip_get_error(archive.get()));
    }
    constexpr zip_uint64_t kNeeded = ZIP_STAT_NAME | ZIP_STAT_SIZE;
    if ((about.valid & kNeeded) != kNeeded) return Damaged("is damaged or cut off");
    PackedFile file{.Name = about.name};
    if (file.Name.ends_with('/')) continue;  // a folder
    // An archive holds the packer's date without a zone. The library takes it for one of here; the
    // day is what stood there again.
    if ((about.valid & ZIP_STAT_MTIME) != 0) file.WrittenOn = LocalDay(about.mtime);
    if (about.size > room.Bytes) {
      file.Trouble = Damaged(TooMuch()).Detail;
      files.push_back(std::move(file));
      continue;
    }
    room.Bytes -= static_cast<std::size_t>(about.size);
    Outcome<std::string> unpacked =
        UnpackEntry(*archive, index, static_cast<std::size_t>(about.size));
    if (unpacked) {
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
  return bytes.starts_with(kGzipMark) || bytes.starts_with(kZipEntry);
}

Outcome<std::vector<PackedFile>> Unpack(std::string_view bytes, UnpackRoom& room) {
  if (bytes.starts_with(kGzipMark)) return UnpackGzip(bytes, room);
  if (bytes.starts_with(kZipEntry)) return UnpackZip(bytes, room);
  return Damaged("is of no known kind");
}

}  // namespace vexa::ingest
