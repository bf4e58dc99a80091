#include "download/net/http_fetcher.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>
#include <QUrl>

#include <string_view>
#include <utility>

namespace vexa::download {
namespace {

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

// Which attempt's end the reply's own error does not tell.
enum class Cut { None, Cancelled, TimeOver, TooLarge };

struct Stopper {
  QNetworkReply& Reply;
  Cut Why = Cut::None;

  void operator()(Cut why) {
    if (Why != Cut::None) return;
    Why = why;
    Reply.abort();
  }
};

std::string Text(const QString& text) {
  return text.toStdString();
}

// Trouble that another attempt would meet again.
bool IsFinal(QNetworkReply::NetworkError error) {
  switch (error) {
    case QNetworkReply::SslHandshakeFailedError:
    case QNetworkReply::TooManyRedirectsError:
    case QNetworkReply::InsecureRedirectError:
    case QNetworkReply::ProtocolUnknownError:
    case QNetworkReply::ProtocolInvalidOperationError:
      return true;
    default:
      return false;
  }
}

}  // namespace

HttpFetcher::HttpFetcher(HttpSettings settings, std::function<bool(const FetchProgress&)> progress)
    : settings_(settings),
      progress_(std::move(progress)),
      manager_(std::make_unique<QNetworkAccessManager>()) {}

HttpFetcher::~HttpFetcher() = default;

FetchResult HttpFetcher::Attempt(const std::string& address, int number, bool& mayRepeat) {
  const QUrl url = QUrl::fromEncoded(QByteArray::fromStdString(address), QUrl::StrictMode);
  mayRepeat = false;
  if (!url.isValid() || url.host().isEmpty()) {
    return Ended(FetchEnd::Refused, kFaultBadUrl, address + ": " + Text(url.errorString()));
  }
  QNetworkRequest request(url);
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                       QNetworkRequest::NoLessSafeRedirectPolicy);
  request.setMaximumRedirectsAllowed(settings_.Redirects);
  request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
  request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
  request.setTransferTimeout(static_cast<int>(settings_.Silence.count()));
  request.setRawHeader("User-Agent", "VEXA");
  request.setRawHeader("Accept", "text/*, application/*;q=0.9, */*;q=0.1");

  const std::unique_ptr<QNetworkReply> reply(manager_->get(request));
  constexpr qint64 kReadAhead = qint64{1} << 20;  // what is not read yet waits at the server
  reply->setReadBufferSize(kReadAhead);
  Stopper stop{*reply};
  QByteArray body;
  FetchProgress step{.Address = address, .Attempt = number};
  const auto tell = [&] {
    if (progress_ && !progress_(step)) stop(Cut::Cancelled);
  };
  QEventLoop loop;
  QObject::connect(reply.get(), &QNetworkReply::readyRead, &loop, [&] {
    body += reply->readAll();
    step.Received = body.size();
    if (body.size() > settings_.MostBytes) stop(Cut::TooLarge);
    tell();
  });
  QObject::connect(reply.get(), &QNetworkReply::downloadProgress, &loop,
                   [&](qint64, qint64 total) { step.Total = total; });
  QTimer longest, beat;
  longest.setSingleShot(true);
  QObject::connect(&longest, &QTimer::timeout, &loop, [&] { stop(Cut::TimeOver); });
  // The user may cancel while nothing comes in.
  constexpr int kBeat = 100;  // ms
  QObject::connect(&beat, &QTimer::timeout, &loop, tell);
  QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
  longest.start(static_cast<int>(settings_.Longest.count()));
  beat.start(kBeat);
  if (!reply->isFinished()) loop.exec();
  if (stop.Why == Cut::None && reply->isOpen()) body += reply->readAll();

  switch (stop.Why) {
    case Cut::Cancelled:
      return Ended(FetchEnd::Cancelled, kFaultDeviceUnavailable, "cancelled");
    case Cut::TooLarge:
      return NoAnswer("the answer is larger than any sounding");
    case Cut::TimeOver:
      return NoAnswer("the answer took too long");
    case Cut::None:
      break;
  }
  const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
  const QNetworkReply::NetworkError error = reply->error();
  // Below 300 an error is one of the transfer; from there on the status says it all.
  constexpr int kRedirect = 300, kRefused = 400;
  if (error != QNetworkReply::NoError && status < kRefused) {
    mayRepeat = !IsFinal(error);
    if (error == QNetworkReply::OperationCanceledError) return NoAnswer("the server fell silent");
    return NoAnswer(Text(reply->errorString()));
  }
  if (status >= kRedirect && status < kRefused) return NoAnswer("a redirection leads nowhere");
  const QVariant length = reply->header(QNetworkRequest::ContentLengthHeader);
  const bool isCoded = reply->hasRawHeader("Content-Encoding");
  if (status < kRedirect && length.isValid() && !isCoded && length.toLongLong() != body.size()) {
    mayRepeat = true;
    return NoAnswer("the answer was cut off");
  }
  FetchResult result{.End = FetchEnd::Done};
  result.Got = {.Status = status,
                .ContentType = Text(reply->header(QNetworkRequest::ContentTypeHeader).toString()),
                .Address = reply->url().toEncoded().toStdString(),
                .Body = body.toStdString()};
  if (std::optional<Fault> fault = Refusal(result.Got); fault && status >= kRefused) {
    mayRepeat = IsBusy(status);
    result.End = mayRepeat ? FetchEnd::NoAnswer : FetchEnd::Refused;
    result.Failed = std::move(fault);
  }
  return result;
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
