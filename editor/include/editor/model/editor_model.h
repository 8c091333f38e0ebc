// EditorModel: the editor. It owns its parts and wires them: the document, its music, its transport and its message.
#pragma once

#include <QObject>
#include <filesystem>

#include "editor/document/document_model.h"
#include "editor/document/document_pulls.h"
#include "editor/generation/ai_generator.h"
#include "editor/music/music_model.h"
#include "editor/playback/editor_transport.h"

namespace brindlehum {

// Main thread. Views take the parts that they show.
class EditorModel : public QObject {
    Q_OBJECT
public:
    // Unsaved edits are kept safe in `journals`, by default in defaultJournals(). Temp edits are written on
    // `tempEdits`, which batches share, by default on a queue of its own. Without `http` nothing is generated, and
    // without `secrets` the service's key lives for this run.
    EditorModel(PlaybackEngine& engine, SettingsStore& settings, MainLoop& loop, std::filesystem::path journals,
                std::shared_ptr<SerialQueue> tempEdits = std::make_shared<SerialQueue>("Brindlehum.tempedits"),
                HttpClient* http = nullptr, Secrets* secrets = nullptr);
    // `brindlehum/editor` in $XDG_STATE_HOME, or in ~/.local/state.
    static std::filesystem::path defaultJournals();

    DocumentModel& document() { return document_; }
    MusicModel& music() { return music_; }
    EditorTransport& transport() { return transport_; }
    DocumentPulls& pulls() { return pulls_; }
    AIGenerator& generator() { return generator_; }
    GenerationKey& generationKey() { return generationKey_; }
    PlayerMessage& message() { return message_; }
    MainLoop& loop() { return loop_; }  // for what a view computes in the background

private:
    MainLoop& loop_;
    PlayerMessage message_;
    DocumentModel document_;
    MusicModel music_;
    EditorTransport transport_;
    DocumentPulls pulls_;
    GenerationKey generationKey_;
    AIGenerator generator_;
};

}  // namespace brindlehum
