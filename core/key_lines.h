// Small files of "key = value" lines that users may edit. A value is changed in its place, so that
// remarks and lines that this program does not know stay as they are.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vexa {

class KeyLines {
 public:
  struct Entry {
    int Line = 0;             // from 1
    std::string Key{};        // empty for a line without "="
    std::string Value{};
    std::string Whole{};      // the line without blanks around it
  };

  explicit KeyLines(std::string_view text = {});

  /// Every line but blank ones and remarks, which begin with "#".
  std::vector<Entry> Entries() const;
  /// Sets the value of a key, of the last line that has it, else on a line at the end. Line ends
  /// inside the value become blanks.
  void Set(std::string_view key, std::string_view value);

  /// Lines end as those of the text before did, in LF without any.
  std::string Text() const;

 private:
  std::vector<std::string> lines_{};
  std::string lineEnd_ = "\n";
};

}  // namespace vexa
