// A server of the test's own on the machine itself: answers by path, and counts.
#pragma once

#include <gtest/gtest.h>

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>

#include <map>
#include <string>

namespace vexa::test {

class LocalServer {
 public:
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
  void Add(const std::string& path, std::string body) { bodies_[path] = std::move(body); }
  int Asked(const std::string& path) { return asked_[path]; }

 private:
  // What was not added is answered by 404.
  void Serve(QTcpSocket& socket) {
    const std::string request = socket.readAll().toStdString();
    if (!request.starts_with("GET ")) return;
    const std::string path = request.substr(4, request.find(' ', 4) - 4);
    ++asked_[path];
    const auto found = bodies_.find(path);
    const bool has = found != bodies_.end();
    const std::string body = has ? found->second : "none";
    const std::string reply = std::string("HTTP/1.1 ") + (has ? "200 OK" : "404 Not Found") +
                              "\r\nContent-Type: text/plain\r\nConnection: close\r\n"
                              "Content-Length: " +
                              std::to_string(body.size()) + "\r\n\r\n" + body;
    socket.write(reply.data(), static_cast<qint64>(reply.size()));
    socket.disconnectFromHost();
  }

  QTcpServer server_{};
  std::map<std::string, std::string> bodies_{};
  std::map<std::string, int> asked_{};
};

}  // namespace vexa::test
