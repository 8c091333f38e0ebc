// The error value of the system: a code and a one-line text for the user.
#pragma once

#include <stdexcept>
#include <string>

namespace brindlehum {

// Thrown at the edges (files, devices), never inside a render. Codes in use: 1 to 4 stream reader, 10 output
// device, 20 WAV size limit, 31 and up as the later subsystems land, 70 to 72 embedded metadata; 0 where only the text
// matters.
class Error : public std::runtime_error {
public:
    Error(int code, const std::string& description) : std::runtime_error(description), code_(code) {}
    int code() const noexcept { return code_; }
    static constexpr const char* domain = "Brindlehum";

private:
    int code_;
};

}  // namespace brindlehum
