// Answers kept on the disk. An answer belongs to the whole address with its station, date and hour
// filled in, and the file repeats that address, so that another hour is never served in its place.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

#include "core/fault.h"
#include "download/sources.h"

namespace vexa::download {

/// UTC to the second; given by the caller, nothing below looks at a clock.
using Instant = std::chrono::sys_seconds;

/// How long the answer to a request may be kept. Not at all where its address names no full time:
/// what such an address gives changes. A day after its hour a sounding is complete and stays for
/// good; before, more of it may come in, and a quarter of an hour is all.
std::optional<std::chrono::seconds> KeepingTime(const Source& source, const Request& request,
                                                Instant now);

class Cache {
 public:
  explicit Cache(std::filesystem::path folder) : folder_(std::move(folder)) {}

  /// The answer to an address; empty when there is none, when it is too old or its file is damaged.
  std::optional<std::string> Find(const std::string& address, Instant now) const;
  /// Keeps an answer until an instant. Faults as of SaveFile.
  [[nodiscard]] std::optional<Fault> Store(const std::string& address, const std::string& bytes,
                                           Instant until) const;
  /// Removes what is too old.
  void Sweep(Instant now) const;

 private:
  std::filesystem::path PathOf(const std::string& address) const;

  std::filesystem::path folder_;
};

}  // namespace vexa::download
