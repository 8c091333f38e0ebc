// ListeningSetup: stores and publishes each choice.
#include "mix/player/listening_setup.h"

#include <cmath>

#include "mix/config/speaker_map.h"
#include "upmix/upmix_planner.h"

namespace brindlehum {

ListeningSetup::ListeningSetup(EngineSeat& seat, SettingsStore& settings, const LoadedSound& sound,
                               PlayerMessage& message)
    : seat_(seat), settings_(settings), sound_(sound), message_(message), upmix_(settings.value().upmix) {
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

bool ListeningSetup::canUpmix() const {
    const auto format = sound_.source();
    const SpeakerList* list = format ? format->asSpeakers() : nullptr;
    if (!list || int(list->size()) != sound_.info()->channels) { return false; }
    const bool headphones = profile().kind == OutputProfile::Kind::headphones;
    return UpmixPlanner::applies(*list, speakers(headphones ? LayoutID::l714 : profile().layout));
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
                             engine.binauralMissing()};
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
    settings_.change([&](AppSettings& s) { s.upmix = upmix; });
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
