// WebAddress by Qt's parser.
#include "platform/web_address.h"

#include <QHostAddress>
#include <QUrl>

namespace brindlehum {
namespace {

constexpr size_t maxBytes = 8192;

std::optional<WebAddress> addressOf(QUrl url) {
    if (!url.isValid() || url.host().isEmpty() || !url.userInfo().isEmpty()) { return std::nullopt; }
    url.setFragment({});
    const QString host = url.host();
    const bool isHere = host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
    const bool isSecure = url.scheme() == QLatin1String("https");
    if (!isSecure && (url.scheme() != QLatin1String("http") || !isHere)) { return std::nullopt; }
    const int usual = isSecure ? 443 : 80;
    const int port = url.port(usual);
    const QString named = host.contains(':') ? '[' + host + ']' : host;
    const QString shown = port == usual ? named : named + ':' + QString::number(port);
    const QString origin = url.scheme() + "://" + named + ':' + QString::number(port);
    return WebAddress{url.toString(QUrl::FullyEncoded).toStdString(), origin.toStdString(), shown.toStdString(),
                      isHere};
}

}  // namespace

std::optional<WebAddress> webAddress(const std::string& text) {
    if (text.size() > maxBytes) { return std::nullopt; }
    return addressOf(QUrl(QString::fromStdString(text).trimmed(), QUrl::StrictMode));
}

std::optional<WebAddress> baseAddress(const std::string& text) {
    if (text.size() > maxBytes) { return std::nullopt; }
    QUrl url(QString::fromStdString(text).trimmed(), QUrl::StrictMode);
    if (url.hasQuery() || url.hasFragment()) { return std::nullopt; }
    if (!url.path().endsWith('/')) { url.setPath(url.path() + '/'); }
    return addressOf(url);
}

std::optional<WebAddress> redirected(const WebAddress& from, const std::string& location) {
    if (location.empty() || location.size() > maxBytes) { return std::nullopt; }
    const QUrl base(QString::fromStdString(from.url));
    const auto to = addressOf(base.resolved(QUrl(QString::fromStdString(location), QUrl::StrictMode)));
    return to && to->isThisMachine && !from.isThisMachine ? std::nullopt : to;
}

}  // namespace brindlehum
