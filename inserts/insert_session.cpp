// Does what the monitor says, line by line.
#include "insert_session.h"

#include <cstdlib>
#include <nlohmann/json.hpp>

#include "base/error.h"

namespace brindlehum {
namespace {

using nlohmann::json;

constexpr double lookSeconds = 0.05;
constexpr double retrySeconds = 0.5;  // while the device isn't there
constexpr double reopenSeconds = 0.05;
constexpr int mostStalls = 40;  // two seconds
constexpr int stalledExit = 3;

}  // namespace

InsertSession::InsertSession(AudioSystem& audio, PluginHost& host, MainLoop& loop, Tell tell)
    : audio_(audio),
      host_(host),
      loop_(loop),
      tell_(std::move(tell)),
      windows_(loop, tell_),
      looks_(loop.every(lookSeconds, [this] { look(); })) {}

void InsertSession::handle(const std::string& line) {
    const json message = json::parse(line, nullptr, false);
    if (!message.is_object()) { return; }
    try {
        act(message);
    } catch (const json::exception&) {  // not one of ours
    }
}

void InsertSession::act(const json& message) {
    const std::string what = message.value("do", "");
    const auto id = [&] { return UUID::parse(message.at("id").get<std::string>()).value_or(UUID()); };
    if (what == "open") {
        close();
        wanted_ = true;
        message.at("output").get_to(output_);
        message.at("channels").get_to(channels_);
        message.at("inserts").get_to(inserts_);
        open();
    } else if (what == "chain") {
        message.at("inserts").get_to(inserts_);
        if (rack_) { rack_->set(inserts_); }
        tellStatus();
    } else if (what == "value" && rack_) {
        const auto symbol = message.at("symbol").get<std::string>();
        const auto value = message.at("value").get<double>();
        rack_->setValue(id(), symbol, value);
        windows_.show(id(), symbol, value);
    } else if (what == "file" && rack_) {
        rack_->setFile(id(), message.at("uri").get<std::string>(), message.at("path").get<std::string>());
    } else if (what == "bypass" && rack_) {
        rack_->setBypassed(id(), message.at("on").get<bool>());
        windows_.showBypassed(id(), message.at("on").get<bool>());
    } else if (what == "window") {
        windows_.open(id(), message.at("parent").get<uint64_t>(), message.at("scale").get<double>());
    } else if (what == "closeWindow") {
        windows_.close(id());
    } else if (what == "save") {
        tellStates();
    } else if (what == "ping") {
        tell_({{"is", "pong"}});
    }
}

void InsertSession::open() {
    retry_.reset();
    DuplexAudio* const duplex = audio_.duplex();
    try {
        if (!duplex) { throw Error(ErrorKind::device, "no sound server answers"); }
        if (!rack_) { rack_ = std::make_unique<InsertRack>(host_, channels_); }
        stream_ = duplex->openPass(output_, rack_->target(), [this] {
            // A little later: handling it destroys the stream that calls, and what changed may change again.
            retry_ = loop_.after(reopenSeconds, [this] {
                close();
                open();
            });
        });
        rack_->setSampleRate(stream_->sampleRate());
        rack_->set(inserts_);
        windows_.follow(rack_.get());
        stream_->start();
        tellStatus();
    } catch (const Error&) {
        stream_.reset();
        retry_ = loop_.after(retrySeconds, [this] { open(); });
    }
}

void InsertSession::close() {
    retry_.reset();
    windows_.follow(nullptr);
    stream_.reset();
    rack_.reset();
    if (told_ != 0) { tell_({{"is", "closed"}}); }
    told_ = 0;
}

void InsertSession::look() {
    watchForStall();
    if (!stream_) { return; }
    if (const uint32_t node = stream_->node(); node != told_) {
        told_ = node;
        tell_({{"is", "open"}, {"node", node}, {"sampleRate", stream_->sampleRate()}});
    }
    if (rack_->look()) { tellStatus(); }
}

// Foreign code that doesn't come back holds up the whole graph: better no inserts than no sound.
void InsertSession::watchForStall() {
    const bool inside = rack_ && rack_->target().isInside();
    const uint64_t block = rack_ ? rack_->target().blocks() : 0;
    stalls_ = inside && block == block_ ? stalls_ + 1 : 0;
    block_ = block;
    if (stalls_ < mostStalls) { return; }
    tell_({{"is", "stalled"}, {"insert", busyWith()}});
    std::_Exit(stalledExit);
}

void InsertSession::tellStatus() {
    if (!rack_) { return; }
    tell_({{"is", "status"}, {"inserts", rack_->status()}, {"latency", rack_->latency()}});
}

void InsertSession::tellStates() {
    json states = json::object();
    if (rack_) {
        for (const auto& [id, text] : rack_->states()) { states[id.string()] = text; }
    }
    tell_({{"is", "states"}, {"states", states}});
}

int InsertSession::busyWith() const noexcept {
    return rack_ ? rack_->busyWith() : -1;
}

}  // namespace brindlehum
