// EditorModel: wires the parts.
#include "editor/model/editor_model.h"

#include <cstdlib>

#include "base/home_folder.h"

namespace brindlehum {

EditorModel::EditorModel(PlaybackEngine& engine, SettingsStore& settings, MainLoop& loop,
                         std::filesystem::path journals, std::shared_ptr<SerialQueue> tempEdits, HttpClient* http,
                         Secrets* secrets)
    : loop_(loop),
      message_(loop),
      document_(loop, std::move(journals), message_),
      music_(document_, settings, loop, message_, tempEdits),
      transport_(engine, settings, document_, music_, loop, message_),
      pulls_(document_, settings, message_, loop),
      generationKey_(secrets, settings),
      generator_(http, generationKey_, settings, loop, std::move(tempEdits)) {
    document_.pinnedLoop = [this] { return music_.pinnedLoop(); };
    connect(&document_, &DocumentModel::macroRan, this, [this](Macro macro) {
        if (macro == Macro::seamlessLoop) { transport_.setLoops(true); }
    });
    connect(&settings, &SettingsStore::changed, this, [this] { transport_.profileChanged(); });
}

std::filesystem::path EditorModel::defaultJournals() {
    const char* state = std::getenv("XDG_STATE_HOME");
    const std::filesystem::path base =
        state != nullptr && state[0] == '/' ? std::filesystem::path(state) : homeFolder() / ".local/state";
    return base / "brindlehum/editor";
}

}  // namespace brindlehum
