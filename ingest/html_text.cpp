#include "ingest/html_text.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "ingest/source_header.h"

namespace vexa::ingest {
namespace {

constexpr std::size_t kStart = 8192;

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

}  // namespace

bool IsHtml(const SourceText& source) {
  constexpr std::string_view kTags[] = {"<html", "<body", "<pre", "<!doctype", "<head"};
  const std::string_view start = std::string_view(source.Bytes()).substr(0, kStart);
  for (auto at = start.find('<'); at != start.npos; at = start.find('<', at + 1)) {
    const auto opens = [rest = start.substr(at)](auto tag) { return StartsWithNoCase(rest, tag); };
    if (std::ranges::any_of(kTags, opens)) return true;
  }
  return false;
}

SourceText WithoutTags(const SourceText& source) {
  struct Entity {
    std::string_view Code;
    char Text;
  };
  static constexpr Entity kEntities[] = {
      {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&nbsp;", ' '}, {"&quot;", '"'}};

  const std::string_view text = source.Bytes();
  const std::size_t lastClose = text.rfind('>');
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const char next = i + 1 < text.size() ? text[i + 1] : '\0';
    const bool opens = text[i] == '<' && (IsLetter(next) || next == '/' || next == '!') &&
                       lastClose != std::string_view::npos && i < lastClose;
    if (opens) {
      for (; text[i] != '>'; ++i) {
        if (text[i] == '\n') plain += '\n';
      }
      ++i;
      continue;
    }
    const auto* entity = std::ranges::find_if(
        kEntities, [&](const Entity& e) { return text.substr(i).starts_with(e.Code); });
    if (text[i] == '&' && entity != std::end(kEntities)) {
      plain += entity->Text;
      i += entity->Code.size();
      continue;
    }
    plain += text[i++];
  }
  return SourceText(source.Name(), std::move(plain));
}

}  // namespace vexa::ingest
