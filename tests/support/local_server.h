// A server of the test's own on the machine itself: answers by path, and counts.
#pragma once

#include <gtest/gtest.h>

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace vexa::test {

class LocalServer {
 public:
  enum class Then { Close, KeepOpen, GoOnForever };
  struct Reply {
    std::string Bytes{};
    Then Afterwards = Then::Close;
  };

  LocalServer() {
    EXPECT_TRUE(server_.listen(QHostAddress::LocalHost));
    QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this] {
      QTcpSocket* socket = server_.nextPendingConnection();
      QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
      QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { Serve(*socket); });
    });
  }

  std::string Address(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(server_.serverPort()) + path;
  }
  void AddBody(const std::string& path, const std::string& body) {
    Add(path, {Whole("200 OK", body)});
  }
  void Add(const std::string& path, Reply reply) { replies_[path].push_back(std::move(reply)); }
  int Asked(const std::string& path) { return asked_[path]; }

  static std::string Whole(const std::string& status, const std::string& body,
                           const std::string& more = {}) {
    return "HTTP/1.1 " + status + "\r\nContent-Type: text/plain\r\nConnection: close\r\n" + more +
           "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
  }

 private:
  // What was not added is answered by 404; several replies of a path one after the other.
  void Serve(QTcpSocket& socket) {
    const std::string request = socket.readAll().toStdString();
    if (!request.starts_with("GET ")) return;
    const std::string path = request.substr(4, request.find(' ', 4) - 4);
    const auto found = replies_.find(path);
    const int before = asked_[path]++;
    if (found == replies_.end()) return Send(socket, {Whole("404 Not Found", "none")});
    const int index = std::min<int>(before, static_cast<int>(found->second.size()) - 1);
    Send(socket, found->second[static_cast<std::size_t>(index)]);
  }

  static void Send(QTcpSocket& socket, const Reply& reply) {
    socket.write(reply.Bytes.data(), static_cast<qint64>(reply.Bytes.size()));
    if (reply.Afterwards == Then::Close) socket.disconnectFromHost();
    if (reply.Afterwards == Then::GoOnForever) {
      auto* beat = new QTimer(&socket);
      QObject::connect(beat, &QTimer::timeout, &socket, [&socket] { socket.write("more\n"); });
      beat->start(5);
    }
  }

  QTcpServer server_{};
  std::map<std::string, std::vector<Reply>> replies_{};
  std::map<std::string, int> asked_{};
};

}  // namespace vexa::test
