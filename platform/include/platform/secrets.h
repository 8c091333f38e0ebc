// Secrets: passwords in the user's keyring.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/secret_text.h"

namespace brindlehum {

// Main thread. Each call returns at once, and its answer comes later: the keyring may ask the user to unlock it first.
// An answer may come after the caller is gone.
class Secrets {
public:
    struct Reading {
        std::optional<SecretText> secret{};  // none where there is no such entry
        std::string problem{};               // why the keyring can't be read; empty otherwise
    };
    virtual ~Secrets() = default;
    virtual void read(const std::string& name, std::function<void(Reading)> done) = 0;
    // `done` gets why it couldn't be stored, or an empty text.
    virtual void write(const std::string& name, const SecretText& secret,
                       std::function<void(const std::string& problem)> done) = 0;
    // `done` as above; an entry that isn't there is no problem.
    virtual void remove(const std::string& name, std::function<void(const std::string& problem)> done) = 0;
};

}  // namespace brindlehum
