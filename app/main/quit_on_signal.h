// QuitOnSignal: SIGTERM and SIGINT leave the event loop.
#pragma once

#include <QSocketNotifier>
#include <memory>

namespace brindlehum {

// One for each process, made on the main thread after the application object.
class QuitOnSignal {
public:
    QuitOnSignal();

private:
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace brindlehum
