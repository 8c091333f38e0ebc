// Makes the instances of a chain and watches them.
#include "monitor/inserts/insert_rack.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "base/error.h"

namespace brindlehum {
namespace {

const char* const noNumber = "It made what isn't a number, and is muted; bypass it and back to try it anew";

}  // namespace

void to_json(nlohmann::json& json, const InsertStatus& status) {
    json = {{"id", status.id.string()},
            {"problem", status.problem},
            {"latency", status.latency},
            {"instances", status.instances}};
}

void from_json(const nlohmann::json& json, InsertStatus& status) {
    status.id = UUID::parse(json.at("id").get<std::string>()).value_or(UUID());
    json.at("problem").get_to(status.problem);
    json.at("latency").get_to(status.latency);
    json.at("instances").get_to(status.instances);
}

void InsertRack::setSampleRate(double sampleRate) {
    sampleRate_ = sampleRate;
    chain_.setSampleRate(sampleRate);
    std::vector<Insert> inserts;
    for (Entry& each : std::exchange(entries_, {})) { inserts.push_back(std::move(each.insert)); }
    set(inserts);
}

InsertRack::Entry* InsertRack::find(const UUID& id) {
    const auto found = std::ranges::find_if(entries_, [&](const Entry& each) { return each.insert.id == id; });
    return found == entries_.end() ? nullptr : &*found;
}

InsertRack::Running InsertRack::running(const UUID& id) const {
    const auto found = std::ranges::find(entries_, id, [](const Entry& each) { return each.insert.id; });
    return found == entries_.end() ? Running() : Running{&found->info, found->unit};
}

void InsertRack::set(const std::vector<Insert>& inserts) {
    std::vector<Entry> next;
    for (const Insert& insert : inserts) {
        loading_ = int(next.size());
        Entry* const known = find(insert.id);
        if (known && known->unit && known->insert.uri == insert.uri) {
            next.push_back(*known);
            next.back().insert = insert;
            apply(next.back());
        } else {
            next.push_back(make(insert));
        }
    }
    loading_ = -1;
    entries_ = std::move(next);
    publish();
}

InsertRack::Entry InsertRack::make(const Insert& insert) {
    Entry entry{insert, {}, nullptr, {}};
    try {
        entry.info = host_.describe(insert.uri, insert.bundle);
        auto unit = std::make_shared<InsertUnit>();
        unit->width = entry.info.inputs;
        for (size_t i = 0; i < shares(channels_, unit->width).size(); ++i) {
            unit->instances.push_back(host_.instantiate(entry.info, sampleRate_, insert.settings));
        }
        entry.unit = std::move(unit);
        apply(entry);
    } catch (const Error& error) { entry.problem = error.what(); }
    return entry;
}

void InsertRack::apply(Entry& entry) const {
    entry.unit->isBypassed = entry.insert.isBypassed;
    for (size_t i = 0; i < entry.info.controls.size(); ++i) {
        const PluginControl& control = entry.info.controls[i];
        const auto set = entry.insert.settings.values.find(control.symbol);
        const double value = set == entry.insert.settings.values.end() ? control.rest : set->second;
        for (const auto& each : entry.unit->instances) { each->setControl(i, control.heard(value)); }
    }
}

void InsertRack::publish() {
    std::vector<std::shared_ptr<InsertUnit>> units;
    heard_.clear();
    planned_.clear();
    for (size_t i = 0; i < entries_.size(); ++i) {
        if (!entries_[i].unit) { continue; }
        units.push_back(entries_[i].unit);
        heard_.push_back(int(i));
    }
    auto stages = std::make_shared<InsertStages>(units, channels_, sampleRate_);
    for (const auto& each : stages->stages) { planned_.push_back(each->latency()); }
    latency_ = stages->latency;
    chain_.publish(std::move(stages));
    status_ = now();
}

void InsertRack::setValue(const UUID& id, const std::string& symbol, double value) {
    Entry* const entry = find(id);
    if (!entry) { return; }
    entry->insert.settings.values[symbol] = value;
    if (entry->unit) { apply(*entry); }
}

void InsertRack::setFile(const UUID& id, const std::string& uri, const std::string& storedPath) {
    Entry* const entry = find(id);
    if (!entry) { return; }
    entry->insert.settings.files[uri] = storedPath;
    if (!entry->unit) { return; }
    for (const auto& each : entry->unit->instances) { each->setFile(uri, storedPath); }
}

void InsertRack::setBypassed(const UUID& id, bool bypassed) {
    Entry* const entry = find(id);
    if (!entry) { return; }
    entry->insert.isBypassed = bypassed;
    if (!entry->unit) { return; }
    if (!bypassed && entry->unit->isMuted) {
        *entry = make(Insert(entry->insert));
        publish();
    } else {
        apply(*entry);
    }
}

bool InsertRack::look() {
    chain_.collect();
    for (size_t i = 0; i < heard_.size(); ++i) {
        if (entries_[size_t(heard_[i])].unit->latency() == planned_[i]) { continue; }
        publish();
        return true;
    }
    std::vector<InsertStatus> next = now();
    if (next == status_) { return false; }
    status_ = std::move(next);
    return true;
}

std::vector<InsertStatus> InsertRack::now() const {
    std::vector<InsertStatus> out;
    for (const Entry& each : entries_) {
        InsertStatus status{each.insert.id, each.problem};
        if (each.unit) {
            if (each.unit->isMuted) { status.problem = noNumber; }
            status.latency = each.unit->latency();
            status.instances = int(each.unit->instances.size());
        }
        out.push_back(std::move(status));
    }
    return out;
}

std::vector<std::pair<UUID, std::string>> InsertRack::states() const {
    std::vector<std::pair<UUID, std::string>> out;
    for (const Entry& each : entries_) {
        if (each.unit && !each.unit->instances.empty()) {
            out.emplace_back(each.insert.id, each.unit->instances.front()->state());
        }
    }
    return out;
}

int InsertRack::busyWith() const noexcept {
    if (const int loading = loading_; loading >= 0) { return loading; }
    const int running = chain_.running();
    return running >= 0 && size_t(running) < heard_.size() ? heard_[size_t(running)] : -1;
}

}  // namespace brindlehum
