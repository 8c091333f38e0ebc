// DocumentPulls: requests of the exporter for a document in memory.
#include "editor/document/document_pulls.h"

#include "dsp/edit_ops.h"

namespace brindlehum {

DocumentPulls::DocumentPulls(const DocumentModel& document, const SettingsStore& settings, PlayerMessage& message,
                             MainLoop& loop)
    : PullSource(message, loop), document_(document), settings_(settings) {}

std::optional<Exporter::Request> DocumentPulls::request(bool selectionOnly) const {
    const auto& doc = document_.doc();
    if (!doc || document_.total() == 0) { return std::nullopt; }
    Exporter::Request asked{.info = doc->info, .source = doc->info.detected, .folder = settings_.value().pulls()};
    asked.info.url = doc->url;
    asked.info.channels = document_.sound().channels();
    asked.info.frames = document_.total();
    asked.info.sampleRate = doc->sampleRate;
    asked.asFloat = settings_.value().pullsAsFloat;
    if (selectionOnly) { asked.range = document_.selection(); }
    const int64_t total = document_.total();
    const FrameRange part = asked.range.value_or(FrameRange{0, total});
    // Silence around the part, so that a request that waits in the clipboard keeps no more than it needs.
    const Sound sound = EditOps::silence(EditOps::silence(document_.sound(), 0, part.lower), part.upper, total);
    const auto notes = [read = document_.notesReader(), marks = trimmed(document_.marks(), part, total)] {
        return noted(read(), marks);
    };
    asked.edited = Exporter::Edited{sound, notes, document_.revision()};
    return asked;
}

std::shared_ptr<ExportJob> DocumentPulls::startExport(bool selectionOnly) {
    const auto asked = request(selectionOnly);
    return asked ? startExport(*asked) : nullptr;
}

std::shared_ptr<ExportJob> DocumentPulls::startExport(const Exporter::Request& request) {
    return queue().start(request, ExportQueue::Hold::untilKept);
}

std::string DocumentPulls::formName() const {
    return name(DragExport::original());
}

}  // namespace brindlehum
