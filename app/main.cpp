#include "app/run.h"
#include "core/platform.h"

int main(int argc, char** argv) {
  vexa::KeepFreedMemory(1);  // but no pixels of windows that have gone
  vexa::LetLargeWritesFail();
  vexa::PrintBytesAsTheyAre();
  vexa::EndInWords("vexa");
  return vexa::RunWindow(argc, argv);
}
