// QtHttpClient: requests on Qt's event loop.
#pragma once

#include "platform/http_client.h"

class QNetworkAccessManager;

namespace brindlehum {

class QtHttpClient : public HttpClient {
public:
    QtHttpClient();
    ~QtHttpClient() override;
    std::unique_ptr<Exchange> send(HttpRequest request, std::function<void(HttpAnswer)> done) override;

private:
    std::unique_ptr<QNetworkAccessManager> network_;  // made by the first request, since it starts a thread
};

}  // namespace brindlehum
