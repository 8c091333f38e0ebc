// Secrets through QtKeychain.
#include "platform/qt_secrets.h"

#include <qt6keychain/keychain.h>

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

}  // namespace

void QtSecrets::read(const std::string& name, std::function<void(Reading)> done) {
    auto* job = jobFor<QKeychain::ReadPasswordJob>(name);
    QObject::connect(job, &QKeychain::Job::finished, job, [job, done = std::move(done)] {
        const bool isThere = job->error() == QKeychain::NoError;
        done({isThere ? std::optional(job->textData().toStdString()) : std::nullopt, problemOf(*job)});
    });
    job->start();
}

void QtSecrets::write(const std::string& name, const std::string& secret,
                      std::function<void(const std::string&)> done) {
    auto* job = jobFor<QKeychain::WritePasswordJob>(name);
    job->setTextData(QString::fromStdString(secret));
    QObject::connect(job, &QKeychain::Job::finished, job, [job, done = std::move(done)] { done(problemOf(*job)); });
    job->start();
}

void QtSecrets::remove(const std::string& name, std::function<void(const std::string&)> done) {
    auto* job = jobFor<QKeychain::DeletePasswordJob>(name);
    QObject::connect(job, &QKeychain::Job::finished, job, [job, done = std::move(done)] { done(problemOf(*job)); });
    job->start();
}

}  // namespace brindlehum
