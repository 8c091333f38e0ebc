// ListeningSetup: stores and publishes each choice.
#include "mix/player/listening_setup.h"

#include <cmath>

#include "mix/config/mix_builder.h"
#include "mix/config/speaker_map.h"

namespace brindlehum {

ListeningSetup::ListeningSetup(EngineSeat& seat, SettingsStore& settings, MainLoop& loop, const LoadedSound& sound,
                               PlayerMessage& message)
    : seat_(seat), settings_(settings), loop_(loop), sound_(sound), message_(message), upmix_(settings.value().upmix) {
    watching_ = devices().watch([this] { Q_EMIT outputsChanged(); });
}

std::optional<AudioOutputDevice> ListeningSetup::device() const {
    const auto all = devices().allOutputs();
    const AudioOutputDevice* found = SpeakerMap::deviceOf(profile(), all, devices().defaultOutput());
    return found ? std::optional(*found) : std::nullopt;
}

void ListeningSetup::chooseFirstProfile() {
    if (settings_.value().activeProfileID || devices().server() != SoundServer::running) { return; }
    const auto all = devices().allOutputs();
    const OutputProfile* fitting = SpeakerMap::fitting(settings_.value().profiles, all, devices().defaultOutput());
    if (fitting) { selectProfile(UUID(fitting->id)); }
}

std::optional<SpeakerList> ListeningSetup::upmixRoom() const {
    const auto source = sound_.source();
    return source ? MixBuilder::upmixRoom(*source, sound_.info()->channels, profile()) : std::nullopt;
}

UpmixState ListeningSetup::upmixState() const {
    if (!upmixRoom()) { return UpmixState::impossible; }
    if (!upmix_.enabled) { return UpmixState::off; }
    const bool headphones = profile().kind == OutputProfile::Kind::headphones;
    return headphones && seat_.engine().binauralMissing() ? UpmixState::unheard : UpmixState::on;
}

std::optional<ListeningSnapshot> ListeningSetup::snapshot() const {
    const auto source = sound_.source();
    if (!source) { return std::nullopt; }
    const PlaybackEngine& engine = seat_.engine();
    return ListeningSnapshot{*source,
                             sound_.info()->channels,
                             SpeakerMap::onDevice(profile(), engine.device().positions),
                             engine.deviceChannels(),
                             listen_,
                             rotation_,
                             monoToCenter(),
                             upmix_,
                             engine.binauralMissing(),
                             comparison_};
}

void ListeningSetup::publish() {
    const auto now = snapshot();
    if (!now || !seat_.isTaken() || !isDeviceOpen()) { return; }
    const ListeningMix mix = listeningMix(*now);
    if (mix.standsIn) { message_.fail("No HRTF set found: headphones play the stereo fold-down"); }
    seat_.setConfig(mix.config);
}

void ListeningSetup::setListen(ListenMode mode) {
    if (mode == listen_) { return; }
    listen_ = mode;
    publish();
    Q_EMIT changed();
}

void ListeningSetup::setRotation(const Rotation& rotation) {
    if (rotation == rotation_) { return; }
    rotation_ = rotation;
    publish();
    Q_EMIT changed();
}

void ListeningSetup::setUpmix(const UpmixSettings& upmix) {
    if (upmix == upmix_) { return; }
    upmix_ = upmix;
    comparison_.reset();
    if (!settling_) {
        settling_ = loop_.after(0, [this] { settleUpmix(); });
    }
}

void ListeningSetup::settleUpmix() {
    settling_.reset();
    settings_.change([&](AppSettings& s) { s.upmix = upmix_; });
    publish();
    Q_EMIT changed();
}

void ListeningSetup::setComparison(const std::optional<UpmixComparison>& comparison) {
    if (comparison == comparison_) { return; }
    comparison_ = comparison;
    publish();
    Q_EMIT changed();
}

void ListeningSetup::setVolumeDB(double db) {
    if (std::isnan(db) || db == volumeDB_) { return; }
    volumeDB_ = db;
    seat_.setGain(db <= silentDB ? 0 : std::pow(10, db / 20));
    Q_EMIT changed();
}

void ListeningSetup::selectProfile(const UUID& id) {
    if (settings_.value().activeProfileID == id) { return; }
    settings_.change([&](AppSettings& s) { s.activeProfileID = id; });
    Q_EMIT profileSelected();
}

}  // namespace brindlehum
