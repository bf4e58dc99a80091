// JSON texts of services, read by the library with one liberty: NaN counts as null, because
// services write it. A text goes by piece by piece: thousands of levels are not kept twice.
#pragma once

#include <optional>
#include <string>

#include "core/fault.h"
#include "core/source_text.h"

namespace vexa::ingest {

/// Is told what a text holds, in its order.
class JsonEvents {
 public:
  virtual ~JsonEvents() = default;

  enum class Inside { Object, Array };
  virtual void Begin(Inside what) = 0;
  virtual void End() = 0;
  /// Of the member of an object that follows; one name may come more than once.
  virtual void Name(std::string& name) = 0;
  virtual void Number(double value) = 0;
  virtual void Text(std::string& value) = 0;
  virtual void Other() = 0;  // null, true or false
};

/// Reads a whole text. Fault 62 names the line and what is wrong with it; what was told before it
/// is void.
std::optional<Fault> ReadJson(const SourceText& source, JsonEvents& into);

}  // namespace vexa::ingest
