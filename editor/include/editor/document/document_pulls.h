// DocumentPulls: takes the document, or its selection, out as a file in the pulls folder.
#pragma once

#include "editor/document/document_model.h"
#include "mix/player/pull_source.h"
#include "settings/settings_store.h"

namespace brindlehum {

// Main thread. The file has the document's channels and rate, as it sounds when it is asked for, and is named after its
// source: "Rain edit_1.250-3.000s.wav".
class DocumentPulls : public PullSource {
    Q_OBJECT
public:
    DocumentPulls(const DocumentModel& document, const SettingsStore& settings, PlayerMessage& message, MainLoop& loop);

    std::optional<Exporter::Request> request(bool selectionOnly) const override;
    std::shared_ptr<ExportJob> startExport(bool selectionOnly) override;
    std::string formName() const override;
    // A request of an earlier state, that waits to be kept.
    std::shared_ptr<ExportJob> startExport(const Exporter::Request& request);

private:
    const DocumentModel& document_;
    const SettingsStore& settings_;
};

}  // namespace brindlehum
