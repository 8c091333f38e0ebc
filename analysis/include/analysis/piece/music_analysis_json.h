// The records of a music analysis as JSON, for scripts and other programs.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "analysis/piece/music_analysis.h"

namespace brindlehum {

// Objects with the fields as keys, in the order of the fields; an absent value and a number that isn't finite become
// null. The similarity of bars is an array of rows. `mono22k` is left out of the whole analysis.
void to_json(nlohmann::ordered_json& json, const TempoResult& tempo);
void to_json(nlohmann::ordered_json& json, const MusicGrid& grid);
void to_json(nlohmann::ordered_json& json, const KeyResult& key);
void to_json(nlohmann::ordered_json& json, const LoudnessResult& loudness);
void to_json(nlohmann::ordered_json& json, const LoopCandidate& candidate);
void to_json(nlohmann::ordered_json& json, const StructureResult& structure);
void to_json(nlohmann::ordered_json& json, const MusicAnalysis& analysis);

// One row of the similarity: that of `bar` to all bars.
std::vector<double> similarityRow(const SimilarityMatrix& matrix, int bar);

}  // namespace brindlehum
