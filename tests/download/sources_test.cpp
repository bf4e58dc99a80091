// Addresses, the file of sources, the judgement of answers and the cache. Expected addresses were
// written out by hand; the refusal pages follow what servers were seen to send.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "core/files.h"
#include "download/fetcher.h"
#include "download/template_file.h"
#include "support/soundings.h"

namespace vexa::download {
namespace {

constexpr ObservationTime kTime = {.Year = 1999, .Month = 5, .Day = 4, .Hour = 0};
const Request kNorman = {.Number = 72357, .Letters = "OUN", .Time = kTime};

TEST(AddressOf, ReplacesEveryTokenOrRefuses) {
  struct Case {
    const char *About, *Pattern;
    Request Wanted;
    const char *Address, *Refusal;
  };
  const Request low{.Number = 1001, .Time = kTime}, odd{.Letters = "../&?"};
  const Request named{.Letters = "koun"}, timeless{.Number = 1};
  const Case cases[] = {
      {"zeros stay", "https://a/@Y-@M-@D%20@H:00:00&id=@N", low,
       "https://a/1999-05-04%2000:00:00&id=01001", ""},
      {"two figures of the year", "http://a/@y@M@D@H_OBS/@L.txt", kNorman,
       "http://a/99050400_OBS/OUN.txt", ""},
      {"four letters of three", "http://a/gfs3_@i.buf?@I", kNorman, "http://a/gfs3_koun.buf?KOUN",
       ""},
      {"three letters of four", "http://a/@l", named, "http://a/oun", ""},
      {"letters stay in their place", "http://a/@L/x", odd, "http://a/..%2F%26%3F/x", ""},
      {"a mistyped token", "http://a/@Q", kNorman, "", "there is no token \"@Q\""},
      {"a sign at the end", "http://a/@", kNorman, "", "there is no token \"@\""},
      {"a missing number", "http://a/@N", named, "", "(@N): not given"},
      {"a missing time", "http://a/@Y", timeless, "", "(@Y): not given"},
      {"a file", "file:///etc/x@Y", kNorman, "", "neither http:// nor https://"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.About);
    const Outcome<std::string> address = AddressOf({.Name = "s", .Address = c.Pattern}, c.Wanted);
    EXPECT_EQ(address ? address.Value() : "", c.Address);
    if (address) continue;
    EXPECT_EQ(address.Error().Number, kFaultBadUrl);
    EXPECT_NE(address.Error().Detail.find(c.Refusal), std::string::npos) << address.Error().Detail;
  }
  EXPECT_EQ(RequestFor(" 1001 ", kTime).Number, 1001);
  EXPECT_EQ(RequestFor("koun", kTime).Letters, "KOUN");
  EXPECT_EQ(FileStem(kNorman), "72357_1999050400");
}

TEST(SourceFile, TheShippedOneIsRead) {
  const auto path = test::SourceFolder() / "share" / "VEXA.URL";
  const Outcome<std::string> text = ReadFile(path);
  ASSERT_TRUE(text);
  const SourceList list = ReadSources(text.Value(), "VEXA.URL");
  EXPECT_TRUE(list.Notes.empty());
  EXPECT_GE(list.Sources.size(), 8U);
  EXPECT_EQ(list.Find("university of wyoming")->Name, "University of Wyoming");
  EXPECT_EQ(list.Find("storm")->Name, "Storm Prediction Center");
  EXPECT_EQ(list.Find("university"), nullptr);  // of several none is meant
  const Source& gfs = *list.Find("Iowa State BUFKIT, GFS");
  EXPECT_TRUE(HasHour(gfs, 6));
  EXPECT_FALSE(HasHour(gfs, 3));
}

// What is wrong is left out and told with its line; the other sources stay.
TEST(SourceFile, FaultsNameFileAndLineAndCostNoOtherSource) {
  struct Case {
    const char* Text;
    const char* Note;
    const char* Names;  // of the sources that are left
  };
  const Case cases[] = {
      {"# free\n[A]\naddress = http://a/@Q\n[B]\naddress = http://b\n",
       "u, line 2: A: there is no token \"@Q\"", "B"},
      {"[A]\n\n[B]\naddress = http://b\n", "u, line 1: the source has no address", "B"},
      {"[A]\naddress = http://a\n[a]\naddress = http://c\n[B]\naddress = http://b\n",
       "u, line 3: there is another source of this name", "A B"},
      {"[A\naddress = http://a\n[B]\naddress = http://b\n",
       "u, line 1: the name of the source has no closing bracket", "B"},
      {"[A]\naddress = http://a\nadress = x\n",
       "u, line 3: neither \"address =\", \"hours =\" nor \"note =\"", "A"},
      {"[A]\naddress = http://a\nhours = 00 25\n",
       "u, line 3: the hours are not two figures each, 00 to 23", "A"},
      {"[A]\naddress = http://a\naddress = http://b\n", "u, line 3: address is given twice", "A"},
  };
  for (const Case& c : cases) {
    const SourceList list = ReadSources(c.Text, "u");
    ASSERT_EQ(list.Notes.size(), 1U) << c.Text;
    EXPECT_EQ(list.Notes[0], c.Note);
    std::string names;
    for (const Source& source : list.Sources) names += (names.empty() ? "" : " ") + source.Name;
    EXPECT_EQ(names, c.Names) << c.Text;
    const Source* first = list.Find("A");
    EXPECT_EQ(first == nullptr ? "http://a" : first->Address, "http://a");
  }
}

TEST(Refusal, TellsPagesFromSoundings) {
  struct Case {
    const char* About;
    int Status;
    const char *Type, *Body, *Says;  // empty: may be a sounding
  };
  const Case cases[] = {
      {"a listing in a page", 200, "text/html",
       "<html><title>x</title><body><H2>72357 OUN</H2><pre>PRES HGHT</pre></html>", ""},
      {"plain text", 200, "text/plain", "TTAA 55121 01234", ""},
      {"bytes of any kind", 200, "application/octet-stream", "BUFR", ""},
      {"a page without a table", 200, "text/html",
       "<!DOCTYPE html><html><style>p{}</style><p>The service\n is\tdown</p></html>",
       "The service is down"},
      {"words in place of data", 200, "text/html",
       "<html><pre>Can't get 72357 OUN Observations at 00Z 04 May 1999.</pre></html>", "Can't get"},
      {"a picture", 200, "image/png", "\x89PNG", "something else"},
      {"a picture that says it is text", 200, "text/plain", "\x89PNG", "something else"},
      {"nothing", 200, "text/plain", " \r\n", "without any data"},
      {"a status", 404, "text/plain", "PRES HGHT", "404"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.About);
    const std::optional<Fault> refusal =
        Refusal({.Status = c.Status, .ContentType = c.Type, .Body = c.Body});
    ASSERT_EQ(refusal.has_value(), *c.Says != '\0');
    if (refusal) {
      EXPECT_NE(refusal->Detail.find(c.Says), std::string::npos) << refusal->Detail;
    }
  }
}

class ScriptedFetcher : public Fetcher {
 public:
  FetchResult Fetch(const std::string& address) override {
    Asked.push_back(address);
    return {.End = FetchEnd::Done, .Got = {.Status = 200, .Address = address, .Body = Body}};
  }
  std::string Body = "data";
  std::vector<std::string> Asked{};
};

TEST(FetchSounding, TheCacheServesItsOwnHourOnly) {
  using namespace std::chrono_literals;
  const test::TemporaryFolder folder;
  const Cache cache(folder.Path() / "cache");
  ScriptedFetcher net;
  const Judge anything = [](const std::string&, const Request&) { return std::nullopt; };
  const Source source{.Name = "s", .Address = "http://a/@Y@M@D@H/@N"};
  const Instant later = std::chrono::sys_days(std::chrono::year(1999) / 5 / 10);
  const auto fetch = [&](const Source& from, const Request& request, Instant now) {
    return FetchSounding(from, request, net, anything, &cache, now);
  };
  EXPECT_FALSE(fetch(source, kNorman, later).IsFromCache);
  net.Body = "new";
  const FetchResult kept = fetch(source, kNorman, later + 1000h);
  EXPECT_TRUE(kept.IsFromCache);
  EXPECT_EQ(kept.Got.Body, "data");

  Request noon = kNorman;
  noon.Time.Hour = 12;
  EXPECT_EQ(fetch(source, noon, later).Got.Body, "new");
  Request tulsa = kNorman;
  tulsa.Number = 72356;
  EXPECT_EQ(fetch(source, tulsa, later).Got.Body, "new");

  // Within a day of its hour a sounding may still grow.
  const Source young{.Name = "y", .Address = "http://y/@Y@M@D@H/@N"};
  const Instant hour = std::chrono::sys_days(std::chrono::year(1999) / 5 / 4);
  fetch(young, kNorman, hour + 1h);
  EXPECT_TRUE(fetch(young, kNorman, hour + 1h + 14min).IsFromCache);
  EXPECT_FALSE(fetch(young, kNorman, hour + 1h + 16min).IsFromCache);

  // An address without the hour gives another answer every hour.
  const Source current{.Name = "c", .Address = "http://c/@N"};
  fetch(current, kNorman, later);
  EXPECT_FALSE(fetch(current, kNorman, later).IsFromCache);

  // A file of the cache under another address, as after a clash of hashes, and a damaged one.
  for (const auto& entry : std::filesystem::directory_iterator(folder.Path() / "cache")) {
    std::string text = ReadFile(entry.path()).Value();
    if (text.find("http://a/1999050400/72357") == std::string::npos) continue;
    text.replace(text.find("050400"), 6, "050500");
    ASSERT_FALSE(SaveFile(entry.path(), text));
  }
  EXPECT_FALSE(fetch(source, kNorman, later).IsFromCache);
  for (const auto& entry : std::filesystem::directory_iterator(folder.Path() / "cache")) {
    ASSERT_FALSE(SaveFile(entry.path(), ReadFile(entry.path()).Value().substr(0, 58)));
  }
  EXPECT_FALSE(fetch(source, noon, later).IsFromCache);
}

TEST(FetchSounding, WhatTheJudgeRefusesIsNeitherDataNorKept) {
  const test::TemporaryFolder folder;
  const Cache cache(folder.Path());
  ScriptedFetcher net;
  const Judge nothing = [](const std::string&, const Request&) {
    return std::optional<Fault>(Fault{kFaultFormat, "t", "unknown"});
  };
  const Source source{.Name = "s", .Address = "http://a/@Y@M@D@H/@N"};
  const Instant later = std::chrono::sys_days(std::chrono::year(1999) / 5 / 10);
  const FetchResult result = FetchSounding(source, kNorman, net, nothing, &cache, later);
  EXPECT_EQ(result.End, FetchEnd::Refused);
  EXPECT_EQ(result.Failed->Detail, "unknown");
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

}  // namespace
}  // namespace vexa::download
