// Addresses fetched over HTTP and HTTPS by the toolkit's sockets. A call returns when the answer is
// whole or all attempts have failed; in between the window system runs.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <utility>

#include "download/fetcher.h"

class QUrl;

namespace vexa::download {

struct HttpSettings {
  std::chrono::milliseconds Silence{20000};   // without a byte: the attempt ends
  std::chrono::milliseconds Longest{120000};  // of an attempt as a whole
  std::chrono::milliseconds Pause{1000};      // before the second attempt, doubled before each next
  int Attempts = 3;
  int Redirects = 5;
  long long MostBytes = 64LL << 20;
};

struct FetchProgress {
  std::string Address{};
  int Attempt = 1;
  long long Received = 0;
  long long Total = -1;  // -1: the server does not say
};

class HttpFetcher : public Fetcher {
 public:
  /// progress  told of every step; false cancels. May be empty.
  explicit HttpFetcher(HttpSettings settings = {},
                       std::function<bool(const FetchProgress&)> progress = {})
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
  std::function<bool(const FetchProgress&)> progress_;
};

}  // namespace vexa::download
