// The little of the toolkit that painting needs, without a display.
#pragma once

#include <memory>

class QGuiApplication;

namespace vexa::cli {

/// Holds the application object that fonts and image formats need while pictures are made. Where
/// there is one already it is used.
class QtSession {
 public:
  QtSession();
  ~QtSession();
  QtSession(const QtSession&) = delete;
  QtSession& operator=(const QtSession&) = delete;

 private:
  // The toolkit keeps references to these.
  int wordCount_ = 1;
  char programName_[9] = "vexa-cli";
  char* programWords_[2] = {programName_, nullptr};
  std::unique_ptr<QGuiApplication> application_;
};

}  // namespace vexa::cli
