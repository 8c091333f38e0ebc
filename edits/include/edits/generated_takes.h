// GeneratedTakes: writes a take of the generation service into the edits folder, full and trimmed.
#pragma once

#include <filesystem>
#include <stop_token>
#include <string>
#include <vector>

#include "edits/generation_protocol.h"

namespace brindlehum::GeneratedTakes {

inline constexpr double longest = 1800;  // seconds of a take

struct Take {
    GenerationKind kind = GenerationKind::intro;
    std::filesystem::path audio;   // in any format that can be read
    std::filesystem::path source;  // the piece
    std::filesystem::path folder;  // for the edits of the piece; made if it is missing
    int number = 1;                // of its name, the first to try
    double barSeconds = 0;         // of the piece
};

// Writes "<piece> - AI Ending 1 (full take).wav" and, for intros and endings, "<piece> - AI Ending 1.wav", both at the
// take's rate. Never replaces a file: both get the next number that is free. A file appears when it is complete. Adds
// the files to `done`; on an Error, which it throws for a take that is no sound, is too long or can't be written, those
// that are finished stay. Ends early when `stop` is requested. Blocking I/O.
void write(const Take& take, std::vector<std::filesystem::path>& done, const std::stop_token& stop = {});

}  // namespace brindlehum::GeneratedTakes
