// Pins: the structural points of a piece, the input of every edit. LoopCandidate: a rated place to loop or to leave.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

namespace brindlehum {

// A plain value that the user may change. The integers are indices into MusicGrid::boundaries().
struct Pins {
    double startTime = 0;   // seconds of silence to skip at the head, 0 for none
    int introEnd = 0;       // the body starts here
    int loopStart = 0;      // the loopable body starts here
    int loopEnd = 0;        // the loopable body ends here
    int endingStart = 0;    // the ending starts here
    int musicEnd = 0;       // the music stops here
    int finalHit = 0;       // start of the final hit, or of the last bar
    bool loopFile = false;  // the file as a whole is a seamless loop

    bool operator==(const Pins&) const = default;
};

// An object with exactly the fields as keys. Reading throws nlohmann::json::exception when a field is missing.
void to_json(nlohmann::json& json, const Pins& pins);
void to_json(nlohmann::ordered_json& json, const Pins& pins);
void from_json(const nlohmann::json& json, Pins& pins);

struct LoopCandidate {
    int boundary = 0;               // identifies the candidate in its list
    double time = 0;                // seconds
    double score = 0;               // 0 to 1
    std::optional<int> phraseBars;  // the length in bars, if it is a phrase length
    bool isContentEnd = false;      // the music itself ends here
    std::vector<std::string> reasons;
};

}  // namespace brindlehum
