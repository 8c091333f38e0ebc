// MonitorEngine: opens and closes the duplex stream, publishes the matrix, and waits for what is missing.
#include "monitor/engine/monitor_engine.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "base/error.h"
#include "mix/config/speaker_map.h"
#include "mix/render/render_watch.h"
#include "monitor/engine/monitor_devices.h"
#include "monitor/state/level_match.h"
#include "monitor/state/monitor_matrix.h"

namespace brindlehum {
namespace {

constexpr double retrySeconds = 1;  // while something is missing
constexpr double maxFall = 0.1;     // seconds that the device gets to fall silent

const char* const noSource = "Choose the source (where your DAW's bus arrives)";
const char* const noServer = "The monitor needs a sound server, and none answers";
const char* const howls = "What the output plays comes back to the source, which would howl; the monitor waits";
const char* const notCombined = "Couldn't combine the source and output devices";
const char* const insertsLoad = "The inserts are being loaded";
const char* const noChannels = "The devices report no usable channels";

}  // namespace

MonitorEngine::MonitorEngine(AudioSystem& audio, SettingsStore& settings, MainLoop& loop,
                             ConfigPublisher::StageMaker makeStage)
    : audio_(audio),
      settings_(settings),
      loop_(loop),
      choice_(settings.defaults()),
      state_(choice_.state()),
      sourceUID_(choice_.sourceUID()),
      profileID_(choice_.profileID()),
      otherProfileID_(choice_.otherProfileID()),
      makeStage_(std::move(makeStage)),
      loudness_(loop),
      plugins_(loop),
      inserts_(settings.defaults(), loop) {
    if (sourceUID_ == DuplexAudio::busUID) { keepBus(); }
    connect(&settings_, &SettingsStore::changed, this, [this] { settingsChanged(); });
    connect(&inserts_, &MonitorInserts::changed, this, &MonitorEngine::changed);
    connect(&inserts_, &MonitorInserts::routeChanged, this, [this] { routeChanged(); });
    watching_ = audio_.watch([this] { systemChanged(); });
}

MonitorEngine::~MonitorEngine() {
    inserts_.disconnect(this);
    close(Falls::softly);
}

const OutputProfile& MonitorEngine::profile() const {
    const auto& profiles = settings_.value().profiles;
    const auto chosen = std::ranges::find_if(profiles, [this](const auto& each) { return each.id == profileID_; });
    return chosen != profiles.end() ? *chosen : settings_.activeProfile();
}

void MonitorEngine::setState(const MonitorState& state) {
    if (state == state_) { return; }
    const bool reordered = state.source != state_.source;
    const bool wider =
        sourceUID_ == DuplexAudio::openPortsUID && (reordered || state.sourceOffset != state_.sourceOffset);
    const bool refolded = reordered || state.mode != state_.mode || state.check != state_.check;
    state_ = state;
    choice_.keep(state_);
    if (refolded) { matchLevels(); }
    if (reordered && bus_) { keepBus(); }
    wider ? restartIfRunning() : apply();
    Q_EMIT changed();
}

void MonitorEngine::setSourceUID(const std::optional<std::string>& uid) {
    if (uid == sourceUID_) { return; }
    sourceUID_ = uid;
    choice_.keepSource(uid);
    if (uid == DuplexAudio::busUID && !bus_) { keepBus(); }
    restartIfRunning();
    Q_EMIT changed();
}

void MonitorEngine::setProfileID(const std::optional<UUID>& id) {
    if (id == profileID_) { return; }
    profileID_ = id;
    choice_.keepProfile(id);
    followProfile();
    Q_EMIT changed();
}

void MonitorEngine::setOtherProfileID(const std::optional<UUID>& id) {
    if (id == otherProfileID_) { return; }
    otherProfileID_ = id;
    choice_.keepOtherProfile(id);
    matchLevels();
    apply();
    Q_EMIT changed();
}

const OutputProfile* MonitorEngine::otherProfile() const {
    const auto& profiles = settings_.value().profiles;
    const auto chosen = std::ranges::find_if(profiles, [this](const auto& each) { return each.id == otherProfileID_; });
    return chosen != profiles.end() && chosen->id != profile().id ? &*chosen : nullptr;
}

void MonitorEngine::switchProfiles() {
    const OutputProfile* const other = otherProfile();
    if (!other) { return; }
    const UUID next = other->id;
    otherProfileID_ = profile().id;
    choice_.keepOtherProfile(otherProfileID_);
    setProfileID(next);
}

// An edited or another profile is heard at once; one that plays elsewhere takes the monitor along.
void MonitorEngine::followProfile() {
    matchLevels();
    const OutputProfile& now = profile();
    if (!stream_ || now.deviceUID != opened_.deviceUID) { return restartIfRunning(); }
    opened_ = now;
    apply();
}

// By the loudness of the last seconds, and from then on the same.
void MonitorEngine::matchLevels() {
    const OutputProfile* const other = otherProfile();
    matchDB_ = other ? LevelMatch::gainDB(state_, profile(), *other, loudness_.reading().powers) : 0;
}

std::vector<AudioInputDevice> MonitorEngine::inputs() {
    DuplexAudio* const duplex = audio_.duplex();
    if (!duplex) { return {}; }
    if (!bus_) { keepBus(); }
    return duplex->allInputs();
}

// Our own bus has the channels of the chosen source, in its order.
void MonitorEngine::keepBus() {
    DuplexAudio* const duplex = audio_.duplex();
    std::vector<std::string> wanted = positions(state_.source);
    if (!duplex || (bus_ && wanted == busPositions_)) { return; }
    bus_.reset();
    bus_ = duplex->makeBus(wanted);
    busPositions_ = std::move(wanted);
}

void MonitorEngine::start() {
    if (running()) { return; }
    if (!wanted_) { lostBefore_ = 0; }
    wanted_ = sourceUID_.has_value();
    if (!wanted_) { return say(noSource); }
    tryToOpen();
}

void MonitorEngine::stop() {
    wanted_ = false;
    retry_.reset();
    close(Falls::softly);
    inserts_.release();
    message_.clear();
    Q_EMIT changed();
}

// Opens the devices, or waits for them and says why.
void MonitorEngine::tryToOpen() {
    std::string problem = open();
    if (problem.empty()) {
        retry_.reset();
    } else {
        close(Falls::atOnce);
        if (!retry_) {
            retry_ = loop_.every(retrySeconds, [this] {
                if (waiting()) { tryToOpen(); }
            });
        }
    }
    say(std::move(problem));
}

void MonitorEngine::say(std::string message) {
    message_ = std::move(message);
    Q_EMIT changed();
}

std::string MonitorEngine::open() {
    DuplexAudio* const duplex = audio_.duplex();
    if (!duplex) { return noServer; }
    const OutputProfile& wanted = profile();
    auto [problem, request, positions, outputChannels] =
        chosenDevices({duplex->allInputs(), audio_.allOutputs(), audio_.defaultOutput()}, *sourceUID_, wanted, state_);
    if (!problem.empty()) { return problem; }
    if (duplex->feedsBack(request.input, request.output)) { return howls; }
    const bool hasNodes = audio_.server() == SoundServer::running;
    route_ = hasNodes ? inserts_.route(request.output, outputChannels) : MonitorInserts::Route();
    if (route_.isPending) { return insertsLoad; }
    if (route_.node != 0 && duplex->feedsBack({route_.node, {}, {}, 0}, request.output)) { return howls; }
    request.through = route_.node;
    if (!unit_) {
        unit_ = std::make_shared<MatrixUnit>();
        watch_ = std::make_shared<RenderWatch>(*unit_);
        publisher_ = std::make_unique<ConfigPublisher>(unit_->context(), loop_, watch_, makeStage_);
    }
    auto token = std::make_shared<bool>(true);
    // Handled one turn of the loop later, because handling it destroys the stream that calls.
    auto onChange = [this, weak = std::weak_ptr(token)] {
        loop_.post([this, weak] {
            if (weak.lock()) { streamChanged(); }
        });
    };
    try {
        stream_ = duplex->openDuplex(request, *watch_, std::move(onChange));
    } catch (const Error&) { return notCombined; }
    streamToken_ = std::move(token);
    inputChannels_ = request.input.inputChannels;
    deviceChannels_ = std::min(stream_->channels(), RenderContext::maxDeviceChannels);
    if (inputChannels_ < 1 || deviceChannels_ < 1) { return noChannels; }
    opened_ = wanted;
    positions_ = positions;
    unit_->tap().open(inputChannels_, stream_->sampleRate());
    loudness_.open(unit_->tap().ring(), stream_->sampleRate());
    unit_->align().open(deviceChannels_, stream_->sampleRate(), RenderContext::maxFrames);
    unit_->restart(stream_->sampleRate());
    unit_->setAudible(true);
    publisher_->open(stream_->sampleRate());
    matchLevels();
    apply();
    watch_->setRunning(true);
    try {
        stream_->start();
    } catch (const Error& error) { return error.what(); }
    return {};
}

void MonitorEngine::close(Falls falls) {
    if (!stream_) { return; }
    if (falls == Falls::softly && stream_->isRunning()) {
        unit_->setAudible(false);
        const auto limit = std::chrono::steady_clock::now() + std::chrono::duration<double>(maxFall);
        while (!unit_->isSilent() && std::chrono::steady_clock::now() < limit) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
    streamToken_.reset();
    lostBefore_ += stream_->figures().dropouts;
    stream_.reset();
    watch_->setRunning(false);
    loudness_.close();
    unit_->tap().close();
    publisher_->close();
}

void MonitorEngine::apply() {
    if (!stream_) { return; }
    heard_ = SpeakerMap::onDevice(profile(), positions_);
    loudness_.setBus(channels(state_.source), state_.sourceOffset);
    const auto alignment = MonitorMatrix::alignment(state_, heard_, deviceChannels_);
    for (int c = 0; c < deviceChannels_; ++c) {
        unit_->align().set(c, alignment[size_t(c)].delayMs, alignment[size_t(c)].inverted);
    }
    MonitorState matched = state_;
    matched.volumeDB += matchDB_;
    publisher_->set(MonitorMatrix::build(matched, inputChannels_, heard_, deviceChannels_));
}

void MonitorEngine::restartIfRunning() {
    if (!wanted_) { return; }
    close(Falls::softly);
    start();
}

void MonitorEngine::streamChanged() {
    close(Falls::atOnce);
    tryToOpen();
}

// The inserts have come up, changed their place or gone.
void MonitorEngine::routeChanged() {
    if (!wanted_ || (stream_ && !inserts_.isStale(route_))) { return; }
    close(Falls::softly);
    tryToOpen();
}

void MonitorEngine::systemChanged() {
    if (sourceUID_ == DuplexAudio::busUID && !bus_) { keepBus(); }  // there was no server yet
    if (waiting()) { tryToOpen(); }
    Q_EMIT inputsChanged();
}

void MonitorEngine::settingsChanged() {
    if (stream_ && profile() != opened_) { followProfile(); }
    Q_EMIT changed();
}

bool MonitorEngine::upmixAvailable() const {
    return MonitorMatrix::upmixApplies(state_.source, profile());
}

double MonitorEngine::addedLatency() const {
    const Upmixer* const upmixer = stream_ ? publisher_->upmixer() : nullptr;
    return upmixer ? upmixer->fftSize() / upmixer->sampleRate() : 0;
}

double MonitorEngine::latency() const {
    return stream_ ? stream_->figures().blockSeconds + addedLatency() + inserts_.latency() : 0;
}

uint64_t MonitorEngine::dropouts() const {
    return lostBefore_ + (stream_ ? stream_->figures().dropouts : 0);
}

std::vector<float> MonitorEngine::takeBusPeaks() {
    std::vector<float> peaks(channels(state_.source).size(), 0.0F);
    if (!stream_) { return peaks; }
    for (size_t c = 0; c < peaks.size(); ++c) {
        const int channel = state_.sourceOffset + int(c);
        if (channel >= 0 && channel < inputChannels_) { peaks[c] = unit_->takeInputPeak(channel); }
    }
    return peaks;
}

std::vector<float> MonitorEngine::takeSpeakerPeaks() {
    const bool headphones = profile().kind == OutputProfile::Kind::headphones;
    const std::vector<int> outputs =
        headphones ? std::vector{heard_.headphoneLeft, heard_.headphoneRight} : heard_.outputs;
    std::vector<float> peaks(headphones ? 2 : speakers(profile().layout).size(), 0.0F);
    if (!stream_) { return peaks; }
    for (size_t r = 0; r < std::min(peaks.size(), outputs.size()); ++r) {
        if (outputs[r] >= 0 && outputs[r] < deviceChannels_) { peaks[r] = unit_->takeOutputPeak(outputs[r]); }
    }
    return peaks;
}

}  // namespace brindlehum
