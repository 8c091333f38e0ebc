// The records of a music analysis as JSON.
#include "analysis/piece/music_analysis_json.h"

#include <nlohmann/json.hpp>

namespace brindlehum {
namespace {

using Json = nlohmann::ordered_json;

template <class Value>
Json orNull(const std::optional<Value>& value) {
    return value ? Json(*value) : Json();
}

template <class Record, class Fields>
Json list(const std::vector<Record>& records, Fields fields) {
    Json out = Json::array();
    for (const Record& record : records) { out.push_back(fields(record)); }
    return out;
}

Json rows(const SimilarityMatrix& matrix) {
    Json out = Json::array();
    for (int i = 0; i < matrix.size; ++i) { out.push_back(similarityRow(matrix, i)); }
    return out;
}

}  // namespace

std::vector<double> similarityRow(const SimilarityMatrix& matrix, int bar) {
    std::vector<double> row;
    for (int j = 0; j < matrix.size; ++j) { row.push_back(matrix.at(bar, j)); }
    return row;
}

void to_json(Json& json, const TempoResult& tempo) {
    json = {
        {"durationSec", tempo.durationSec},
        {"bpm", tempo.bpm},
        {"score", tempo.score},
        {"twin", orNull(tempo.twin)},
        {"candidates", list(tempo.candidates,
                            [](const TempoResult::Candidate& c) {
                                return Json{{"bpm", c.bpm}, {"score", c.score}, {"ranked", c.ranked}};
                            })},
        {"alternatives", list(tempo.alternatives,
                              [](const TempoResult::Alternative& a) {
                                  return Json{{"bpm", a.bpm}, {"relation", a.relation}, {"score", a.score}};
                              })},
        {"tempoMap", list(tempo.tempoMap,
                          [](const TempoResult::MapPoint& p) {
                              return Json{{"t", p.t}, {"bpm", p.bpm}};
                          })},
        {"drift", tempo.drift},
        {"driftSpreadPct", tempo.driftSpreadPct},
        {"beats", tempo.beats},
        {"snappedPct", tempo.snappedPct},
        {"meter",
         {{"label", tempo.meter.label},
          {"group", tempo.meter.group},
          {"contrast", tempo.meter.contrast},
          {"confidence", tempo.meter.confidence},
          {"downbeatOffset", tempo.meter.downbeatOffset}}},
        {"firstDownbeat", tempo.firstDownbeat},
        {"envFull", tempo.envFull},
        {"envLow", tempo.envLow},
    };
}

void to_json(Json& json, const MusicGrid& grid) {
    json = {
        {"bpm", grid.bpm},
        {"beatsPerBar", grid.beatsPerBar},
        {"steady", grid.steady},
        {"beats", grid.beats},
        {"downbeats", grid.downbeats},
        {"duration", grid.duration},
        {"downbeatConfidence", grid.downbeatConfidence},
        {"grooveStart", grid.grooveStart},
        {"attackShift", grid.attackShift},
        {"boundaries", grid.boundaries()},
    };
}

void to_json(Json& json, const KeyResult& key) {
    json = {
        {"tonic", key.tonic},
        {"mode", key.mode},
        {"confidence", key.confidence},
        {"bands", key.bands},
        {"spectralTags", key.spectralTags},
        {"moodTags", key.moodTags},
    };
}

void to_json(Json& json, const LoudnessResult& loudness) {
    json = {
        {"integrated", loudness.integrated},     {"momentaryMax", loudness.momentaryMax},
        {"shortTermMax", loudness.shortTermMax}, {"samplePeak", loudness.samplePeak},
        {"truePeak", loudness.truePeak},         {"note", orNull(loudness.note)},
    };
}

void to_json(Json& json, const LoopCandidate& candidate) {
    json = {
        {"boundary", candidate.boundary},
        {"time", candidate.time},
        {"score", candidate.score},
        {"phraseBars", orNull(candidate.phraseBars)},
        {"isContentEnd", candidate.isContentEnd},
        {"reasons", candidate.reasons},
    };
}

void to_json(Json& json, const StructureResult& structure) {
    const BarProfile& profile = structure.profile;
    json = {
        {"profile",
         {{"rms", profile.rms},
          {"activeLevel", profile.activeLevel},
          {"musicStartBar", profile.musicStartBar},
          {"musicEndBar", profile.musicEndBar}}},
        {"pins", structure.pins},
        {"fadeStart", orNull(structure.fadeStart)},
        {"similarity", rows(structure.similarity)},
        {"novelty", structure.novelty},
        {"loopCandidates", structure.loopCandidates},
        {"exitCandidates", structure.exitCandidates},
        {"notes", structure.notes},
    };
}

void to_json(Json& json, const MusicAnalysis& analysis) {
    json = {
        {"tempo", analysis.tempo},       {"grid", analysis.grid},           {"key", analysis.key},
        {"loudness", analysis.loudness}, {"structure", analysis.structure}, {"seconds", analysis.seconds},
        {"summary", analysis.summary()},
    };
}

}  // namespace brindlehum
