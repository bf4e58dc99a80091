#include "cli/toolkit.h"

namespace vexa::cli {

std::unique_ptr<Toolkit> MakeToolkit() {
  return nullptr;
}

}  // namespace vexa::cli
