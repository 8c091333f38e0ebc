// EditorTransport: starts, restarts and auditions.
#include "editor/playback/editor_transport.h"

#include <algorithm>
#include <cmath>

#include "editor/playback/file_sound.h"
#include "edits/temp_edit_renderer.h"
#include "mix/config/speaker_map.h"
#include "mix/player/prefilled_stream.h"

namespace brindlehum {
namespace {

constexpr double tickSeconds = 1.0 / 30;
constexpr double accentSeconds = 0.01;

}  // namespace

EditorTransport::EditorTransport(PlaybackEngine& engine, SettingsStore& settings, DocumentModel& document,
                                 MusicModel& music, MainLoop& loop, PlayerMessage& message)
    : seat_(engine, {[this] { deviceChanged(); }, [this] { publish(); }, [this] { rest(); }}),
      settings_(settings),
      document_(document),
      music_(music),
      loop_(loop),
      message_(message),
      notice_(engine, message),
      queue_(loop, "Brindlehum.editorplay") {
    connect(&document, &DocumentModel::opened, this, [this] {
        stop();
        playhead_.setFrame(0);
    });
    // What plays is an older state: it goes on in the new one, from the same place.
    connect(&document, &DocumentModel::edited, this, [this] { restart(); });
    connect(&document, &DocumentModel::stepped, this, [this] { restart(); });
}

std::optional<std::vector<Click>> EditorTransport::clicks() const {
    const auto& analysis = music_.analysis();
    if (!click_ || !analysis || music_.isStale()) { return std::nullopt; }
    const double rate = document_.doc()->sampleRate;
    const auto frameAt = [rate](double seconds) { return int64_t(std::llround(seconds * rate)); };
    const auto reach = int64_t(rate * accentSeconds);
    std::vector<Click> out;
    out.reserve(analysis->grid.beats.size());
    for (const double beat : analysis->grid.beats) {
        const int64_t frame = frameAt(beat);
        const bool accent = std::ranges::any_of(
            analysis->grid.downbeats, [&](double downbeat) { return std::abs(frameAt(downbeat) - frame) < reach; });
        out.push_back({frame, accent});
    }
    return out;
}

void EditorTransport::play(std::optional<int64_t> from) {
    if (!document_.doc() || document_.total() == 0) { return stop(); }
    const auto& selection = document_.selection();
    const int64_t total = document_.total();
    int64_t start = from.value_or(selection ? selection->lower : document_.cursor());
    if (!from && preRoll_) {
        start = std::max<int64_t>(start - int64_t(preRollSeconds * document_.doc()->sampleRate), 0);
    }
    const int64_t end = selection && !loops_ ? selection->upper : total;
    if (start >= end) { start = selection ? selection->lower : 0; }
    const FrameRange range = loops_ ? selection.value_or(FrameRange{0, total}) : FrameRange{std::min(start, end), end};
    this->start({document_.sound(), {start, range}, loops_, true, clicks()});
}

// Returns false, after showing a message and stopping, when no device can be opened.
bool EditorTransport::openDevice(bool force) {
    try {
        seat_.configure(settings_.activeProfile().deviceUID, force);
        return true;
    } catch (const std::exception& error) {
        stop();
        message_.fail(error.what());
        return false;
    }
}

void EditorTransport::start(const Start& given) {
    seat_.take();
    if (!openDevice(false)) { return; }
    starting_ = given.followsDocument ? std::optional(given.span.start) : std::nullopt;
    const double rate = seat_.engine().sampleRate();
    const auto work = [given, rate, in = document_.doc()->sampleRate](const Background::Task& task) {
        auto source = std::make_unique<MemorySource>(given.sound, in, given.clicks);
        return prefilledStream(std::move(source), rate, given.span, given.loop, [&] { return task.isStopped(); });
    };
    queue_.run(
        starts_, work,
        [this, given, rate](std::shared_ptr<StreamReader> reader) { ready(std::move(reader), given, rate); },
        [this](const std::exception& error) {
            stop();
            message_.fail(error.what());
        });
}

void EditorTransport::ready(std::shared_ptr<StreamReader> reader, const Start& given, double rate) {
    if (!seat_.isTaken() || seat_.engine().sampleRate() != rate) { return; }
    hasMetronome_ = given.clicks.has_value();
    publish();
    try {
        seat_.play(std::move(reader), double(given.span.start));
    } catch (const std::exception& error) {
        stop();
        return message_.fail(error.what());
    }
    starting_.reset();
    isPlaying_ = true;
    followsDocument_ = given.followsDocument;
    if (!followsDocument_) {
        playhead_.setFrame(0);
    } else {
        playhead_.setFrame(double(given.span.start));
    }
    timer_ = loop_.every(tickSeconds, [this] { tick(); });
    Q_EMIT changed();
}

void EditorTransport::publish() {
    if (!document_.doc() || !seat_.isTaken()) { return; }
    const PlaybackEngine& engine = seat_.engine();
    const auto& doc = *document_.doc();
    ListeningSnapshot snapshot;
    snapshot.source = doc.info.detected;
    snapshot.channels = document_.sound().channels();
    snapshot.profile = SpeakerMap::onDevice(settings_.activeProfile(), engine.device().positions);
    snapshot.deviceChannels = engine.deviceChannels();
    snapshot.monoToCenter = settings_.value().monoToCenter;
    snapshot.binauralMissing = engine.binauralMissing();
    seat_.setConfig(editorMix(snapshot, lanes_, hasMetronome_).config);
}

void EditorTransport::tick() {
    if (!isPlaying_) { return; }
    if (followsDocument_) { playhead_.setFrame(seat_.engine().ctx().position()); }
    if (seat_.engine().finished()) { stop(); }
}

// What isn't a place in the document stops; a start under way begins on the new device.
void EditorTransport::deviceChanged() {
    const auto playing = isPlaying_ && followsDocument_ ? std::optional(playhead_.wholeFrame()) : std::nullopt;
    const auto frame = starting_ ? starting_ : playing;
    const AudioOutputDevice before = seat_.engine().device();
    stop();
    notice_.withdraw();
    if (!openDevice(true)) { return; }
    if (frame) { play(*frame); }
    notice_.tell(before);
}

// Plays on from the same place, in the document and the settings as they are now.
void EditorTransport::restart() {
    if (!isPlaying_) { return; }
    if (!followsDocument_) { return stop(); }
    play(std::min(playhead_.wholeFrame(), document_.total()));
}

void EditorTransport::rest() {
    starts_.cancel();
    starting_.reset();
    timer_.reset();
    auditioned_.reset();
    followsDocument_ = true;
    if (std::exchange(isPlaying_, false)) { Q_EMIT changed(); }
}

void EditorTransport::stop() {
    seat_.stop();
    rest();
    playhead_.setFrame(double(document_.cursor()));
}

void EditorTransport::toggle() {
    if (isPlaying_) {
        stop();
    } else {
        play();
    }
}

void EditorTransport::setLoops(bool loops) {
    if (loops == loops_) { return; }
    loops_ = loops;
    restart();
    Q_EMIT changed();
}

void EditorTransport::setPreRoll(bool preRoll) {
    preRoll_ = preRoll;
    Q_EMIT changed();
}

void EditorTransport::setClick(bool click) {
    if (click == click_) { return; }
    click_ = click;
    restart();
    Q_EMIT changed();
}

void EditorTransport::setSolo(int channel, bool on) {
    on ? void(lanes_.solo.insert(channel)) : void(lanes_.solo.erase(channel));
    publish();
    Q_EMIT changed();
}

void EditorTransport::setMute(int channel, bool on) {
    on ? void(lanes_.mute.insert(channel)) : void(lanes_.mute.erase(channel));
    publish();
    Q_EMIT changed();
}

void EditorTransport::audition(Sound sound, bool loop) {
    if (!document_.doc() || sound.frames() == 0) { return; }
    const FrameRange all{0, sound.frames()};
    start({std::move(sound), {0, all}, loop, false, std::nullopt});
}

void EditorTransport::audition(const EditPlan& plan) {
    if (!document_.doc()) { return; }
    const auto work = [plan, sound = document_.sound(), rate = document_.doc()->sampleRate,
                       options = music_.options()] {
        return Sound(TempEditRenderer::render(plan, sound, rate, options));
    };
    queue_.run(
        starts_, work,
        [this, name = plan.name, loops = plan.kind == EditPlan::Kind::loop](Sound rendered) {
            audition(std::move(rendered), loops);
            auditioned_ = name;
            Q_EMIT changed();
        },
        [this](const std::exception& error) { message_.fail(error.what()); });
}

void EditorTransport::audition(const std::filesystem::path& file) {
    if (!document_.doc()) { return; }
    const auto work = [file, rate = document_.doc()->sampleRate,
                       channels = document_.sound().channels()](const Background::Task& task) {
        return fileSound(file, rate, channels, [&task] { return task.isStopped(); });
    };
    queue_.run(
        starts_, work,
        [this, name = file.filename().string()](Sound sound) {
            audition(std::move(sound));
            auditioned_ = name;
            Q_EMIT changed();
        },
        [this](const std::exception& error) { message_.fail(error.what()); });
}

void EditorTransport::auditionLoopPoint() {
    const auto& analysis = music_.analysis();
    const auto loop = music_.pinnedLoop().range;
    if (!document_.doc() || !analysis || music_.isStale() || !loop) { return; }
    const auto back = int64_t(2 * (60 / analysis->grid.bpm * analysis->grid.beatsPerBar) * document_.doc()->sampleRate);
    start({document_.sound(), {std::max(loop->upper - back, loop->lower), *loop}, true, true, clicks()});
}

void EditorTransport::profileChanged() {
    if (seat_.isTaken()) { isPlaying_ ? restart() : publish(); }
}

}  // namespace brindlehum
