// Expected failures as values: a Fault says what went wrong and where, an Outcome holds either a
// result or the fault that took its place. The message a user reads is made by ErrorReport.
#pragma once

#include <cassert>
#include <exception>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace vexa {

struct Fault {
  int Number = 0;
  std::string Procedure{};  // the routine in which it arose
  std::string Detail{};     // file name, line and reason: whatever varies
  std::string File{};       // name of the file concerned; empty: the file in work
  bool operator==(const Fault&) const = default;
};

// Fault numbers of the error reporter.
inline constexpr int kFaultNoMemory = 7;
inline constexpr int kFaultBadData = 9;
inline constexpr int kFaultBadFileName = 52;
inline constexpr int kFaultFileNotFound = 53;
inline constexpr int kFaultDeviceError = 57;
inline constexpr int kFaultFileExists = 58;
inline constexpr int kFaultDiskFull = 61;
inline constexpr int kFaultEndOfFile = 62;
inline constexpr int kFaultTooManyFiles = 67;
inline constexpr int kFaultDeviceUnavailable = 68;
inline constexpr int kFaultAccessRefused = 70;
inline constexpr int kFaultDiskNotReady = 71;
inline constexpr int kFaultPathAccess = 75;
inline constexpr int kFaultPathNotFound = 76;
inline constexpr int kFaultInvalidValue = 380;
inline constexpr int kFaultPicture = 481;
inline constexpr int kFaultPrinter = 482;
inline constexpr int kFaultFormat = 1209;
inline constexpr int kFaultNonStandard = 2000;
inline constexpr int kFaultTooFewLevels = 2222;
inline constexpr int kFaultFirstWindHeight = 2223;
inline constexpr int kFaultUnusable = 2224;
inline constexpr int kFaultBadUrl = 35752;

template <class T>
class [[nodiscard]] Outcome {
 public:
  Outcome(T value) : held_(std::move(value)) {}
  Outcome(Fault fault) : held_(std::move(fault)) {}

  bool Ok() const { return std::holds_alternative<T>(held_); }
  explicit operator bool() const { return Ok(); }
  T& Value() { return std::get<T>(held_); }
  const T& Value() const { return std::get<T>(held_); }
  const Fault& Error() const { return std::get<Fault>(held_); }

 private:
  std::variant<T, Fault> held_;
};

/// What a loader, check or ordering leaves behind.
enum class Status { Ok, Error, QcError, QcCancel, NoHeights, YesHeights };

/// "OK", "ERROR", "QC-ERROR", "QC-CANCEL", "noHT", "yesHT".
constexpr std::string_view Text(Status status) {
  switch (status) {
    case Status::Ok:
      return "OK";
    case Status::Error:
      return "ERROR";
    case Status::QcError:
      return "QC-ERROR";
    case Status::QcCancel:
      return "QC-CANCEL";
    case Status::NoHeights:
      return "noHT";
    case Status::YesHeights:
      return "yesHT";
  }
  return "";
}

/// Runs a body that may throw from the standard library and turns what it throws into a fault:
/// an index out of range is 9, memory that cannot be had 7, anything else 51.
template <class Body>
std::optional<Fault> Guarded(std::string_view procedure, Body&& body) {
  try {
    return std::forward<Body>(body)();
  } catch (const std::out_of_range& thrown) {
    return Fault{kFaultBadData, std::string(procedure), thrown.what()};
  } catch (const std::bad_alloc&) {
    return Fault{kFaultNoMemory, std::string(procedure), "out of memory"};
  } catch (const std::exception& thrown) {
    return Fault{51, std::string(procedure), thrown.what()};
  }
}

}  // namespace vexa
