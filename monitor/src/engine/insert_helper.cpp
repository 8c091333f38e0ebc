// The process, and the JSON lines to and from it.
#include "monitor/engine/insert_helper.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <nlohmann/json.hpp>

namespace brindlehum {
namespace {

QString helperProgram() {
    const QString here = QCoreApplication::applicationDirPath();
    const QString beside = here + "/brindlehum-inserts";
    return QFileInfo::exists(beside) ? beside : here + "/" BRINDLEHUM_HELPERS "/brindlehum-inserts";
}

class HelperProcess : public InsertHelper {
public:
    HelperProcess() {
        process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        QObject::connect(&process_, &QProcess::readyReadStandardOutput, &process_, [this] { read(); });
        QObject::connect(&process_, &QProcess::finished, &process_, [this] { end("The inserts' process ended"); });
        QObject::connect(&process_, &QProcess::errorOccurred, &process_, [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart) { end("The inserts' process can't be started"); }
        });
        process_.start(helperProgram(), QStringList());
    }
    ~HelperProcess() override {
        process_.disconnect();
        process_.kill();
        process_.waitForFinished(1000);
    }

    void send(const nlohmann::json& message) override {
        const std::string line = message.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
        process_.write(line.data(), qint64(line.size()));
    }
    void finish() override { process_.closeWriteChannel(); }
    void waitForEnd(double seconds) override { process_.waitForFinished(int(1000 * seconds)); }

private:
    void read() {
        while (process_.canReadLine()) {
            const QByteArray line = process_.readLine();
            const auto message = nlohmann::json::parse(line.begin(), line.end(), nullptr, false);
            if (message.is_object() && onMessage) { onMessage(message); }
        }
    }
    void end(const std::string& why) {
        read();
        if (onEnd) { onEnd(why); }
    }

    QProcess process_;
};

}  // namespace

std::unique_ptr<InsertHelper> startInsertHelper() {
    return std::make_unique<HelperProcess>();
}

}  // namespace brindlehum
