// QtSecrets: the desktop's Secret Service or wallet, never a file of ours.
#pragma once

#include "platform/secrets.h"

namespace brindlehum {

class QtSecrets : public Secrets {
public:
    void read(const std::string& name, std::function<void(Reading)> done) override;
    void write(const std::string& name, const SecretText& secret,
               std::function<void(const std::string& problem)> done) override;
    void remove(const std::string& name, std::function<void(const std::string& problem)> done) override;
};

}  // namespace brindlehum
