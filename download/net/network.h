// The way over the net. What it needs of the toolkit and the system waits in a module of its own
// until it is first asked for: most runs fetch nothing, and loading it takes a tenth of a start.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "download/fetcher.h"

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

/// Told of every step; false cancels. May be empty.
using TellProgress = std::function<bool(const FetchProgress&)>;

/// An HttpFetcher; where its module is missing, a fetcher that says so of every address.
std::unique_ptr<Fetcher> OpenNetwork(const HttpSettings& settings = {},
                                     const TellProgress& progress = {});

/// A fetcher that says of every address why nothing can be fetched.
std::unique_ptr<Fetcher> NoNetwork(Fault why);

}  // namespace vexa::download
