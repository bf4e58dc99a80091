#include "app/run.h"

int main(int argc, char** argv) {
  return vexa::RunWindow(argc, argv);
}
