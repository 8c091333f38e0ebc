// GenerationKey: the key of the generation service, in the user's keyring or in memory for this run.
#pragma once

#include <QObject>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "platform/secrets.h"
#include "settings/settings_store.h"

namespace brindlehum {

// Main thread. A key belongs to one origin (RFC 6454) and is given out for no other. Nothing but the keyring and this
// object's memory ever holds it; the settings only note which origin has one.
class GenerationKey : public QObject {
    Q_OBJECT
public:
    enum class Place {
        none,
        keyring,
        thisRun,  // there is no keyring, or it refused the key
    };

    // Without `secrets` a key lives for this run. Both must outlive the keyring's answers.
    GenerationKey(Secrets* secrets, SettingsStore& settings);

    Place place(const std::string& origin) const;
    // Why the keyring refused the last key; empty if it didn't.
    const std::string& problem() const { return problem_; }
    // Replaces the key, for this run at once and in the keyring as soon as that answers.
    void set(const std::string& origin, const SecretText& key);
    void forget(const std::string& origin);

    struct Reading {
        std::optional<SecretText> key{};
        std::string problem{};  // why a key that should be there isn't
    };
    // Calls back at once, or when the keyring answers; not after the end of this object.
    void read(const std::string& origin, std::function<void(const Reading&)> done);

Q_SIGNALS:
    void changed();  // place() has

private:
    void note(const std::string& origin);

    Secrets* secrets_;
    SettingsStore& settings_;
    std::map<std::string, SecretText> thisRun_;  // by origin
    std::string problem_;
};

}  // namespace brindlehum
