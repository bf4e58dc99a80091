#include <cstdio>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "cli/console.h"
#include "cli/toolkit.h"
#include "core/platform.h"

int main(int argc, char** argv) {
  vexa::KeepFreedMemory();
  vexa::LetLargeWritesFail();
  vexa::PrintBytesAsTheyAre();
  vexa::EndInWords("vexa-cli");
  const auto to = [](std::FILE* stream) {
    return [stream](std::string_view text) { std::fwrite(text.data(), 1, text.size(), stream); };
  };
  const std::unique_ptr<vexa::cli::Toolkit> toolkit = vexa::cli::MakeToolkit();
  vexa::cli::Console console{to(stdout), to(stderr), toolkit.get()};
  const std::vector<std::string> words = vexa::ProgramWords(argc, argv);
  const int code = [&] {
    try {
      return vexa::cli::RunCommandLine(words, console);
    } catch (const std::bad_alloc&) {  // here, so that no unfinished file is left behind
      console.Err("vexa-cli: there is not enough memory\n");
      return vexa::cli::kExitInputFailed;
    }
  }();
  // What was written to a full disk is noticed at the latest here.
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return code;
  console.Err("vexa-cli: the standard output cannot be written\n");
  return code == 0 ? 1 : code;
}
