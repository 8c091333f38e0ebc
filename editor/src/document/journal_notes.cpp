// Notes and marks as JSON.
#include "document/journal_notes.h"

#include <QByteArray>
#include <algorithm>
#include <array>
#include <utility>

namespace brindlehum {
namespace {

using nlohmann::json;

constexpr std::array texts = {
    std::pair("originator", &WavNotes::originator),
    std::pair("originatorReference", &WavNotes::originatorReference),
    std::pair("date", &WavNotes::date),
    std::pair("time", &WavNotes::time),
    std::pair("codingHistory", &WavNotes::codingHistory),
    std::pair("chunks", &WavNotes::chunks),
};

std::string encoded(const std::string& bytes) {
    return QByteArray::fromStdString(bytes).toBase64().toStdString();
}

std::string decoded(const json& text) {
    return QByteArray::fromBase64(QByteArray::fromStdString(text.get<std::string>())).toStdString();
}

}  // namespace

json toJson(const WavNotes& notes) {
    json out;
    for (const auto& [key, text] : texts) { out[key] = encoded(notes.*text); }
    if (notes.timeReference) { out["timeReference"] = *notes.timeReference; }
    for (const WavCue& cue : notes.cues) {
        out["cues"].push_back({cue.name, cue.frame, cue.length, encoded(cue.entries)});
    }
    return out;
}

WavNotes notesOf(const json& line) {
    WavNotes notes;
    const auto found = line.find("notes");
    if (found == line.end()) { return notes; }
    for (const auto& [key, text] : texts) { notes.*text = decoded(found->at(key)); }
    if (found->contains("timeReference")) { notes.timeReference = found->at("timeReference").get<uint64_t>(); }
    for (const json& cue : found->value("cues", json::array())) {
        notes.cues.push_back({cue.at(0), cue.at(1), cue.at(2), decoded(cue.at(3))});
    }
    return notes;
}

json toJson(const Marks& marks) {
    json cues = json::array();
    for (const WavCue& cue : marks.cues) { cues.push_back({cue.name, cue.frame, cue.length}); }
    return {{"start", marks.start}, {"cues", std::move(cues)}};
}

Marks marksOf(const json& line, const WavNotes& notes) {
    Marks marks;
    const auto found = line.find("marks");
    if (found == line.end()) { return marks; }
    marks.start = found->at("start");
    for (const json& cue : found->at("cues")) {
        const auto name = cue.at(0).get<uint32_t>();
        const auto source = std::ranges::find(notes.cues, name, &WavCue::name);
        marks.cues.push_back({name, cue.at(1), cue.at(2), source == notes.cues.end() ? "" : source->entries});
    }
    return marks;
}

}  // namespace brindlehum
