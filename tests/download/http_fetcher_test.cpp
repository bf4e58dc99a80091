// The fetcher against a server inside the test, on the machine itself, that misbehaves on demand.
#include "download/net/http_fetcher.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <chrono>
#include <cstdio>
#include <iterator>
#include <string>

#include "support/local_server.h"

namespace vexa::download {
namespace {

using namespace std::chrono_literals;

using test::LocalServer;

class HttpFetching : public testing::Test {
 protected:
  FetchResult Fetch(const std::string& path) {
    return HttpFetcher(settings_, progress_).Fetch(server_.Address(path));
  }

  int count_ = 1;
  char name_[5] = "test";
  char* words_[2] = {name_, nullptr};
  QCoreApplication application_{count_, words_};
  LocalServer server_{};
  HttpSettings settings_{.Silence = 400ms, .Longest = 900ms, .Pause = 10ms, .Attempts = 2};
  std::function<bool(const FetchProgress&)> progress_{};
};

using Then = LocalServer::Then;

TEST_F(HttpFetching, EveryWayAnAnswerMayEnd) {
  const std::string head = "HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\n";
  const auto moved = [](const char* to) {
    return LocalServer::Whole("302 Found", "", std::string("Location: ") + to + "\r\n");
  };
  const LocalServer::Reply fine{LocalServer::Whole("200 OK", "PRES HGHT")};
  const LocalServer::Reply busy{LocalServer::Whole("503 Busy", "later")};
  const LocalServer::Reply cut{head + "Content-Length: 5000\r\n\r\nPRES"};
  const LocalServer::Reply missing{LocalServer::Whole("404 Not Found", "none")};
  const LocalServer::Reply endless{head + "\r\n", Then::GoOnForever};
  const LocalServer::Reply slow{head + "Content-Length: 50\r\n\r\n", Then::GoOnForever};
  struct Case {
    const char* About;
    std::vector<LocalServer::Reply> Replies;
    FetchEnd End;
    int Attempts;
    const char* Says;  // of the body when Done, else of the fault
  };
  const Case cases[] = {
      {"/whole", {fine}, FetchEnd::Done, 1, "PRES HGHT"},
      {"/missing", {missing}, FetchEnd::Refused, 1, "404"},
      {"/busy", {busy}, FetchEnd::NoAnswer, 2, "503"},
      {"/cut", {cut, fine}, FetchEnd::Done, 2, "PRES HGHT"},
      {"/always-cut", {cut}, FetchEnd::NoAnswer, 2, ""},
      {"/silent", {{"", Then::KeepOpen}}, FetchEnd::NoAnswer, 2, ""},
      {"/endless", {endless}, FetchEnd::NoAnswer, 1, "too long"},
      {"/slow-but-whole", {slow}, FetchEnd::Done, 1, "more\nmore"},
      {"/moved", {{moved("/whole")}}, FetchEnd::Done, 1, "PRES HGHT"},
      {"/circle", {{moved("/circle")}}, FetchEnd::NoAnswer, 1, ""},
  };
  for (const Case& c : cases) {
    for (const LocalServer::Reply& reply : c.Replies) server_.Add(c.About, reply);
  }
  for (const Case& c : cases) {
    SCOPED_TRACE(c.About);
    const FetchResult result = Fetch(c.About);
    EXPECT_EQ(result.End, c.End) << (result.Failed ? result.Failed->Detail : "");
    EXPECT_EQ(result.Attempts, c.Attempts);
    EXPECT_EQ(result.Failed.has_value(), c.End != FetchEnd::Done);
    const std::string said = result.Failed ? result.Failed->Detail : result.Got.Body;
    EXPECT_NE(said.find(c.Says), std::string::npos) << said;
  }
  EXPECT_EQ(server_.Asked("/missing"), 1);
}

// gzip of "PRES HGHT TEMP\n" three times, by gzip 1.12: 10 bytes of header, 20 of data, 8 of check.
std::string PackedAnswer() {
  const unsigned char bytes[] = {0x1f, 0x8b, 0x08, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x03,
                                 0x0b, 0x08, 0x72, 0x0d, 0x56, 0xf0, 0x70, 0xf7, 0x08, 0x51,
                                 0x08, 0x71, 0xf5, 0x0d, 0xe0, 0x0a, 0xc0, 0xcb, 0x05, 0x00,
                                 0xa6, 0xd3, 0xfb, 0xdb, 0x2d, 0x00, 0x00, 0x00};
  return {std::begin(bytes), std::end(bytes)};
}

// An answer counts when its transfer has ended as it was announced.
TEST_F(HttpFetching, ACutAnswerIsNoAnswer) {
  const std::string packed = PackedAnswer();
  const std::string plain = "PRES HGHT TEMP\nPRES HGHT TEMP\nPRES HGHT TEMP\n";
  const auto head = [](const std::string& lines) {
    return "HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\n" + lines + "\r\n";
  };
  const auto length = [](std::size_t bytes) {
    return "Content-Length: " + std::to_string(bytes) + "\r\n";
  };
  const std::string gzip = "Content-Encoding: gzip\r\n";
  const std::string chunked = "Transfer-Encoding: chunked\r\n";
  const auto chunk = [](const std::string& bytes) {
    char size[16];
    std::snprintf(size, sizeof size, "%zx\r\n", bytes.size());
    return size + bytes + "\r\n";
  };
  const std::string last = "0\r\n\r\n";
  const std::string half = packed.substr(0, packed.size() / 2);
  struct Case {
    const char* About;
    std::string Reply;
    bool IsWhole;
  };
  const Case cases[] = {
      {"/gzip", head(gzip + length(packed.size())) + packed, true},
      {"/gzip-shorter-than-told", head(gzip + length(packed.size() + 500)) + packed, false},
      {"/gzip-cut", head(gzip + length(packed.size())) + half, false},
      {"/gzip-cut-ahead", head(gzip + length(half.size())) + half, false},
      {"/gzip-without-trailer",
       head(gzip + length(packed.size() - 8)) + packed.substr(0, packed.size() - 8), false},
      {"/gzip-wrong-sum",
       head(gzip + length(packed.size())) + packed.substr(0, packed.size() - 8) +
           std::string(8, 'x'),
       false},
      {"/gzip-to-the-end", head(gzip + "Connection: close\r\n") + packed, true},
      {"/gzip-cut-to-the-end", head(gzip + "Connection: close\r\n") + half, false},
      {"/chunks-without-last", head(chunked) + chunk(plain.substr(0, 30)), false},
      {"/chunks-of-gzip", head(chunked + gzip) + chunk(packed) + last, true},
      {"/chunks-of-half-a-gzip", head(chunked + gzip) + chunk(half) + last, false},
      {"/chunks-of-gzip-without-last", head(chunked + gzip) + chunk(packed), false},
      {"/deflate", head("Content-Encoding: br\r\n" + length(plain.size())) + plain, false},
  };
  for (const Case& c : cases) server_.Add(c.About, {c.Reply});
  settings_.Attempts = 1;
  for (const Case& c : cases) {
    const FetchResult result = Fetch(c.About);
    EXPECT_EQ(result.End, c.IsWhole ? FetchEnd::Done : FetchEnd::NoAnswer)
        << c.About << ": " << result.Got.Body;
    EXPECT_EQ(result.Got.Body, c.IsWhole ? plain : "") << c.About;
  }
}

TEST_F(HttpFetching, LargerThanAnySoundingEndsAtOnce) {
  settings_.MostBytes = 100;
  server_.Add("/large", {LocalServer::Whole("200 OK", std::string(100000, 'x'))});
  const FetchResult result = Fetch("/large");
  EXPECT_EQ(result.End, FetchEnd::NoAnswer);
  EXPECT_EQ(result.Attempts, 1);
  EXPECT_TRUE(result.Got.Body.empty());
}

TEST_F(HttpFetching, TheUserCancelsSilenceASlowAnswerAndAPause) {
  settings_.Silence = 60s;
  settings_.Longest = 60s;
  server_.Add("/silent", {"", Then::KeepOpen});
  int told = 0;
  progress_ = [&told](const FetchProgress&) { return ++told < 2; };
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(Fetch("/silent").End, FetchEnd::Cancelled);

  server_.Add("/slow",
              {"HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\n\r\nfirst ", Then::GoOnForever});
  long long received = 0;
  progress_ = [&received](const FetchProgress& step) {
    received = step.Received;
    return received < 100;
  };
  const FetchResult slow = Fetch("/slow");
  EXPECT_EQ(slow.End, FetchEnd::Cancelled);
  EXPECT_TRUE(slow.Got.Body.empty());
  EXPECT_GE(received, 100);

  settings_.Pause = 60s;
  server_.Add("/busy", {LocalServer::Whole("503 Busy", "later")});
  const auto pause = std::chrono::steady_clock::now();
  progress_ = [pause](const FetchProgress&) {
    return std::chrono::steady_clock::now() - pause < 500ms;
  };
  EXPECT_EQ(Fetch("/busy").End, FetchEnd::Cancelled);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 20s);
}

TEST_F(HttpFetching, PausesDoubleFromAttemptToAttempt) {
  settings_.Attempts = 4;
  settings_.Silence = 20s;  // what is counted here are the pauses, however busy the machine
  settings_.Longest = 20s;
  settings_.Pause = 50ms;
  server_.Add("/busy", {LocalServer::Whole("503 Busy", "later")});
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(Fetch("/busy").Attempts, 4);
  // 50 + 100 + 200 ms, less the toolkit's tolerance; pauses that stay the same would make 150.
  EXPECT_GE(std::chrono::steady_clock::now() - begin, 300ms);
  EXPECT_EQ(server_.Asked("/busy"), 4);

  // Nobody listens there.
  QTcpServer closed;
  ASSERT_TRUE(closed.listen(QHostAddress::LocalHost));
  const std::string address = "http://127.0.0.1:" + std::to_string(closed.serverPort()) + "/";
  closed.close();
  settings_.Attempts = 2;
  const FetchResult refused = HttpFetcher(settings_).Fetch(address);
  EXPECT_EQ(refused.End, FetchEnd::NoAnswer);
  EXPECT_EQ(refused.Attempts, 2);
}

}  // namespace
}  // namespace vexa::download
