#include "download/answer.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "core/letter_case.h"
#include "core/numbers.h"

namespace vexa::download {
namespace {

constexpr std::size_t kMostWords = 160;  // bytes of the server's words that a message repeats

Fault Refused(std::string reason) {
  return Fault{kFaultEndOfFile, "Refusal", std::move(reason)};
}

// The words of a page without its tags, scripts left out, blanks run together.
std::string WordsOf(std::string_view page) {
  const std::string lower = Lower(page);
  std::string words;
  for (std::size_t i = 0; i < page.size() && words.size() < kMostWords;) {
    if (page[i] == '<') {
      std::size_t end = page.find('>', i);
      for (const std::string_view element : {"script", "style"}) {
        if (lower.compare(i + 1, element.size(), element) != 0) continue;
        end = lower.find("</" + std::string(element), i);
        if (end != std::string::npos) end = page.find('>', end);
      }
      if (end == std::string_view::npos) break;
      i = end + 1;
      if (!words.empty() && words.back() != ' ') words += ' ';
      continue;
    }
    const bool isBlank = static_cast<unsigned char>(page[i]) <= ' ';
    if (!isBlank) {
      words += page[i];
    } else if (!words.empty() && words.back() != ' ') {
      words += ' ';
    }
    ++i;
  }
  if (words.size() >= kMostWords) {
    const std::size_t end = words.rfind(' ');  // whole words, and a sign that there are more
    words.resize(end == std::string::npos ? words.size() : end);
    words += " ...";
  }
  return std::string(Trim(words));
}

bool IsPage(const std::string& lowerBody) {
  constexpr std::size_t kOpening = 1024;
  const std::string_view opening = std::string_view(lowerBody).substr(0, kOpening);
  return opening.find("<html") != opening.npos || opening.find("<!doctype html") != opening.npos;
}

// Kinds that are certainly no sounding, by their first bytes.
bool IsPicture(std::string_view body) {
  for (const std::string_view start : {"\x89PNG", "GIF8", "\xff\xd8\xff", "%PDF", "RIFF"}) {
    if (body.starts_with(start)) return true;
  }
  return false;
}

bool IsWrongType(std::string_view type) {
  for (const std::string_view wrong : {"image/", "video/", "audio/", "font/", "application/pdf"}) {
    if (type.starts_with(wrong)) return true;
  }
  return false;
}

std::string StatusText(int status) {
  struct Row {
    int Status;
    std::string_view Text;
  };
  constexpr Row kRows[] = {{403, "access is refused"},   {404, "there is no such sounding"},
                           {410, "it is gone for good"}, {429, "too many requests"},
                           {500, "the server failed"},   {502, "the server failed"},
                           {503, "the server is busy"},  {504, "the server failed"}};
  const auto* row = std::ranges::find(kRows, status, &Row::Status);
  const std::string number = "the server answered " + Shortest(status);
  return row == std::end(kRows) ? number : number + ": " + std::string(row->Text);
}

// What a page goes on to say is about something else. A sentence that is too short to tell anything
// takes the next one along.
std::string FirstSentence(const std::string& words) {
  constexpr std::size_t kShortest = 20;
  for (std::size_t at = words.find(". "); at != std::string::npos; at = words.find(". ", at + 1)) {
    const char next = at + 2 < words.size() ? words[at + 2] : ' ';
    if (at >= kShortest && next >= 'A' && next <= 'Z') return words.substr(0, at + 1);
  }
  return words;
}

}  // namespace

std::optional<Fault> Refusal(const Answer& answer) {
  constexpr int kFine = 200;
  if (answer.Status != kFine) return Refused(StatusText(answer.Status));
  if (Trim(answer.Body).empty()) return Refused("the server answered without any data");
  const std::string type = Lower(Trim(answer.ContentType));
  if (IsWrongType(type) || IsPicture(answer.Body)) {
    return Refused("the server answered with something else than a sounding" +
                   (type.empty() ? std::string() : " (" + type + ')'));
  }
  const std::string lower = Lower(answer.Body);
  const bool isPage = IsPage(lower);
  const std::string words = WordsOf(std::string_view(answer.Body).substr(0, std::size_t{1} << 16));
  // Listings stand in a page as preformatted text.
  if (isPage && lower.find("<pre") == std::string::npos) {
    return Refused("the server says: " + FirstSentence(words));
  }
  const std::string lowerWords = Lower(words);
  for (const std::string_view opening :
       {"can't get", "unable to retrieve", "sorry", "software error", "no data", "error",
        "not found", "404 not found", "service unavailable", "internal server error"}) {
    if (lowerWords.starts_with(opening)) return Refused("the server says: " + FirstSentence(words));
  }
  return std::nullopt;
}

}  // namespace vexa::download
