// Addresses fetched over HTTP and HTTPS by the toolkit's sockets. A call returns when the answer is
// whole or all attempts have failed; in between the window system runs.
#pragma once

#include <chrono>
#include <string>
#include <utility>

#include "download/net/network.h"

class QUrl;

namespace vexa::download {

class HttpFetcher : public Fetcher {
 public:
  explicit HttpFetcher(const HttpSettings& settings = {}, TellProgress progress = {})
      : settings_(settings), progress_(std::move(progress)) {}

  /// Needs an application object. The system's proxy is used. Redirects never lead from HTTPS to
  /// HTTP; certificates are checked. Repeated is what may go better next time: no connection, time
  /// over, an answer cut off, the status 429 and those from 500 on. A 404 is an answer.
  FetchResult Fetch(const std::string& address) override;

 private:
  FetchResult Attempt(const std::string& address, int number, bool& mayRepeat);
  FetchResult Exchange(const QUrl& url, FetchProgress step,
                       std::chrono::steady_clock::time_point end, bool& mayRepeat,
                       std::string& movedTo);
  bool Wait(std::chrono::milliseconds time, const FetchProgress& step);

  HttpSettings settings_;
  TellProgress progress_;
};

}  // namespace vexa::download
