// Runs children with QProcess, each in a process group of its own.
#include "platform/qt_child_processes.h"

#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <QProcess>
#include <QTimer>
#include <fstream>

namespace brindlehum {
namespace {

constexpr size_t keptBytes = 1 << 20;  // of each pipe
constexpr int graceMs = 1000;          // between the request to end and the end

void append(std::string& kept, const QByteArray& bytes) {
    kept.append(bytes.constData(), size_t(bytes.size()));
    if (kept.size() > keptBytes) { kept.erase(0, kept.size() - keptBytes); }
}

QProcessEnvironment environmentOf(const ChildCommand& command) {
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const auto& [name, value] : command.environment) {
        environment.insert(QString::fromStdString(name), QString::fromStdString(value));
    }
    return environment;
}

class QtChild : public ChildProcesses::Child {
public:
    QtChild(const ChildCommand& command, std::function<void(const ChildResult&)> done, QObject& ending)
        : process_(new QProcess), done_(std::move(done)), ending_(ending) {
        QObject::connect(process_, &QProcess::readyReadStandardOutput, process_, [this] { read(); });
        QObject::connect(process_, &QProcess::readyReadStandardError, process_, [this] { read(); });
        QObject::connect(process_, &QProcess::finished, process_, [this](int status, QProcess::ExitStatus how) {
            read();
            result_.status = how == QProcess::NormalExit ? status : -1;
            finish();
        });
        QObject::connect(
            process_, &QProcess::errorOccurred, process_,
            [this](QProcess::ProcessError error) {
                if (error != QProcess::FailedToStart) { return; }
                result_.failure = process_->errorString().toStdString();
                finish();
            },
            Qt::QueuedConnection);
        process_->setChildProcessModifier([] {
            ::setpgid(0, 0);
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        });
        process_->setProcessEnvironment(environmentOf(command));
        process_->setStandardInputFile(QProcess::nullDevice());
        QStringList arguments;
        for (const auto& argument : command.arguments) { arguments << QString::fromStdString(argument); }
        process_->start(QString::fromStdString(command.tool.string()), arguments);
    }

    // Asks the whole group to end, and kills what is left of it after a grace.
    ~QtChild() override {
        process_->disconnect();
        const auto group = pid_t(process_->processId());
        if (process_->state() == QProcess::NotRunning || group <= 0) {
            process_->deleteLater();
            return;
        }
        ::kill(-group, SIGTERM);
        process_->setParent(&ending_);
        QObject::connect(process_, &QProcess::finished, process_, &QObject::deleteLater);
        QTimer::singleShot(graceMs, process_, [group] { ::kill(-group, SIGKILL); });
    }

    int64_t bytesWritten() const override {
        std::ifstream counts("/proc/" + std::to_string(process_->processId()) + "/io");
        int64_t bytes = 0;
        for (std::string name; counts >> name;) {
            if (name == "wchar:" && counts >> bytes) { return bytes; }
        }
        return 0;
    }

private:
    void read() {
        append(result_.out, process_->readAllStandardOutput());
        append(result_.errors, process_->readAllStandardError());
    }
    // The call may destroy this object.
    void finish() {
        if (!done_) { return; }
        const auto done = std::exchange(done_, nullptr);
        done(ChildResult(result_));
    }

    QProcess* process_;
    ChildResult result_;
    std::function<void(const ChildResult&)> done_;
    QObject& ending_;
};

}  // namespace

QtChildProcesses::QtChildProcesses() : ending_(std::make_unique<QObject>()) {}

QtChildProcesses::~QtChildProcesses() {
    for (auto* process : ending_->findChildren<QProcess*>()) {
        if (const auto group = pid_t(process->processId()); group > 0) { ::kill(-group, SIGKILL); }
        process->waitForFinished();
    }
}

std::unique_ptr<ChildProcesses::Child> QtChildProcesses::run(const ChildCommand& command,
                                                             std::function<void(const ChildResult&)> done) {
    return std::make_unique<QtChild>(command, std::move(done), *ending_);
}

}  // namespace brindlehum
