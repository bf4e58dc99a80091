// The window program from its arguments to its exit code.
#pragma once

namespace vexa {

int RunWindow(int argc, char** argv);

}  // namespace vexa
