#include "download/net/http_fetcher.h"

#include <QEventLoop>
#include <QNetworkProxy>
#include <QNetworkProxyFactory>
#include <QNetworkProxyQuery>
#include <QSslSocket>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <string_view>
#include <utility>

#include "download/http_answer.h"

namespace vexa::download {
namespace {

using Clock = std::chrono::steady_clock;

FetchResult Ended(FetchEnd end, int number, std::string reason) {
  return {.End = end, .Failed = Fault{number, "Fetch", std::move(reason)}};
}

FetchResult NoAnswer(std::string reason) {
  return Ended(FetchEnd::NoAnswer, kFaultDeviceUnavailable, std::move(reason));
}

bool IsBusy(int status) {
  constexpr int kTooMany = 429, kServerFails = 500;
  return status == kTooMany || status >= kServerFails;
}

std::string Text(const QString& text) {
  return text.toStdString();
}

// What ended an exchange other than the answer's own end.
enum class Cut { None, Cancelled, TimeOver, Silence, Connection };

bool IsSecure(const QUrl& url) {
  return url.scheme() == QLatin1String("https");
}

int PortOf(const QUrl& url) {
  constexpr int kHttp = 80, kHttps = 443;
  return url.port(IsSecure(url) ? kHttps : kHttp);
}

QNetworkProxy ProxyFor(const QUrl& url) {
  const QList<QNetworkProxy> proxies = QNetworkProxyFactory::proxyForQuery(QNetworkProxyQuery(url));
  return proxies.isEmpty() ? QNetworkProxy(QNetworkProxy::NoProxy) : proxies.front();
}

// A proxy of the web is asked for plain pages itself; through all others a connection is made.
bool IsAsked(const QNetworkProxy& proxy, const QUrl& url) {
  const bool isOfTheWeb =
      proxy.type() == QNetworkProxy::HttpProxy || proxy.type() == QNetworkProxy::HttpCachingProxy;
  return isOfTheWeb && !IsSecure(url);
}

QByteArray Basic(const QString& user, const QString& password) {
  return "Basic " + (user + QLatin1Char(':') + password).toUtf8().toBase64();
}

QByteArray RequestText(const QUrl& url, const QNetworkProxy& proxy) {
  const QByteArray host = url.host(QUrl::FullyEncoded).toLatin1();
  QByteArray target = url.path(QUrl::FullyEncoded).toLatin1();
  if (target.isEmpty()) target = "/";
  if (url.hasQuery()) target += '?' + url.query(QUrl::FullyEncoded).toLatin1();
  QByteArray place = host.contains(':') ? '[' + host + ']' : host;
  if (url.port() >= 0) place += ':' + QByteArray::number(url.port());
  const bool isAsked = IsAsked(proxy, url);
  QByteArray text =
      "GET " + (isAsked ? "http://" + place : QByteArray()) + target + " HTTP/1.1\r\n";
  const auto field = [&text](const char* name, const QByteArray& value) {
    text += name + QByteArray(": ") + value + "\r\n";
  };
  field("Host", place);
  field("User-Agent", "VEXA");
  field("Accept", "text/*, application/*;q=0.9, */*;q=0.1");
  field("Accept-Encoding", "gzip");
  field("Connection", "close");
  if (!url.userName().isEmpty()) field("Authorization", Basic(url.userName(), url.password()));
  if (isAsked && !proxy.user().isEmpty()) {
    field("Proxy-Authorization", Basic(proxy.user(), proxy.password()));
  }
  return text + "\r\n";
}

void Connect(QSslSocket& socket, const QUrl& url, const QNetworkProxy& proxy) {
  if (IsAsked(proxy, url)) {
    socket.setProxy(QNetworkProxy::NoProxy);
    socket.connectToHost(proxy.hostName(), proxy.port());
    return;
  }
  socket.setProxy(proxy);
  const auto port = static_cast<quint16>(PortOf(url));
  if (IsSecure(url)) {
    socket.connectToHostEncrypted(url.host(), port);
  } else {
    socket.connectToHost(url.host(), port);
  }
}

// The address that a redirection names; empty when there is none that may be followed.
QUrl MovedTo(const QUrl& from, const std::string& to) {
  const QUrl url = from.resolved(QUrl(QString::fromStdString(to), QUrl::TolerantMode));
  const bool isWeb = IsSecure(url) || url.scheme() == QLatin1String("http");
  const bool isLessSafe = IsSecure(from) && !IsSecure(url);
  return url.isValid() && isWeb && !url.host().isEmpty() && !isLessSafe ? url : QUrl();
}

// What an exchange came to, however it ended.
FetchResult ResultOf(const HttpAnswer& answer, Cut cut, const QSslSocket& socket, const QUrl& url,
                     bool& mayRepeat) {
  using State = HttpAnswer::State;
  mayRepeat = false;
  if (answer.Now() == State::TooLarge) return NoAnswer("the answer is larger than any sounding");
  if (cut == Cut::Cancelled) {
    return Ended(FetchEnd::Cancelled, kFaultDeviceUnavailable, "cancelled");
  }
  if (cut == Cut::TimeOver) return NoAnswer("the answer took too long");
  mayRepeat = true;
  if (cut == Cut::Silence) return NoAnswer("the server fell silent");
  if (answer.Now() == State::Damaged) return NoAnswer("the answer is damaged");
  if (answer.Now() == State::Cut) return NoAnswer("the answer was cut off");
  if (answer.Now() == State::ComingIn) {
    mayRepeat = socket.error() != QAbstractSocket::SslHandshakeFailedError;
    return NoAnswer(Text(socket.errorString()));
  }
  mayRepeat = false;
  return {.End = FetchEnd::Done,
          .Got = {.Status = answer.Status(),
                  .ContentType = std::string(answer.Field("Content-Type")),
                  .Address = url.toEncoded().toStdString(),
                  .Body = answer.Body()}};
}

}  // namespace

// One request and its answer.
FetchResult HttpFetcher::Exchange(const QUrl& url, FetchProgress step, Clock::time_point end,
                                  bool& mayRepeat, std::string& movedTo) {
  HttpAnswer answer(static_cast<std::size_t>(settings_.MostBytes));
  const QNetworkProxy proxy = ProxyFor(url);
  QSslSocket socket;
  QEventLoop loop;
  QTimer silence, longest, beat;
  Cut cut = Cut::None;
  const auto stop = [&](Cut why) {
    if (cut == Cut::None) cut = why;
    loop.quit();
  };
  const auto tell = [&] {
    if (progress_ && !progress_(step)) stop(Cut::Cancelled);
  };
  const auto take = [&] {
    while (socket.bytesAvailable() > 0 && answer.Now() == HttpAnswer::State::ComingIn) {
      constexpr qint64 kPiece = qint64{1} << 20;
      const QByteArray bytes = socket.read(kPiece);
      answer.Take({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    }
    step.Received = static_cast<long long>(answer.Received());
    if (answer.Announced()) step.Total = static_cast<long long>(*answer.Announced());
    if (answer.Now() != HttpAnswer::State::ComingIn) loop.quit();
  };
  const auto ask = [&] { socket.write(RequestText(url, proxy)); };
  if (IsSecure(url)) {
    QObject::connect(&socket, &QSslSocket::encrypted, &loop, ask);
  } else {
    QObject::connect(&socket, &QSslSocket::connected, &loop, ask);
  }
  QObject::connect(&socket, &QSslSocket::readyRead, &loop, [&] {
    silence.start();
    take();
    tell();
  });
  QObject::connect(&socket, &QSslSocket::errorOccurred, &loop, [&] { stop(Cut::Connection); });
  QObject::connect(&socket, &QSslSocket::disconnected, &loop, [&] { stop(Cut::Connection); });
  QObject::connect(&silence, &QTimer::timeout, &loop, [&] { stop(Cut::Silence); });
  QObject::connect(&longest, &QTimer::timeout, &loop, [&] { stop(Cut::TimeOver); });
  QObject::connect(&beat, &QTimer::timeout, &loop, tell);  // while nothing comes in
  using std::chrono::milliseconds;
  const auto left = std::chrono::duration_cast<milliseconds>(end - Clock::now());
  longest.start(std::max(milliseconds(0), left));
  silence.start(settings_.Silence);
  constexpr milliseconds kBeat{100};
  beat.start(kBeat);
  Connect(socket, url, proxy);
  if (cut == Cut::None) loop.exec();

  if (cut == Cut::Connection) {
    take();
    const bool isClosed = socket.error() == QAbstractSocket::RemoteHostClosedError ||
                          socket.error() == QAbstractSocket::UnknownSocketError;
    if (answer.Status() != 0 && isClosed) answer.Close();
  }
  movedTo = answer.Field("Location");
  return ResultOf(answer, cut, socket, url, mayRepeat);
}

FetchResult HttpFetcher::Attempt(const std::string& address, int number, bool& mayRepeat) {
  QUrl url = QUrl::fromEncoded(QByteArray::fromStdString(address), QUrl::StrictMode);
  mayRepeat = false;
  if (!url.isValid() || url.host().isEmpty()) {
    return Ended(FetchEnd::Refused, kFaultBadUrl, address + ": " + Text(url.errorString()));
  }
  const Clock::time_point end = Clock::now() + settings_.Longest;
  for (int redirects = 0;; ++redirects) {
    std::string movedTo;
    FetchResult result =
        Exchange(url, {.Address = address, .Attempt = number}, end, mayRepeat, movedTo);
    constexpr int kRedirect = 300, kRefused = 400;
    const int status = result.Got.Status;
    if (result.End != FetchEnd::Done || status < kRedirect) return result;
    if (status < kRefused) {
      url = movedTo.empty() || redirects == settings_.Redirects ? QUrl() : MovedTo(url, movedTo);
      if (url.isEmpty()) return NoAnswer("a redirection leads nowhere");
      continue;
    }
    if (std::optional<Fault> fault = Refusal(result.Got)) {
      mayRepeat = IsBusy(status);
      result.End = mayRepeat ? FetchEnd::NoAnswer : FetchEnd::Refused;
      result.Failed = std::move(fault);
    }
    return result;
  }
}

bool HttpFetcher::Wait(std::chrono::milliseconds time, const FetchProgress& step) {
  QEventLoop loop;
  QTimer end, beat;
  bool goesOn = true;
  constexpr int kBeat = 100;  // ms
  QObject::connect(&beat, &QTimer::timeout, &loop, [&] {
    if (progress_ && !progress_(step)) {
      goesOn = false;
      loop.quit();
    }
  });
  QObject::connect(&end, &QTimer::timeout, &loop, &QEventLoop::quit);
  beat.start(kBeat);
  end.start(static_cast<int>(time.count()));
  loop.exec();
  return goesOn;
}

FetchResult HttpFetcher::Fetch(const std::string& address) {
  std::chrono::milliseconds pause = settings_.Pause;
  FetchResult result;
  for (int attempt = 1; attempt <= settings_.Attempts; ++attempt) {
    bool mayRepeat = false;
    result = Attempt(address, attempt, mayRepeat);
    result.Attempts = attempt;
    if (!mayRepeat || attempt == settings_.Attempts) break;
    if (!Wait(pause, {.Address = address, .Attempt = attempt})) {
      result = Ended(FetchEnd::Cancelled, kFaultDeviceUnavailable, "cancelled");
      result.Attempts = attempt;
      break;
    }
    pause *= 2;
  }
  return result;
}

}  // namespace vexa::download
