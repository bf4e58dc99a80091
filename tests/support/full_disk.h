// A disk that is full from its n-th write on.
#pragma once

#include <cstdio>
#include <string_view>
#include <system_error>

#include "core/files.h"

namespace vexa::test {

class FullDisk : public FileOps {
 public:
  explicit FullDisk(int fromWrite) : left_(fromWrite) {}
  std::error_code Write(std::FILE* file, std::string_view bytes) override {
    if (--left_ <= 0) return std::make_error_code(std::errc::no_space_on_device);
    return FileOps::Write(file, bytes);
  }

 private:
  int left_;
};

}  // namespace vexa::test
