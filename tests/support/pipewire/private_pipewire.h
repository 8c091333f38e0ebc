// PrivatePipeWire: a PipeWire server of a test's own, with sinks that the test adds and removes.
#pragma once

#include <pipewire/extensions/metadata.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>

#include "support/audio_files.h"
#include "support/pipewire/pipewire_client.h"

namespace brindlehum::test {

// Points this process's environment at a runtime folder of its own and runs a server there, with the sinks "sink2"
// ("Pair"), "sink12" ("Room of twelve") and "sink16" (no description) at 48 kHz in blocks of 1024 frames. The server
// ends with the object, and with the process however that ends. One at a time, on the main thread. Every call throws
// std::runtime_error on failure.
class PrivatePipeWire {
public:
    enum class Start : uint8_t { now, later };
    explicit PrivatePipeWire(Start when = Start::now) {
        ::setenv("PIPEWIRE_RUNTIME_DIR", folder_.path().c_str(), 1);
        ::unsetenv("PIPEWIRE_REMOTE");
        if (when == Start::now) { start(); }
    }
    ~PrivatePipeWire() { kill(); }
    PrivatePipeWire(const PrivatePipeWire&) = delete;
    PrivatePipeWire& operator=(const PrivatePipeWire&) = delete;

    void start() {
        const pid_t parent = ::getpid();
        server_ = ::fork();
        if (server_ < 0) { throw std::runtime_error("no process for PipeWire"); }
        if (server_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            ::setenv("XDG_RUNTIME_DIR", folder_.path().c_str(), 1);
            if (::getppid() == parent) { ::execlp("pipewire", "pipewire", "-c", BRINDLEHUM_TEST_PIPEWIRE, nullptr); }
            ::_exit(127);
        }
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!std::filesystem::exists(folder_ / "pipewire-0")) {
            if (std::chrono::steady_clock::now() > limit || ::waitpid(server_, nullptr, WNOHANG) != 0) {
                throw std::runtime_error("PipeWire didn't come up");
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        // The socket comes before the sinks.
        PipeWireClient client;
        const std::lock_guard guard(client);
        for (const auto& [name, channels] : {std::pair{"sink2", 2U}, {"sink12", 12U}, {"sink16", 16U}}) {
            const uint32_t node = client.waitForNode(name);
            client.waitFor("ports", [&, count = channels] { return client.ports(node, "out").size() == count; });
        }
    }
    // At once, as in a crash.
    void kill() {
        if (server_ <= 0) { return; }
        ::kill(server_, SIGKILL);
        ::waitpid(server_, nullptr, 0);
        server_ = 0;
        std::filesystem::remove(folder_ / "pipewire-0");
    }
    // While frozen, the server stays and doesn't answer.
    void freeze() { ::kill(server_, SIGSTOP); }
    void thaw() { ::kill(server_, SIGCONT); }

    void addSink(const std::string& name, int channels) {
        std::string position;
        for (int c = 0; c < channels; ++c) { position += " AUX" + std::to_string(c); }
        position = "[" + position + " ]";
        const std::string count = std::to_string(channels);
        const std::string ports =
            "{ direction = Input mode = dsp monitor = true format = { mediaType = audio mediaSubtype = raw "
            "format = F32 rate = 48000 channels = " +
            count + " position = " + position + " } }";
        pw_properties* properties = pw_properties_new(
            "factory.name", "support.null-audio-sink", PW_KEY_MEDIA_CLASS, "Audio/Sink", PW_KEY_OBJECT_LINGER, "true",
            PW_KEY_NODE_NAME, name.c_str(), "audio.rate", "48000", "audio.channels", count.c_str(), "audio.position",
            position.c_str(), "node.param.PortConfig", ports.c_str(), nullptr);
        PipeWireClient client;
        const std::lock_guard guard(client);
        auto* proxy = static_cast<pw_proxy*>(pw_core_create_object(client.core(), "adapter", PW_TYPE_INTERFACE_Node,
                                                                   PW_VERSION_NODE, &properties->dict, 0));
        pw_properties_free(properties);
        const uint32_t node = client.waitForNode(name);
        client.waitFor("ports", [&] { return client.ports(node, "out").size() == size_t(channels); });
        pw_proxy_destroy(proxy);
    }
    void removeSink(const std::string& name) {
        PipeWireClient client;
        const std::lock_guard guard(client);
        pw_registry_destroy(client.registry(), client.waitForNode(name));
        client.waitFor("the end of " + name,
                       [&] { return client.find(PW_TYPE_INTERFACE_Node, PW_KEY_NODE_NAME, name).empty(); });
    }
    void setDefaultSink(const std::string& name) {
        setMetadata("default", "default.audio.sink", "Spa:String:JSON", "{ \"name\": \"" + name + "\" }");
    }
    // Sets the clock's "quantum" in frames or "rate" in Hz against all clients' requests.
    void forceClock(const std::string& what, int value) {
        setMetadata("settings", "clock.force-" + what, "", std::to_string(value));
    }

private:
    static void setMetadata(const char* name, const std::string& key, const char* type, const std::string& value) {
        PipeWireClient client;
        const std::lock_guard guard(client);
        std::vector<uint32_t> found;
        client.waitFor(
            name, [&] { return !(found = client.find(PW_TYPE_INTERFACE_Metadata, "metadata.name", name)).empty(); });
        auto* metadata = static_cast<pw_metadata*>(
            pw_registry_bind(client.registry(), found.front(), PW_TYPE_INTERFACE_Metadata, PW_VERSION_METADATA, 0));
        pw_metadata_set_property(metadata, PW_ID_CORE, key.c_str(), type, value.c_str());
        client.sync();
        pw_proxy_destroy(reinterpret_cast<pw_proxy*>(metadata));
    }
    TempFolder folder_;
    pid_t server_ = 0;
};

}  // namespace brindlehum::test
