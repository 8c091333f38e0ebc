// Secrets through QtKeychain.
#include "platform/qt_secrets.h"

#include <qt6keychain/keychain.h>

#include <cstring>

namespace brindlehum {
namespace {

// Starts a job, which deletes itself.
template <class Job>
Job* jobFor(const std::string& name) {
    auto* job = new Job(QStringLiteral("Brindlehum"));
    job->setKey(QString::fromStdString(name));
    job->setInsecureFallback(false);
    return job;
}

std::string problemOf(const QKeychain::Job& job) {
    if (job.error() == QKeychain::NoError || job.error() == QKeychain::EntryNotFound) { return {}; }
    const QString text = job.errorString();
    return text.isEmpty() ? "The keyring doesn't answer" : text.toStdString();
}

// Overwrites the bytes where they lie: the job shares them and would leave them behind.
SecretText taken(const QByteArray& bytes) {
    SecretText secret(std::string_view(bytes.constData(), size_t(bytes.size())));
    ::explicit_bzero(const_cast<char*>(bytes.constData()), size_t(bytes.size()));
    return secret;
}

}  // namespace

void QtSecrets::read(const std::string& name, std::function<void(Reading)> done) {
    auto* job = jobFor<QKeychain::ReadPasswordJob>(name);
    QObject::connect(job, &QKeychain::Job::finished, job, [job, done = std::move(done)] {
        Reading reading{.problem = problemOf(*job)};
        if (job->error() == QKeychain::NoError) { reading.secret = taken(job->binaryData()); }
        done(std::move(reading));
    });
    job->start();
}

void QtSecrets::write(const std::string& name, const SecretText& secret, std::function<void(const std::string&)> done) {
    auto* job = jobFor<QKeychain::WritePasswordJob>(name);
    QString text = QString::fromUtf8(secret.view().data(), qsizetype(secret.view().size()));
    job->setTextData(text);
    ::explicit_bzero(text.data(), size_t(text.size()) * sizeof(QChar));
    QObject::connect(job, &QKeychain::Job::finished, job, [job, done = std::move(done)] { done(problemOf(*job)); });
    job->start();
}

void QtSecrets::remove(const std::string& name, std::function<void(const std::string&)> done) {
    auto* job = jobFor<QKeychain::DeletePasswordJob>(name);
    QObject::connect(job, &QKeychain::Job::finished, job, [job, done = std::move(done)] { done(problemOf(*job)); });
    job->start();
}

}  // namespace brindlehum
