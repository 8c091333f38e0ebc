// The steps of `edit`: read from words, and run on a document without a window.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "command.h"
#include "editor/document/edit_history.h"

namespace brindlehum::cli {

struct ScriptStep {
    int number = 0;                             // from 1
    std::string verb;                           // "cut"
    std::vector<std::optional<double>> values;  // none stands for "end"
    std::string text;                           // as it was given: "cut 1 2.5"
};

// Throws UsageError for an unknown step, and for one with too few or too many values.
std::vector<ScriptStep> readSteps(Words words);

// The document after the steps, as the editor makes it. Throws Error with the number and the words of the step that
// can't be done.
EditHistory runSteps(const std::vector<ScriptStep>& steps, const Content& opened, double sampleRate);

}  // namespace brindlehum::cli
