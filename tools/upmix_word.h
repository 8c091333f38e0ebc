// The upmix that a word names: a built-in preset or one of the user's own.
#pragma once

#include <string>

#include "upmix/upmix_presets.h"

namespace brindlehum::cli {

// Own presets are those that the user keeps in the window. Throws UsageError, which names `word`, for another text.
UpmixSettings upmixAfter(const std::string& word, const std::string& text);

}  // namespace brindlehum::cli
