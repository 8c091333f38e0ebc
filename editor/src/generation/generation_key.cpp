// Keeps the key.
#include "editor/generation/generation_key.h"

#include <QPointer>

namespace brindlehum {
namespace {

std::string nameOf(const std::string& origin) {
    return "Generation service " + origin;
}

}  // namespace

GenerationKey::GenerationKey(Secrets* secrets, SettingsStore& settings) : secrets_(secrets), settings_(settings) {}

GenerationKey::Place GenerationKey::place(const std::string& origin) const {
    if (thisRun_.contains(origin)) { return Place::thisRun; }
    return !origin.empty() && settings_.value().generationKeyed == origin ? Place::keyring : Place::none;
}

void GenerationKey::note(const std::string& origin) {
    settings_.change([&](AppSettings& settings) { settings.generationKeyed = origin; });
    Q_EMIT changed();
}

void GenerationKey::set(const std::string& origin, const SecretText& key) {
    withholdCoreDumps();
    thisRun_[origin] = key;
    problem_ = secrets_ ? "" : "There is no keyring";
    if (secrets_) {
        secrets_->write(nameOf(origin), key, [self = QPointer(this), origin, key](const std::string& problem) {
            if (!self) { return; }
            const auto kept = self->thisRun_.find(origin);
            if (kept == self->thisRun_.end() || kept->second.view() != key.view()) { return; }  // replaced meanwhile
            self->problem_ = problem;
            if (!problem.empty()) { return self->changed(); }
            self->thisRun_.erase(kept);
            self->note(origin);
        });
    }
    Q_EMIT changed();
}

void GenerationKey::forget(const std::string& origin) {
    thisRun_.erase(origin);
    problem_.clear();
    if (secrets_) {
        secrets_->remove(nameOf(origin), [self = QPointer(this)](const std::string& problem) {
            if (!self || problem.empty()) { return; }
            self->problem_ = problem;
            Q_EMIT self->changed();
        });
    }
    if (settings_.value().generationKeyed == origin) { return note({}); }
    Q_EMIT changed();
}

void GenerationKey::read(const std::string& origin, std::function<void(const Reading&)> done) {
    if (const auto kept = thisRun_.find(origin); kept != thisRun_.end()) { return done({kept->second}); }
    if (place(origin) == Place::none) { return done({}); }
    if (!secrets_) { return done({{}, "There is no keyring here: enter the service's key in Settings"}); }
    secrets_->read(nameOf(origin), [self = QPointer(this), done = std::move(done)](Secrets::Reading reading) {
        if (!self) { return; }
        if (!reading.problem.empty()) { return done({{}, "The keyring can't be read: " + reading.problem}); }
        if (!reading.secret) { return done({{}, "The service's key isn't in the keyring: enter it in Settings"}); }
        withholdCoreDumps();
        done({std::move(reading.secret)});
    });
}

}  // namespace brindlehum
