// LaneHeads: solo and mute of each lane, beside the waveform.
#pragma once

#include <QWidget>
#include <vector>

#include "editor/document/document_model.h"
#include "editor/playback/editor_transport.h"

class QToolButton;

namespace brindlehum {

class LaneHeads : public QWidget {
    Q_OBJECT
public:
    LaneHeads(DocumentModel& document, EditorTransport& transport, QWidget* parent = nullptr);

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
    std::vector<Head> heads_;
};

}  // namespace brindlehum
