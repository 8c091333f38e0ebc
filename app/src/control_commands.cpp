// ControlCommands: the command table, and the answers.
#include "app/control_commands.h"

#include <QString>
#include <algorithm>
#include <cmath>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>

#include "app/control_server.h"

namespace brindlehum {

namespace {

constexpr double maxVolumeDB = 6;  // as in the window

// The finite number under this name; none without one.
std::optional<double> number(const ControlParams& params, const std::string& name) {
    const auto found = params.find(name);
    if (found == params.end()) { return std::nullopt; }
    bool isNumber = false;
    const double value = QString::fromStdString(found->second).toDouble(&isNumber);  // in the C locale
    return isNumber && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

// Sets what `on` asks for, 0 or 1; toggles without it. Returns what is wrong with it.
std::string switched(const ControlParams& params, bool now, const std::function<void(bool)>& set) {
    const auto on = params.find("on");
    if (on != params.end() && on->second != "0" && on->second != "1") { return "on must be 0 or 1"; }
    set(on == params.end() ? !now : on->second == "1");
    return {};
}

}  // namespace

ControlCommands::ControlCommands(PlayerModel& player, SettingsStore& settings, TempEditBatch& tempEdits,
                                 EditorTransport& editor, MonitorEngine& monitor, DAWControl& daw, Actions actions)
    : player_(player),
      settings_(settings),
      tempEdits_(tempEdits),
      editor_(editor),
      monitor_(monitor),
      daw_(daw),
      actions_(std::move(actions)) {}

ControlCommands::Problem ControlCommands::toggle(const ControlParams&) {
    editor_.isPlaying() ? editor_.stop() : player_.transport().togglePlay();
    return {};
}

ControlCommands::Problem ControlCommands::play(const ControlParams&) {
    player_.transport().play(std::nullopt);
    return {};
}

ControlCommands::Problem ControlCommands::stop(const ControlParams&) {
    player_.transport().stopAndReturn();
    editor_.stop();
    return {};
}

ControlCommands::Problem ControlCommands::setLoop(const ControlParams& params) {
    Transport& transport = player_.transport();
    return switched(params, transport.loop(), [&](bool on) { transport.setLoop(on); });
}

ControlCommands::Problem ControlCommands::makeTempEdits(const ControlParams&) {
    if (const auto& file = player_.sound().info()) { tempEdits_.make({file->url}); }
    return {};
}

ControlCommands::Problem ControlCommands::openEditor(const ControlParams&) {
    const auto& file = player_.sound().info();
    actions_.openEditor(file ? std::optional(file->url) : std::nullopt);
    return {};
}

ControlCommands::Problem ControlCommands::openLink(const ControlParams& params) {
    const auto url = params.find("url");
    actions_.openLink(url == params.end() ? std::nullopt : std::optional(url->second));
    return {};
}

template <bool AppSettings::*member>
ControlCommands::Problem ControlCommands::setSwitch(const ControlParams& params) {
    return switched(params, settings_.value().*member,
                    [&](bool on) { settings_.change([&](AppSettings& s) { s.*member = on; }); });
}

struct ControlCommands::Command {
    std::string_view word;
    std::vector<ControlForm> forms;
    // None for those that answer more than whether it is done.
    Problem (ControlCommands::*run)(const ControlParams& params) = nullptr;
};

const std::vector<ControlCommands::Command>& ControlCommands::table() {
    using C = ControlCommands;
    static const std::vector<Command> all = {
        {"status", {{"", "file, position and length in seconds, playing, loop, volume, device, profiles, switches"}}},
        {"toggle", {{"", "plays or stops; stops the editor while that plays"}}, &C::toggle},
        {"play", {{"", "plays"}}, &C::play},
        {"stop", {{"", "stops, the editor, too"}}, &C::stop},
        {"load", {{"path=/sounds/rain.wav", "loads a file, and plays it if auto-play is on"}}, &C::load},
        {"seek", {{"seconds=1.5", "goes to a position"}}, &C::seek},
        {"volume", {{"db=-6", "sets the level, from -60 to 6"}}, &C::setVolume},
        {"loop", {{"", "loops, or no longer"}, {"on=1", "loops; with 0, no longer"}}, &C::setLoop},
        {"profile",
         {{"", "listens on the next profile"}, {"name=Headphones", "listens on the one of this name"}},
         &C::selectProfile},
        {"upmix",
         {{"", "upmixes, or no longer"},
          {"on=1", "upmixes; with 0, no longer"},
          {"preset=film", "upmixes with music, film, game, hall, speech, broadcast, or an own preset by its name"},
          {"compare=1", "the plain fold-down, as loud as the upmix; with 0, the upmix again"}},
         &C::setUpmix},
        {"tempedits", {{"", "makes the temp edits of the loaded file"}}, &C::makeTempEdits},
        {"editor", {{"", "opens the loaded file in the editor, and shows it"}}, &C::openEditor},
        {"link",
         {{"", "downloads and plays the sound of the web link that is copied"},
          {"url=https%3A%2F%2Fexample.org%2Frain.wav", "of this one"}},
         &C::openLink},
        {"monitor", MonitorCommands::forms()},
        {"daw",
         {{"cmd=record", "presses the key that means this in the DAW in front, or in the one that runs"},
          {"cmd=play&app=reaper", "prefers this DAW of several"}}},
        {"panel",
         {{"", "the panel under the file manager, or no longer"}, {"on=1", "with the panel; with 0, without"}},
         &C::setSwitch<&AppSettings::finderPanel>},
        {"expert",
         {{"", "expert mode, or no longer"}, {"on=1", "expert mode; with 0, no longer"}},
         &C::setSwitch<&AppSettings::expertMode>},
    };
    return all;
}

nlohmann::json ControlCommands::handle(const std::string& command, const ControlParams& params) {
    if (command == "status") { return status(); }
    if (command == "monitor") { return monitor_.handle(params); }
    if (command == "daw") { return sendToDAW(params); }
    const auto known = std::ranges::find(table(), command, &Command::word);
    const Problem problem = known == table().end() ? "unknown command " + command : (this->*known->run)(params);
    return problem.empty() ? ok() : nlohmann::json{{"error", problem}};
}

std::string ControlCommands::reference() {
    std::string page;
    for (const Command& command : table()) {
        page += "\n## " + std::string(command.word) + "\n\n| | |\n|---|---|\n";
        for (const ControlForm& form : command.forms) {
            const std::string query = form.query;
            page +=
                "| `" + std::string(command.word) + (query.empty() ? "" : "?" + query) + "` | " + form.meaning + " |\n";
        }
        const ControlForm& last = command.forms.back();
        page += "\n```sh\ncurl -H 'X-Brindlehum: 1' 'http://127.0.0.1:" + std::to_string(ControlServer::port) + "/" +
                std::string(command.word) + (*last.query ? "?" : "") + last.query + "'\n```\n";
    }
    return page;
}

nlohmann::json ControlCommands::ok() const {
    return {{"ok", true}, {"profile", settings_.activeProfile().name}, {"playing", isPlaying()}};
}

nlohmann::json ControlCommands::status() const {
    const AppSettings& settings = settings_.value();
    const auto& file = player_.sound().info();
    nlohmann::json profiles = nlohmann::json::array();
    for (const auto& profile : settings.profiles) { profiles.push_back(profile.name); }
    const double rate = file ? std::max(file->sampleRate, 1.0) : 1;
    const ListeningSetup& listening = player_.listening();
    const UpmixSettings& upmix = listening.upmix();
    nlohmann::json upmixPresets = nlohmann::json::array();
    for (const UpmixPreset preset : allUpmixPresets) { upmixPresets.push_back(rawValue(preset)); }
    for (const OwnUpmixPreset& preset : settings.upmixPresets) { upmixPresets.push_back(preset.name); }
    return {{"playing", isPlaying()},
            {"file", file ? file->url.filename().string() : std::string()},
            {"position", double(player_.transport().currentFrame()) / rate},
            {"length", file ? double(file->frames) / rate : 0},
            {"loop", player_.transport().loop()},
            {"volume", listening.volumeDB()},
            {"upmix", upmix.enabled},
            {"upmixPreset", upmix.own.empty() ? std::string(rawValue(upmix.preset)) : upmix.own},
            {"upmixPresets", upmixPresets},
            {"upmixCompared", player_.compare().isPlain()},
            {"device", listening.devices().name(listening.profile().deviceUID)},
            {"profile", settings.activeProfile().name},
            {"profiles", profiles},
            {"finderPanel", settings.finderPanel},
            {"expert", settings.expertMode}};
}

// Whether the key arrives is known after the answer, so the window says if it didn't.
nlohmann::json ControlCommands::sendToDAW(const ControlParams& params) {
    const auto word = params.find("cmd");
    const auto app = params.find("app");
    const auto reply =
        daw_.send(word == params.end() ? std::string() : word->second,
                  app == params.end() ? std::nullopt : std::optional(app->second), [this](const std::string& problem) {
                      if (!problem.empty()) { player_.message().fail(problem); }
                  });
    nlohmann::json answer = {{"result", reply.message}};
    if (!daw_.problems().empty()) { answer["problems"] = daw_.problems(); }
    return answer;
}

// Selects the profile with this name, ignoring case; without a name, the one after the active one, wrapping round.
ControlCommands::Problem ControlCommands::selectProfile(const ControlParams& params) {
    const auto& profiles = settings_.value().profiles;
    if (const auto name = params.find("name"); name != params.end()) {
        const QString wanted = QString::fromStdString(name->second);
        const auto named = std::ranges::find_if(profiles, [&](const OutputProfile& profile) {
            return QString::fromStdString(profile.name).compare(wanted, Qt::CaseInsensitive) == 0;
        });
        if (named == profiles.end()) { return "no profile " + name->second; }
        player_.listening().selectProfile(named->id);
        return {};
    }
    if (profiles.empty()) { return {}; }
    const auto active = std::ranges::find(profiles, settings_.activeProfile().id, &OutputProfile::id);
    const size_t next = (size_t(active - profiles.begin()) + 1) % profiles.size();
    player_.listening().selectProfile(profiles[next].id);
    return {};
}

// Reads the file in the background: `status` names it once it is loaded, the window says why it can't be.
ControlCommands::Problem ControlCommands::load(const ControlParams& params) {
    const auto path = params.find("path");
    if (path == params.end() || !std::filesystem::path(path->second).is_absolute()) {
        return "load needs path, an absolute one";
    }
    if (!AudioFileInfo::isAudioPath(path->second)) { return "not an audio file: " + path->second; }
    player_.load(path->second, settings_.value().autoPlay);
    return {};
}

ControlCommands::Problem ControlCommands::seek(const ControlParams& params) {
    const auto seconds = number(params, "seconds");
    const auto& file = player_.sound().info();
    if (!seconds || *seconds < 0) { return "seek needs seconds, a number from 0"; }
    if (!file) { return "no file is loaded"; }
    const double last = double(std::max<int64_t>(file->frames - 1, 0));
    player_.transport().seek(int64_t(std::min(*seconds * file->sampleRate, last)));
    return {};
}

ControlCommands::Problem ControlCommands::setVolume(const ControlParams& params) {
    const auto db = number(params, "db");
    if (!db || *db < ListeningSetup::silentDB || *db > maxVolumeDB) { return "volume needs db, from -60 to 6"; }
    player_.listening().setVolumeDB(*db);
    return {};
}

// With a preset, a built-in or an own one: on, with its numbers. Without: on or off, all numbers as they are.
ControlCommands::Problem ControlCommands::setUpmix(const ControlParams& params) {
    UpmixTuning& upmix = player_.upmix();
    if (const auto name = params.find("preset"); name != params.end()) { return upmix.choose(name->second); }
    if (const auto compare = params.find("compare"); compare != params.end()) { return compareUpmix(compare->second); }
    return switched(params, upmix.now().enabled, [&](bool on) { upmix.setOn(on); });
}

// "1" lets the plain fold-down be heard, as loud as the upmix, "0" the upmix again. The first one measures both before.
ControlCommands::Problem ControlCommands::compareUpmix(const std::string& plain) {
    UpmixCompare& compare = player_.compare();
    if (plain != "0" && plain != "1") { return "compare must be 0 or 1"; }
    if (!compare.isPossible()) { return "no upmix is heard"; }
    const bool isWanted = plain == "1";
    if (isWanted != (compare.isPlain() || compare.isMeasuring())) { compare.toggle(); }
    return {};
}

}  // namespace brindlehum
