// JSON text in the order in which it is told, numbers in their shortest form, nothing that is not
// a number as a number.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vexa::report {

class JsonWriter {
 public:
  JsonWriter& BeginObject();
  JsonWriter& EndObject();
  JsonWriter& BeginArray();
  JsonWriter& EndArray();
  JsonWriter& Key(std::string_view name);
  JsonWriter& Text(std::string_view value);
  /// null for an absent value and for one that is not finite.
  JsonWriter& Number(std::optional<double> value);
  JsonWriter& Bool(bool value);
  JsonWriter& Null();
  /// An array on one line; null where an element is absent.
  JsonWriter& Numbers(const std::vector<std::optional<double>>& values);

  const std::string& Str() const { return text_; }

 private:
  void Element();
  void NewLine();

  std::string text_{};
  std::vector<bool> hasElements_{};
  bool afterKey_ = false;
};

/// A text in quotes with what JSON wants escaped. Bytes that are not UTF-8 become U+FFFD.
std::string JsonQuoted(std::string_view text);

}  // namespace vexa::report
