// LaneHeads: solo and mute of each lane, beside the waveform.
#pragma once

#include <QWidget>
#include <vector>

#include "editor/document/document_model.h"
#include "editor/playback/editor_transport.h"

class QToolButton;

namespace brindlehum {

class EditorWaveView;

class LaneHeads : public QWidget {
    Q_OBJECT
public:
    // Its rows stand beside the lanes of `wave`.
    LaneHeads(DocumentModel& document, EditorTransport& transport, const EditorWaveView& wave,
              QWidget* parent = nullptr);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Head {
        QToolButton* solo = nullptr;
        QToolButton* mute = nullptr;
    };
    void rebuild();
    void place();
    void refresh();

    DocumentModel& document_;
    EditorTransport& transport_;
    const EditorWaveView& wave_;
    std::vector<Head> heads_;
};

}  // namespace brindlehum
