// The toolkit for commands, started when the first of them needs it, without a display.
#pragma once

#include <memory>
#include <optional>

#include "cli/toolkit.h"

class QCoreApplication;

namespace vexa::cli {

class QtToolkit : public Toolkit {
 public:
  QtToolkit();
  ~QtToolkit() override;

  /// Starts what fonts and image formats need; for those who paint by other ways than these.
  std::optional<Fault> Start();

  Outcome<std::string> EncodePicture(const Picture& picture, const std::string& extension,
                                     int widthPx, int heightPx) override;
  std::optional<Fault> SavePicture(const Picture& picture, const std::filesystem::path& path,
                                   int widthPx, int heightPx,
                                   const ImageSettings& settings) override;
  Outcome<std::string> PagesAsPdf(std::span<const Picture> pages) override;
  std::string JpegLibraryVersion() override;
  std::unique_ptr<download::Fetcher> MakeFetcher() override;

 private:
  // The application object keeps references to these.
  int wordCount_ = 1;
  char programName_[9] = "vexa-cli";
  char* programWords_[2] = {programName_, nullptr};
  std::unique_ptr<QCoreApplication> application_;
};

}  // namespace vexa::cli
