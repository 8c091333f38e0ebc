// Exchanges with QNetworkAccessManager.
#include "platform/qt_http_client.h"

#include <QBuffer>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

#include "platform/web_address.h"

namespace brindlehum {
namespace {

constexpr qint64 bufferBytes = 1 << 20;  // that may wait for us, so that a fast server doesn't fill the memory

// A body that can't be sent again: Qt would repeat a request whose connection broke off, and so start work twice.
class Upload : public QIODevice {
public:
    explicit Upload(std::string body) : body_(std::move(body)) { open(ReadOnly); }
    bool isSequential() const override { return true; }
    bool reset() override { return false; }
    qint64 bytesAvailable() const override { return qint64(body_.size()) - position_ + QIODevice::bytesAvailable(); }

protected:
    qint64 readData(char* out, qint64 most) override {
        const auto count = std::min<qint64>(most, qint64(body_.size()) - position_);
        if (count == 0) { return -1; }
        std::copy_n(body_.data() + position_, count, out);
        position_ += count;
        return count;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    const std::string body_;
    qint64 position_ = 0;
};

bool isRedirect(int status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

// Of the connection, so that the answer isn't whole; an HTTP status is none.
bool isFailure(QNetworkReply::NetworkError error) {
    return (error > QNetworkReply::NoError && error < QNetworkReply::ContentAccessDenied) ||
           error == QNetworkReply::ProtocolUnknownError || error == QNetworkReply::ProtocolFailure;
}

class QtExchange : public HttpClient::Exchange {
public:
    QtExchange(QNetworkAccessManager& network, HttpRequest request, std::function<void(HttpAnswer)> done)
        : network_(network), request_(std::move(request)), done_(std::move(done)) {
        const auto address = webAddress(request_.url);
        if (!address) {
            // Later, as promised.
            QTimer::singleShot(0, &life_, [this] { finish({"The address isn't one of https"}); });
            return;
        }
        address_ = *address;
        start(true);
    }
    ~QtExchange() override { drop(); }

private:
    void start(bool isFirst) {
        QNetworkRequest request(QUrl(QString::fromStdString(address_.url)));
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
        request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
        request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
        request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
        request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
        request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
        request.setRawHeader("Accept-Encoding", "identity");  // what arrives is what is counted
        request.setRawHeader("Accept-Language", "en");        // not the user's, which is nobody's business
        request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Brindlehum"));
        if (isFirst) { addHeaders(request); }
        const QByteArray method = QByteArray::fromStdString(request_.method);
        if (request_.body.empty()) {
            reply_ = network_.sendCustomRequest(request, method);
        } else {
            request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
            request.setHeader(QNetworkRequest::ContentLengthHeader, qint64(request_.body.size()));
            upload_ = std::make_unique<Upload>(std::move(request_.body));
            reply_ = network_.sendCustomRequest(request, method, upload_.get());
        }
        reply_->setReadBufferSize(bufferBytes);
        QObject::connect(reply_, &QNetworkReply::metaDataChanged, &life_, [this] { measure(); });
        QObject::connect(reply_, &QNetworkReply::readyRead, &life_, [this] { read(); });
        QObject::connect(reply_, &QNetworkReply::finished, &life_, [this] { end(); });
    }

    void addHeaders(QNetworkRequest& request) {
        for (const auto& [name, value] : request_.headers) {
            request.setRawHeader(QByteArray::fromStdString(name), QByteArray::fromStdString(value));
        }
        if (const auto secret = std::exchange(request_.secretHeader, {})) {
            const std::string_view value = secret->second.view();
            request.setRawHeader(QByteArray::fromStdString(secret->first),
                                 QByteArray(value.data(), qsizetype(value.size())));
        }
    }

    int status() const { return reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(); }
    bool goesOn() const { return request_.redirects > 0 && request_.method == "GET" && isRedirect(status()); }

    // A length that is stated is refused before it arrives.
    void measure() {
        const auto length = reply_->header(QNetworkRequest::ContentLengthHeader);
        if (length.isValid() && length.toLongLong() > request_.maxBytes) { failSize(); }
    }
    void failSize() { finish({"The answer is larger than " + std::to_string(request_.maxBytes >> 20) + " MB"}); }

    // False when that has ended the exchange, and with it perhaps this object.
    bool read() {
        while (reply_->bytesAvailable() > 0) {
            const QByteArray bytes = reply_->read(bufferBytes);
            if (bytes.isEmpty()) { break; }
            received_ += bytes.size();
            if (received_ > request_.maxBytes) {
                failSize();
                return false;
            }
            const std::string_view view(bytes.constData(), size_t(bytes.size()));
            if (!request_.sink || status() != 200) {
                body_.append(view);
                continue;
            }
            try {
                request_.sink(view);
            } catch (const std::exception& error) {
                finish({error.what()});
                return false;
            }
        }
        return true;
    }

    void end() {
        if (!read()) { return; }
        if (isFailure(reply_->error()) || status() == 0) { return finish({failure()}); }
        if (goesOn()) { return follow(reply_->rawHeader("Location").toStdString()); }
        finish({{}, status(), std::move(body_)});
    }

    // Qt has no words for a body that it couldn't send again.
    std::string failure() const {
        const auto error = reply_->error();
        const bool isUnknown = error == QNetworkReply::ContentReSendError ||
                               error == QNetworkReply::UnknownContentError ||
                               error == QNetworkReply::UnknownNetworkError || error == QNetworkReply::NoError;
        return isUnknown ? "The connection broke off" : reply_->errorString().toStdString();
    }

    void follow(const std::string& location) {
        const auto next = redirected(address_, location);
        if (!next) { return finish({"The server redirects to an address that isn't safe"}); }
        --request_.redirects;
        address_ = *next;
        received_ = 0;
        body_.clear();
        drop();
        start(false);
    }

    void drop() {
        if (!reply_) { return; }
        QObject::disconnect(reply_, nullptr, &life_, nullptr);
        reply_->abort();
        // It may still want to read.
        if (upload_) { upload_.release()->setParent(reply_); }
        std::exchange(reply_, nullptr)->deleteLater();
    }
    // The call may destroy this object.
    void finish(HttpAnswer answer) {
        drop();
        const auto done = std::exchange(done_, nullptr);
        if (done) { done(std::move(answer)); }
    }

    QNetworkAccessManager& network_;
    HttpRequest request_;
    std::function<void(HttpAnswer)> done_;
    WebAddress address_;
    std::unique_ptr<Upload> upload_;
    QNetworkReply* reply_ = nullptr;
    int64_t received_ = 0;
    std::string body_;
    QObject life_;  // ends the connections with this object
};

}  // namespace

QtHttpClient::QtHttpClient() = default;
QtHttpClient::~QtHttpClient() = default;

std::unique_ptr<HttpClient::Exchange> QtHttpClient::send(HttpRequest request, std::function<void(HttpAnswer)> done) {
    if (!network_) { network_ = std::make_unique<QNetworkAccessManager>(); }
    return std::make_unique<QtExchange>(*network_, std::move(request), std::move(done));
}

}  // namespace brindlehum
