#include "app/run.h"
#include "core/platform.h"

int main(int argc, char** argv) {
  vexa::KeepFreedMemory();
  vexa::LetLargeWritesFail();
  return vexa::RunWindow(argc, argv);
}
