// One folder that lets a colleague repeat the case: source, native file, settings, analysis,
// pictures, listings and the versions that made them.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "core/fault.h"
#include "picture/picture.h"
#include "program/program.h"

namespace vexa::report {

/// Who writes a folder, and what its images are made with.
struct ReportWriter {
  std::string_view Program;  // for versions.json, as the next
  std::string Toolkit{};
  std::function<Outcome<std::string>(const Picture& picture, const std::string& extension,
                                     int widthPx, int heightPx)>
      EncodePicture{};
};

/// The sounding as a native file.
inline constexpr std::string_view kNativeName = "sounding.RAW";

/// Writes the folder of the sounding in work, which is made where it is missing; files of these
/// names are replaced. Faults as of making the folder, of reading its file, of SaveFile and of the
/// pictures.
[[nodiscard]] std::optional<Fault> WriteReport(const Program& program,
                                               const std::filesystem::path& folder,
                                               const ReportWriter& writer);

}  // namespace vexa::report
