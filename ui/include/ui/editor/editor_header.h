// EditorHeader: the document's name and what its analysis says: tempo, meter, key, loudness.
#pragma once

#include <QWidget>

#include "editor/document/document_model.h"
#include "editor/music/music_model.h"
#include "editor/playback/editor_transport.h"
#include "settings/settings_store.h"

class QLabel;
class QToolButton;

namespace brindlehum {

class ElidedLabel;
class MenuButton;

class EditorHeader : public QWidget {
    Q_OBJECT
public:
    EditorHeader(DocumentModel& document, MusicModel& music, EditorTransport& transport, SettingsStore& settings,
                 QWidget* parent = nullptr);

private:
    void refresh();
    void fillTempo(QMenu& menu);
    void fillMeter(QMenu& menu);
    void askTempo();
    QString loudnessText() const;

    DocumentModel& document_;
    MusicModel& music_;
    EditorTransport& transport_;
    SettingsStore& settings_;
    ElidedLabel* name_;
    QLabel* unsaved_;
    QLabel* state_;  // "Finding the bars…", "No steady pulse"
    MenuButton* tempo_;
    QLabel* twin_;
    MenuButton* meter_;
    QLabel* uncertain_;
    QToolButton* click_;
    QLabel* key_;
    QLabel* loudness_;
    QLabel* expert_;
};

}  // namespace brindlehum
