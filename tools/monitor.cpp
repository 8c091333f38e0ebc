// inputs, and monitor matrix | run: what can be listened to, and a bus on the speakers at hand.
#include <QTimer>
#include <algorithm>
#include <iostream>
#include <map>

#include "application.h"
#include "base/error.h"
#include "command.h"
#include "interrupt.h"
#include "monitor/engine/monitor_engine.h"
#include "monitor/state/monitor_matrix.h"
#include "platform/linux_audio.h"
#include "platform/qt_main_loop.h"
#include "upmix_word.h"
#include "users_settings.h"
#include "word_values.h"

namespace brindlehum::cli {

const std::string_view monitorHelp =
    "  mode MODE          folds the bus first: full, l714, l51, stereo or mono\n"
    "  solo S,S           only these speakers, such as Ls,Rs\n"
    "  mute S,S           without these speakers\n"
    "  dim, silent        20 dB lower; nothing at all\n"
    "  dim-by DB          -60 to 0, in place of 20 dB lower\n"
    "  delay S=MS,S=MS    for run: speakers that wait, up to 100 ms\n"
    "  invert S,S         for run: speakers of opposite polarity\n"
    "  check WHAT         mono-sum or side, of the fold-down to 2.0\n"
    "  volume DB          -60 to 12\n"
    "  heights DB         trim of the height speakers\n"
    "  offset N           channel of the input at which the bus begins, from 0\n"
    "  upmix PRESET       fills the speakers that the bus lacks\n"
    "  fold               headphones hear the fold-down to left and right\n"
    "  source NAME        for run: the order of the bus (default l916)\n";

namespace {

constexpr int tellEvery = 500;  // milliseconds

std::vector<std::string> parts(const std::string& text) {
    std::vector<std::string> out;
    size_t from = 0;
    while (from <= text.size()) {
        const size_t to = std::min(text.find(',', from), text.size());
        out.push_back(text.substr(from, to - from));
        from = to + 1;
    }
    return out;
}

std::set<SpeakerID> speakersIn(const std::string& word, const std::string& text) {
    std::set<SpeakerID> speakers;
    for (const std::string& name : parts(text)) { speakers.insert(known(word, name, speakerFromRaw(name))); }
    return speakers;
}

Json namesOf(const MonitorInserts& inserts) {
    Json names = Json::array();
    for (const Insert& each : inserts.list()) { names.push_back(each.name); }
    return names;
}

void setDelays(MonitorState& state, const std::string& word, const std::string& value) {
    for (const std::string& each : parts(value)) {
        const size_t sign = std::min(each.find('='), each.size());
        const std::string name = each.substr(0, sign);
        const std::string ms = each.substr(std::min(sign + 1, each.size()));
        state.alignment[known(word, name, speakerFromRaw(name))].delayMs =
            numberAfter(word, ms, 0, SpeakerAlignment::longestMs);
    }
}

void invert(MonitorState& state, const std::string& word, const std::string& value) {
    for (const SpeakerID speaker : speakersIn(word, value)) { state.alignment[speaker].inverted = true; }
}

MonitorCheck checkAfter(const std::string& word, const std::string& value) {
    const std::optional<MonitorCheck> check = value == "mono-sum" ? std::optional(MonitorCheck::monoSum)
                                              : value == "side"   ? std::optional(MonitorCheck::side)
                                                                  : std::nullopt;
    return known(word, value, check);
}

using Flag = void (*)(MonitorState& state);
const std::map<std::string, Flag, std::less<>> flags = {
    {"dim", [](auto& s) { s.dim = true; }},
    {"silent", [](auto& s) { s.mute = true; }},
    {"fold", [](auto& s) { s.headphonesFold = true; }},
};
using Setter = void (*)(MonitorState& state, const std::string& word, const std::string& value);
const std::map<std::string, Setter, std::less<>> setters = {
    {"mode", [](auto& s, auto& w, auto& v) { s.mode = known(w, v, monitorModeFromRaw(v)); }},
    {"solo", [](auto& s, auto& w, auto& v) { s.solo = speakersIn(w, v); }},
    {"mute", [](auto& s, auto& w, auto& v) { s.muted = speakersIn(w, v); }},
    {"volume", [](auto& s, auto& w,
                  auto& v) { s.volumeDB = numberAfter(w, v, MonitorState::lowestDB, MonitorState::highestDB); }},
    {"heights", [](auto& s, auto& w, auto& v) { s.heightTrimDB = numberAfter(w, v, -60, 12); }},
    {"offset", [](auto& s, auto& w,
                  auto& v) { s.sourceOffset = wholeNumberAfter(w, v, 0, RenderContext::maxSourceChannels - 1); }},
    {"dim-by", [](auto& s, auto& w, auto& v) { s.dimDB = numberAfter(w, v, MonitorState::lowestDB, 0); }},
    {"delay", setDelays},
    {"invert", invert},
    {"check", [](auto& s, auto& w, auto& v) { s.check = checkAfter(w, v); }},
    {"upmix", [](auto& s, auto& w, auto& v) { s.upmix = upmixAfter(w, v); }},
    {"source", [](auto& s, auto& w, auto& v) { s.source = known(w, v, monitorSourceFromRaw(v)); }},
};

MonitorState stateOf(Words words) {
    MonitorState state;
    for (size_t i = 0; i < words.size(); ++i) {
        if (const auto flag = flags.find(words[i]); flag != flags.end()) {
            flag->second(state);
            continue;
        }
        const auto setter = setters.find(words[i]);
        if (setter == setters.end()) { throw UsageError("unknown word \"" + words[i] + "\""); }
        if (i + 1 == words.size()) { throw UsageError("no value after \"" + words[i] + "\""); }
        setter->second(state, words[i], words[i + 1]);
        ++i;
    }
    return state;
}

Json namesOf(const SpeakerList& speakers) {
    Json names = Json::array();
    for (const SpeakerID speaker : speakers) { names.push_back(rawValue(speaker)); }
    return names;
}

bool printMatrix(Words words) {
    if (words.size() < 2) { throw UsageError("no source and layout given"); }
    MonitorState state = stateOf(words.subspan(2));
    state.source = known("monitor matrix", words[0], monitorSourceFromRaw(words[0]));
    OutputProfile profile;
    if (words[1] == "headphones") {
        profile.kind = OutputProfile::Kind::headphones;
        state.headphonesFold = true;  // what the ears get is no matrix otherwise
    } else {
        profile.layout = known("monitor matrix", words[1], layoutFromRaw(words[1]));
    }
    const SpeakerList room = MonitorMatrix::room(state, profile);
    const bool upmix = state.upmix.enabled && MonitorMatrix::upmixApplies(state.source, profile);
    Json line = {{"inputs", namesOf(channels(state.source))},
                 {"outputs", namesOf(room)},
                 {"rows", MonitorMatrix::gains(state, profile)}};
    if (upmix) { line["upmix"] = {{"preset", rawValue(state.upmix.preset)}, {"outputs", namesOf(room)}}; }
    print(line);
    return true;
}

// The user's profile of this name, and the inserts, on settings of which nothing is stored.
void takeProfile(MemoryDefaults& defaults, const std::string& name) {
    takeUsersSettings(defaults, {"settings.v1", "monitor.inserts"});
    SettingsStore settings(defaults);
    const auto& profiles = settings.value().profiles;
    const auto named = std::ranges::find(profiles, name, &OutputProfile::name);
    if (named == profiles.end()) { throw Error("no profile " + name); }
    settings.change([id = named->id](AppSettings& s) { s.activeProfileID = id; });
}

std::string uidOf(MonitorEngine& monitor, const std::string& source) {
    if (source == "bus") { return DuplexAudio::busUID; }
    for (const AudioInputDevice& input : monitor.inputs()) {
        if (input.uid == source || input.name == source) { return input.uid; }
    }
    throw Error("no source " + source);
}

Json figuresOf(MonitorEngine& monitor) {
    return {{"running", true},
            {"sampleRate", monitor.sampleRate()},
            {"inputs", monitor.inputChannels()},
            {"outputs", monitor.deviceChannels()},
            {"latency", monitor.latency()},
            {"upmixLatency", monitor.addedLatency()},
            {"inserts", namesOf(monitor.inserts())},
            {"dropouts", monitor.dropouts()}};
}

bool passBus(Words words) {
    if (words.size() < 2) { throw UsageError("no source and profile given"); }
    const MonitorState state = stateOf(words.subspan(2));
    MemoryDefaults defaults;
    takeProfile(defaults, words[1]);
    const Application application;
    QtMainLoop loop;
    const auto audio = makeAudioSystem(loop);
    SettingsStore settings(defaults);
    MonitorEngine monitor(*audio, settings, loop);
    monitor.setState(state);
    monitor.setSourceUID(uidOf(monitor, words[0]));
    std::string warned;
    Json told;
    const auto tell = [&] {
        const std::string warning = monitor.running() ? monitor.inserts().message() : monitor.message();
        if (warning != warned && !warning.empty()) { printError(warning); }
        warned = warning;
        // The latency is known when the first block has been heard.
        const Json now = monitor.latency() > 0 ? figuresOf(monitor) : Json();
        if (now == told) { return; }
        told = now;
        if (now.is_null()) { return; }
        print(now);
        std::cout.flush();
    };
    endAtInterrupt();
    monitor.start();
    tell();
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (interrupted()) { QCoreApplication::quit(); }
        tell();
    });
    watch.start(tellEvery);
    QCoreApplication::exec();
    monitor.stop();
    return true;
}

}  // namespace

bool inputs(Words words) {
    if (!words.empty()) { throw UsageError("unknown word \"" + words[0] + "\""); }
    const Application application;
    QtMainLoop loop;
    const auto audio = makeAudioSystem(loop);
    DuplexAudio* const duplex = audio->duplex();
    if (!duplex) { throw Error("no sound server answers"); }
    for (const AudioInputDevice& input : duplex->allInputs()) {
        print({{"uid", input.uid},
               {"name", input.name},
               {"inputChannels", input.inputChannels},
               {"positions", input.positions}});
    }
    return true;
}

bool monitor(Words words) {
    if (!words.empty() && words[0] == "matrix") { return printMatrix(words.subspan(1)); }
    if (!words.empty() && words[0] == "run") { return passBus(words.subspan(1)); }
    throw UsageError("matrix or run?");
}

}  // namespace brindlehum::cli
