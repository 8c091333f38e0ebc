// The server's process, and requests to it.
#include "support/pipewire/private_pipewire.h"

#include <pipewire/extensions/metadata.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <thread>

#include "support/pipewire/pipewire_client.h"

namespace brindlehum::test {

namespace {

const char* const script = BRINDLEHUM_TEST_PIPEWIRE_FOLDER "/private-pipewire.sh";

void setMetadata(const char* name, const std::string& key, const char* type, const std::string& value) {
    PipeWireClient client;
    client.lock();
    std::vector<uint32_t> found;
    client.waitFor(name,
                   [&] { return !(found = client.find(PW_TYPE_INTERFACE_Metadata, "metadata.name", name)).empty(); });
    auto* metadata = static_cast<pw_metadata*>(
        pw_registry_bind(client.registry(), found.front(), PW_TYPE_INTERFACE_Metadata, PW_VERSION_METADATA, 0));
    pw_metadata_set_property(metadata, PW_ID_CORE, key.c_str(), type, value.c_str());
    client.sync();
    pw_proxy_destroy(reinterpret_cast<pw_proxy*>(metadata));
    client.unlock();
}

}  // namespace

PrivatePipeWire::PrivatePipeWire(Start when) {
    std::string pattern = std::filesystem::temp_directory_path() / "brindlehum-pipewire-XXXXXX";
    if (!mkdtemp(pattern.data())) { throw std::runtime_error("no temporary folder"); }
    folder_ = pattern;
    ::setenv("PIPEWIRE_RUNTIME_DIR", folder_.c_str(), 1);
    ::unsetenv("PIPEWIRE_REMOTE");
    if (when == Start::now) { start(); }
}

PrivatePipeWire::~PrivatePipeWire() {
    kill();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

void PrivatePipeWire::start() {
    const pid_t parent = ::getpid();
    server_ = ::fork();
    if (server_ < 0) { throw std::runtime_error("no process for PipeWire"); }
    if (server_ == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() == parent) { ::execl(script, script, "serve", folder_.c_str(), nullptr); }
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
    client.lock();
    for (const auto& [name, channels] : {std::pair{"sink2", 2U}, {"sink12", 12U}, {"sink16", 16U}}) {
        const uint32_t node = client.waitForNode(name);
        client.waitFor("ports", [&, count = channels] { return client.ports(node, "out").size() == count; });
    }
    client.unlock();
}

void PrivatePipeWire::kill() {
    if (server_ <= 0) { return; }
    ::kill(server_, SIGKILL);
    ::waitpid(server_, nullptr, 0);
    server_ = 0;
    std::error_code ignored;
    std::filesystem::remove(folder_ / "pipewire-0", ignored);
}

void PrivatePipeWire::freeze() {
    ::kill(server_, SIGSTOP);
}
void PrivatePipeWire::thaw() {
    ::kill(server_, SIGCONT);
}

void PrivatePipeWire::addSink(const std::string& name, int channels) {
    std::string position;
    for (int c = 0; c < channels; ++c) { position += " AUX" + std::to_string(c); }
    const std::string count = std::to_string(channels);
    const std::string ports =
        "{ direction = Input mode = dsp monitor = true format = { mediaType = audio mediaSubtype = raw format = F32 "
        "rate = 48000 channels = " +
        count + " position = [" + position + " ] } }";
    pw_properties* properties = pw_properties_new(
        "factory.name", "support.null-audio-sink", PW_KEY_MEDIA_CLASS, "Audio/Sink", PW_KEY_OBJECT_LINGER, "true",
        PW_KEY_NODE_NAME, name.c_str(), "audio.rate", "48000", "audio.channels", count.c_str(), "audio.position",
        ("[" + position + " ]").c_str(), "node.param.PortConfig", ports.c_str(), nullptr);
    PipeWireClient client;
    client.lock();
    auto* proxy = static_cast<pw_proxy*>(
        pw_core_create_object(client.core(), "adapter", PW_TYPE_INTERFACE_Node, PW_VERSION_NODE, &properties->dict, 0));
    pw_properties_free(properties);
    const uint32_t node = client.waitForNode(name);
    client.waitFor("ports", [&] { return client.ports(node, "out").size() == size_t(channels); });
    pw_proxy_destroy(proxy);
    client.unlock();
}

void PrivatePipeWire::removeSink(const std::string& name) {
    PipeWireClient client;
    client.lock();
    pw_registry_destroy(client.registry(), client.waitForNode(name));
    client.waitFor("the end of " + name,
                   [&] { return client.find(PW_TYPE_INTERFACE_Node, PW_KEY_NODE_NAME, name).empty(); });
    client.unlock();
}

void PrivatePipeWire::setDefaultSink(const std::string& name) {
    setMetadata("default", "default.audio.sink", "Spa:String:JSON", "{ \"name\": \"" + name + "\" }");
}

void PrivatePipeWire::setSetting(const std::string& key, int value) {
    setMetadata("settings", key, "", std::to_string(value));
}

void PrivatePipeWire::forceQuantum(int frames) {
    setSetting("clock.force-quantum", frames);
}
void PrivatePipeWire::forceRate(int hertz) {
    setSetting("clock.force-rate", hertz);
}

}  // namespace brindlehum::test
