#include "archive/mapped_file.h"

#include <fstream>
#include <iterator>
#include <utility>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace vexa::archive {

#ifndef _WIN32

MappedFile::MappedFile(const std::filesystem::path& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return;
  struct stat about {};
  if (fstat(file, &about) == 0 && S_ISREG(about.st_mode) && about.st_size > 0) {
    const auto size = static_cast<std::size_t>(about.st_size);
    void* const at = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    if (at != MAP_FAILED) {
      bytes_ = {static_cast<const char*>(at), size};
      isMapped_ = true;
    }
  }
  close(file);
}

MappedFile::~MappedFile() {
  if (isMapped_) munmap(const_cast<char*>(bytes_.data()), bytes_.size());
}

MappedFile::MappedFile(MappedFile&& other) noexcept
    : bytes_(std::exchange(other.bytes_, {})), isMapped_(std::exchange(other.isMapped_, false)) {}

#else

MappedFile::MappedFile(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  read_.assign(std::istreambuf_iterator<char>(stream), {});
  bytes_ = read_;
}

MappedFile::~MappedFile() = default;

MappedFile::MappedFile(MappedFile&& other) noexcept : read_(std::move(other.read_)) {
  bytes_ = read_;
}

#endif

}  // namespace vexa::archive
