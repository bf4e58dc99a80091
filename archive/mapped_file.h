// A file's bytes as they lie on the disk, mapped into memory where the system can, so that several
// searches share them and nothing is copied; elsewhere read whole.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace vexa::archive {

class MappedFile {
 public:
  /// Without bytes where the file cannot be read.
  explicit MappedFile(const std::filesystem::path& path);
  MappedFile(MappedFile&& other) noexcept;
  MappedFile& operator=(MappedFile&&) = delete;
  ~MappedFile();
  std::string_view Bytes() const { return bytes_; }

 private:
  std::string_view bytes_{};
  std::string read_{};
  bool isMapped_ = false;
};

}  // namespace vexa::archive
