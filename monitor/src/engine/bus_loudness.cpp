// Empties the ring ten times a second.
#include "monitor/engine/bus_loudness.h"

#include <algorithm>

namespace brindlehum {
namespace {

constexpr double everySeconds = 0.1;
constexpr int pieceFrames = 4096;

}  // namespace

BusLoudness::BusLoudness(MainLoop& loop) : loop_(loop), background_(loop, "Brindlehum.loud") {}

BusLoudness::~BusLoudness() = default;

void BusLoudness::open(std::shared_ptr<mn_ring> ring, double sampleRate) {
    ring_ = std::move(ring);
    bus_.sampleRate = sampleRate;
    timer_ = loop_.every(everySeconds, [this] { measure(); });
}

void BusLoudness::setBus(const SpeakerList& speakers, int offset) {
    bus_.speakers = speakers;
    bus_.offset = offset;
}

void BusLoudness::close() {
    timer_.reset();
    ring_.reset();
}

void BusLoudness::measure() {
    if (!ring_ || background_.pending() > 0) { return; }
    background_.run(
        [this, ring = ring_, bus = bus_] {
            drain(ring.get(), bus);
            return live_.reading();
        },
        [this](LiveLoudness::Reading reading) {
            if (reading == reading_) { return; }
            reading_ = std::move(reading);
            Q_EMIT changed();
        });
}

void BusLoudness::drain(mn_ring* ring, const Bus& bus) {
    if (bus != opened_) {
        live_.open(bus.sampleRate, bus.speakers);
        opened_ = bus;
    }
    const auto width = size_t(mn_ring_channels(ring));
    planes_.resize(width);
    silence_.resize(pieceFrames, 0.0F);
    std::vector<float*> all(width);
    for (size_t c = 0; c < width; ++c) {
        planes_[c].resize(pieceFrames);
        all[c] = planes_[c].data();
    }
    std::vector<const float*> chosen(bus.speakers.size(), silence_.data());
    for (size_t c = 0; c < chosen.size(); ++c) {
        const int channel = bus.offset + int(c);
        if (channel >= 0 && size_t(channel) < width) { chosen[c] = all[size_t(channel)]; }
    }
    while (const int frames = mn_ring_read(ring, all.data(), pieceFrames, nullptr)) {
        live_.push(chosen.data(), frames);
    }
}

void BusLoudness::reset() {
    background_.run(
        [this] {
            live_.reset();
            return live_.reading();
        },
        [this](LiveLoudness::Reading reading) {
            reading_ = std::move(reading);
            Q_EMIT changed();
        });
}

}  // namespace brindlehum
