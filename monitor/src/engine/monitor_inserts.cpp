// Keeps the chain, and brings the process to what is wanted.
#include "monitor/engine/monitor_inserts.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace brindlehum {
namespace {

using nlohmann::json;

const char* const key = "monitor.inserts";

// Seconds.
constexpr double tickSeconds = 1;
constexpr double patience = 5;       // until a process that says nothing counts as dead
constexpr double loadPatience = 30;  // while it loads effects
constexpr double saveAfter = 2;      // the last change of a value
constexpr double leaveSeconds = 3;   // that it gets to end

const char* const without = "; the monitor plays without inserts";

UUID idIn(const json& message, const char* name) {
    return UUID::parse(message.value(name, "")).value_or(UUID());
}

std::vector<Insert> stored(const UserDefaults& defaults) {
    std::vector<Insert> list;
    const json all = json::parse(defaults.data(key).value_or(""), nullptr, false);
    if (!all.is_array()) { return list; }
    for (const json& each : all) {
        try {
            list.push_back(each.get<Insert>());
        } catch (const json::exception&) {  // not ours: leave it out
        }
    }
    return list;
}

}  // namespace

MonitorInserts::MonitorInserts(UserDefaults& defaults, MainLoop& loop, HelperMaker makeHelper)
    : defaults_(defaults), loop_(loop), makeHelper_(std::move(makeHelper)), list_(stored(defaults)) {}

MonitorInserts::~MonitorInserts() {
    release();
    if (leaving_) { leaving_->waitForEnd(leaveSeconds / 2); }
}

const Insert* MonitorInserts::find(const UUID& id) const {
    const auto found = std::ranges::find(list_, id, &Insert::id);
    return found == list_.end() ? nullptr : &*found;
}

UUID MonitorInserts::add(const PluginInfo& plugin) {
    Insert insert;
    insert.id = UUID::random();
    insert.uri = plugin.uri;
    insert.bundle = plugin.bundle;
    insert.name = displayName(plugin);
    list_.push_back(insert);
    edited();
    return insert.id;
}

void MonitorInserts::remove(const UUID& id) {
    if (std::erase_if(list_, [&](const Insert& each) { return each.id == id; }) == 0) { return; }
    if (list_.empty()) {
        failed_ = false;
        message_.clear();
    }
    edited();
}

void MonitorInserts::move(const UUID& id, int place) {
    const auto found = std::ranges::find(list_, id, &Insert::id);
    if (found == list_.end()) { return; }
    Insert insert = std::move(*found);
    list_.erase(found);
    list_.insert(list_.begin() + std::clamp(place, 0, int(list_.size())), std::move(insert));
    edited();
}

void MonitorInserts::toggleBypass(const UUID& id) {
    const auto found = std::ranges::find(list_, id, &Insert::id);
    if (found == list_.end()) { return; }
    found->isBypassed = !found->isBypassed;
    keep();
    if (helper_) { helper_->send({{"do", "bypass"}, {"id", id.string()}, {"on", found->isBypassed}}); }
    Q_EMIT changed();
}

void MonitorInserts::setValue(const UUID& id, const std::string& symbol, double value) {
    const auto found = std::ranges::find(list_, id, &Insert::id);
    if (found == list_.end()) { return; }
    found->settings.values[symbol] = value;
    changedInside({{"do", "value"}, {"id", id.string()}, {"symbol", symbol}, {"value", value}});
}

void MonitorInserts::setFile(const UUID& id, const std::string& uri, const std::string& storedPath) {
    const auto found = std::ranges::find(list_, id, &Insert::id);
    if (found == list_.end()) { return; }
    found->settings.files[uri] = storedPath;
    changedInside({{"do", "file"}, {"id", id.string()}, {"uri", uri}, {"path", storedPath}});
}

// An effect is set differently, which may change its state, too.
void MonitorInserts::changedInside(const json& message) {
    keep();
    if (helper_) {
        helper_->send(message);
        saveSoon();
    }
    Q_EMIT changed();
}

void MonitorInserts::saveSoon() {
    save_ = loop_.after(saveAfter, [this] {
        if (helper_) { helper_->send({{"do", "save"}}); }
    });
}

void MonitorInserts::keep() {
    const json all = list_;
    defaults_.set(key, all.dump(-1, ' ', false, json::error_handler_t::replace));
}

void MonitorInserts::edited() {
    keep();
    ensure();
    Q_EMIT changed();
    Q_EMIT routeChanged();
}

// Brings the process to what is wanted now.
void MonitorInserts::ensure() {
    if (output_ == 0 || failed_ || list_.empty()) { return; }
    if (helper_) { return sendChain("chain"); }
    helper_ = makeHelper_();
    helper_->onMessage = [this](const json& message) { heard(message); };
    helper_->onEnd = [this](const std::string& why) { ended(why); };
    ticks_ = loop_.every(tickSeconds, [this] { tick(); });
    sendChain("open");
    windows_.sendAll();
}

void MonitorInserts::sendChain(const char* what) {
    json message = {{"do", what}, {"inserts", list_}};
    if (message["do"] == "open") {
        message["output"] = output_;
        message["channels"] = channels_;
        node_ = 0;
    }
    isBusy_ = true;
    lastHeard_ = loop_.now();
    helper_->send(message);
}

MonitorInserts::Route MonitorInserts::route(uint32_t output, int channels) {
    const bool moves = output != output_ || channels != channels_;
    output_ = output;
    channels_ = channels;
    if (list_.empty()) {
        release();
        output_ = output;
    } else if (!failed_ && !helper_) {
        ensure();
    } else if (!failed_ && moves) {
        sendChain("open");
    }
    return {!list_.empty() && !failed_ && node_ == 0, node()};
}

void MonitorInserts::release() {
    output_ = 0;
    node_ = 0;
    frames_ = 0;
    ticks_.reset();
    save_.reset();
    status_.clear();
    if (!helper_) { return; }
    leaving_ = std::move(helper_);
    leaving_->onMessage = [this](const json& message) {
        if (message.value("is", "") == "states") { takeStates(message.value("states", json::object())); }
    };
    leaving_->onEnd = nullptr;
    windows_.gone();
    leaving_->send({{"do", "save"}});
    leaving_->finish();
    leave_ = loop_.after(leaveSeconds, [this] { leaving_.reset(); });
}

void MonitorInserts::restart() {
    if (!failed_) { return; }
    failed_ = false;
    message_.clear();
    ensure();
    Q_EMIT changed();
    Q_EMIT routeChanged();
}

void MonitorInserts::heard(const json& message) {
    lastHeard_ = loop_.now();
    const std::string what = message.value("is", "");
    if (what == "open") {
        node_ = message.value("node", 0U);
        sampleRate_ = message.value("sampleRate", 0.0);
        Q_EMIT routeChanged();
    } else if (what == "closed") {
        node_ = 0;
        Q_EMIT routeChanged();
    } else if (what == "status") {
        isBusy_ = false;
        status_ = message.value("inserts", std::vector<InsertStatus>());
        frames_ = message.value("latency", 0);
    } else if (what == "states") {
        takeStates(message.value("states", json::object()));
        return;
    } else if (what == "window" || what == "noWindow") {
        return windows_.heard(message);
    } else if (what == "set") {
        return setValue(idIn(message, "id"), message.value("symbol", ""), message.value("value", 0.0));
    } else if (what == "file") {
        return setFile(idIn(message, "id"), message.value("uri", ""), message.value("path", ""));
    } else if (what == "bypass") {
        const Insert* const insert = find(idIn(message, "id"));
        if (insert && insert->isBypassed != message.value("on", false)) { toggleBypass(UUID(insert->id)); }
        return;
    } else if (what == "edited") {
        return saveSoon();
    } else if (what == "crash" && message.contains("window")) {
        windowCrashed_ = true;
        return windows_.fail(idIn(message, "window"), "Its window crashed");
    } else if (what == "stalled" || what == "crash") {
        lastWords_ = nameAt(message.value("insert", -1)) + (what == "crash" ? " crashed" : " hung");
        return;
    } else {
        return;
    }
    Q_EMIT changed();
}

std::string MonitorInserts::nameAt(int place) const {
    return place >= 0 && size_t(place) < list_.size() ? list_[size_t(place)].name : "An insert";
}

void MonitorInserts::ended(const std::string& why) {
    if (!helper_) { return; }  // it has been given up already
    if (std::exchange(windowCrashed_, false)) { return startAgain(); }
    fail(lastWords_.empty() ? why : lastWords_);
}

void MonitorInserts::fail(std::string why) {
    failed_ = true;
    message_ = std::move(why) + without;
    drop();
    Q_EMIT changed();
    Q_EMIT routeChanged();
}

// A window that fails takes the process along, and is not opened again: the effects themselves can go on.
void MonitorInserts::startAgain() {
    drop();
    Q_EMIT changed();
    Q_EMIT routeChanged();
}

void MonitorInserts::drop() {
    lastWords_.clear();
    node_ = 0;
    frames_ = 0;
    status_.clear();
    ticks_.reset();
    save_.reset();
    // It may be the caller.
    loop_.post([gone = std::shared_ptr<InsertHelper>(std::move(helper_))] {});
    windows_.gone();
}

// Asks for a sign of life.
void MonitorInserts::tick() {
    if (!helper_) { return; }
    if (loop_.now() - lastHeard_ > (isBusy_ ? loadPatience : patience)) {
        if (windows_.failOpen("Its window may have hung")) { return startAgain(); }
        return fail("The inserts don't answer");
    }
    helper_->send({{"do", "ping"}});
}

void MonitorInserts::takeStates(const json& states) {
    bool isNew = false;
    for (Insert& each : list_) {
        const std::string state = states.value(each.id.string(), each.settings.state);
        isNew = isNew || state != each.settings.state;
        each.settings.state = state;
    }
    if (isNew) { keep(); }
}

std::string MonitorInserts::problemOf(const UUID& id) const {
    const auto found = std::ranges::find(status_, id, &InsertStatus::id);
    return found == status_.end() ? "" : found->problem;
}

double MonitorInserts::latency() const {
    return node() != 0 && sampleRate_ > 0 ? frames_ / sampleRate_ : 0;
}

}  // namespace brindlehum
