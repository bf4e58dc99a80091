// The fetcher against a server inside the test, on the machine itself, that misbehaves on demand.
#include "download/net/http_fetcher.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <chrono>
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
  struct Case {
    const char* About;
    std::vector<LocalServer::Reply> Replies;
    FetchEnd End;
    int Attempts;
    const char* Says;  // of the body when Done, else of the fault
  };
  const std::string fine = LocalServer::Whole("200 OK", "PRES HGHT");
  const Case cases[] = {
      {"/whole", {{fine}}, FetchEnd::Done, 1, "PRES HGHT"},
      {"/missing", {{LocalServer::Whole("404 Not Found", "none")}}, FetchEnd::Refused, 1, "404"},
      {"/busy", {{LocalServer::Whole("503 Busy", "later")}}, FetchEnd::NoAnswer, 2, "503"},
      {"/busy-first",
       {{LocalServer::Whole("503 Busy", "later")}, {fine}},
       FetchEnd::Done,
       2,
       "PRES HGHT"},
      {"/cut",
       {{"HTTP/1.1 200 OK\r\nContent-Length: 5000\r\n\r\nPRES"}, {fine}},
       FetchEnd::Done,
       2,
       "PRES HGHT"},
      {"/always-cut",
       {{"HTTP/1.1 200 OK\r\nContent-Length: 5000\r\n\r\nPRES"}},
       FetchEnd::NoAnswer,
       2,
       ""},
      {"/silent", {{"", Then::KeepOpen}}, FetchEnd::NoAnswer, 2, ""},
      {"/endless",
       {{"HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\n\r\n", Then::GoOnForever}},
       FetchEnd::NoAnswer,
       1,
       "too long"},
      {"/slow-but-whole",
       {{"HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nContent-Length: 50\r\n\r\n",
         Then::GoOnForever}},
       FetchEnd::Done,
       1,
       "more\nmore"},
      {"/moved",
       {{LocalServer::Whole("302 Found", "", "Location: /whole\r\n")}},
       FetchEnd::Done,
       1,
       "PRES HGHT"},
      {"/circle",
       {{LocalServer::Whole("302 Found", "", "Location: /circle\r\n")}},
       FetchEnd::NoAnswer,
       1,
       ""},
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

TEST_F(HttpFetching, LargerThanAnySoundingEndsAtOnce) {
  settings_.MostBytes = 100;
  server_.Add("/large", {LocalServer::Whole("200 OK", std::string(100000, 'x'))});
  const FetchResult result = Fetch("/large");
  EXPECT_EQ(result.End, FetchEnd::NoAnswer);
  EXPECT_EQ(result.Attempts, 1);
  EXPECT_TRUE(result.Got.Body.empty());
}

TEST_F(HttpFetching, TheUserCancelsWhileNothingComesIn) {
  settings_.Silence = 60s;
  settings_.Longest = 60s;
  server_.Add("/silent", {"", Then::KeepOpen});
  int told = 0;
  progress_ = [&told](const FetchProgress&) { return ++told < 2; };
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(Fetch("/silent").End, FetchEnd::Cancelled);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 20s);
}

TEST_F(HttpFetching, TheUserCancelsASlowAnswerAndAPause) {
  settings_.Longest = 60s;
  settings_.Silence = 60s;
  server_.Add("/slow",
              {"HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\n\r\nfirst ", Then::GoOnForever});
  long long received = 0;
  progress_ = [&received](const FetchProgress& step) {
    received = step.Received;
    return received < 100;
  };
  auto begin = std::chrono::steady_clock::now();
  const FetchResult slow = Fetch("/slow");
  EXPECT_EQ(slow.End, FetchEnd::Cancelled);
  EXPECT_TRUE(slow.Got.Body.empty());
  EXPECT_GE(received, 100);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 20s);

  settings_.Pause = 60s;
  server_.Add("/busy", {LocalServer::Whole("503 Busy", "later")});
  begin = std::chrono::steady_clock::now();
  progress_ = [&begin](const FetchProgress&) {
    return std::chrono::steady_clock::now() - begin < 500ms;
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

TEST_F(HttpFetching, WhatIsNoSoundingNeverCounts) {
  server_.Add("/picture", {"HTTP/1.1 200 OK\r\nContent-Type: image/png\r\nConnection: close\r\n"
                           "Content-Length: 4\r\n\r\n\x89PNG"});
  server_.Add("/page", {LocalServer::Whole("200 OK", "<html><p>Sorry, try later</p></html>")});
  HttpFetcher net(settings_);
  const Judge anything = [](const std::string&, const Request&) { return std::nullopt; };
  for (const char* path : {"/picture", "/page"}) {
    const Source source{.Name = "s", .Address = server_.Address(path)};
    const FetchResult result = FetchSounding(source, {}, net, anything, nullptr, Instant{});
    EXPECT_EQ(result.End, FetchEnd::Refused) << path;
  }
}

}  // namespace
}  // namespace vexa::download
