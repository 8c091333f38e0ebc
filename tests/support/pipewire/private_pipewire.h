// PrivatePipeWire: a PipeWire server of a test's own, with sinks that the test adds and removes.
#pragma once

#include <csignal>
#include <string>

#include "support/audio_files.h"

namespace brindlehum::test {

// Points this process's environment at a runtime folder of its own and runs a server there, with the sinks "sink2"
// ("Pair"), "sink12" ("Room of twelve") and "sink16" (no description) at 48 kHz in blocks of 1024 frames. The server
// ends with the object, and with the process however that ends. One at a time, on the main thread. Every call throws
// std::runtime_error on failure.
class PrivatePipeWire {
public:
    enum class Start : uint8_t { now, later };
    explicit PrivatePipeWire(Start when = Start::now);
    ~PrivatePipeWire();
    PrivatePipeWire(const PrivatePipeWire&) = delete;
    PrivatePipeWire& operator=(const PrivatePipeWire&) = delete;

    void start();
    void kill();  // at once, as in a crash
    // While frozen, the server stays and doesn't answer.
    void freeze() { ::kill(server_, SIGSTOP); }
    void thaw() { ::kill(server_, SIGCONT); }

    void addSink(const std::string& name, int channels);
    void removeSink(const std::string& name);
    void setDefaultSink(const std::string& name);
    // Sets the clock's "quantum" in frames or "rate" in Hz against all clients' requests.
    void forceClock(const std::string& what, int value);

private:
    TempFolder folder_;
    pid_t server_ = 0;
};

}  // namespace brindlehum::test
