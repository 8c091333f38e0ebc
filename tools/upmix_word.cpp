// Looks a preset up, in the settings only when it isn't a built-in one.
#include "upmix_word.h"

#include "settings/settings_store.h"
#include "word_values.h"

namespace brindlehum::cli {

UpmixSettings upmixAfter(const std::string& word, const std::string& text) {
    if (const auto builtIn = upmixNamed(text, {})) { return *builtIn; }
    FileDefaults defaults;
    return known(word, text, upmixNamed(text, SettingsStore(defaults).value().upmixPresets));
}

}  // namespace brindlehum::cli
