// Answers as RFC 9112 frames them, whole and cut at every byte.
#include "download/http_answer.h"

#include <gtest/gtest.h>

#include <string>

namespace vexa::download {
namespace {

using State = HttpAnswer::State;

constexpr std::size_t kMost = 1000;

State After(std::string_view bytes, std::size_t piece, std::string* body = nullptr) {
  HttpAnswer answer(kMost);
  for (std::size_t at = 0; at < bytes.size(); at += piece) answer.Take(bytes.substr(at, piece));
  const State state = answer.Close();
  if (body != nullptr) *body = answer.Body();
  return state;
}

TEST(HttpAnswer, IsTheSameInAnyPiecesAndCutAnywhereNone) {
  const std::string cases[] = {
      "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nhello",
      "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\ncontent-LENGTH:5 \r\n\r\nhello",
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: Chunked\r\n\r\n3;x=1\r\nhel\r\n2\r\nlo\r\n0\r\n"
      "Trailer: t\r\n\r\n",
      "HTTP/1.0 200 OK\nContent-Length: 5\n\nhello",
  };
  for (const std::string& whole : cases) {
    for (const std::size_t piece : {std::size_t{1}, std::size_t{3}, whole.size()}) {
      std::string body;
      EXPECT_EQ(After(whole, piece, &body), State::Whole) << whole;
      EXPECT_EQ(body, "hello");
    }
    for (std::size_t size = 0; size < whole.size(); ++size) {
      EXPECT_EQ(After(whole.substr(0, size), 7), State::Cut) << whole.substr(0, size);
    }
  }
}

TEST(HttpAnswer, WhatIsNoAnswerIsTold) {
  struct Case {
    const char* About;
    std::string Bytes;
    State Is;
  };
  const std::string fine = "HTTP/1.1 200 OK\r\n";
  const Case cases[] = {
      {"another protocol", "SSH-2.0-server\r\n\r\n", State::Damaged},
      {"no status", "HTTP/1.1 OK\r\n\r\n", State::Damaged},
      {"a length that is none", fine + "Content-Length: -1\r\n\r\n", State::Damaged},
      {"a chunk's size that is none", fine + "Transfer-Encoding: chunked\r\n\r\nxyz\r\n",
       State::Damaged},
      {"a chunk longer than it says", fine + "Transfer-Encoding: chunked\r\n\r\n1\r\nab\r\n0\r\n\r\n",
       State::Damaged},
      {"a length beyond the limit", fine + "Content-Length: 1001\r\n\r\n", State::TooLarge},
      {"a chunk beyond it", fine + "Transfer-Encoding: chunked\r\n\r\n3e9\r\n", State::TooLarge},
      {"a size that no number holds",
       fine + "Transfer-Encoding: chunked\r\n\r\nffffffffffffffffff\r\n", State::Damaged},
      {"endless bytes", fine + "\r\n" + std::string(1001, 'x'), State::TooLarge},
      {"an endless head", fine + std::string(70000, 'x'), State::Damaged},
      {"nothing to say", "HTTP/1.1 204 No Content\r\n\r\n", State::Whole},
  };
  for (const Case& c : cases) EXPECT_EQ(After(c.Bytes, 50), c.Is) << c.About;
}

}  // namespace
}  // namespace vexa::download
