// TempEditsPanel: the pins, the lengths and the planned edits of the document's music.
#pragma once

#include <QWidget>
#include <functional>
#include <vector>

#include "editor/music/music_model.h"
#include "editor/playback/editor_transport.h"
#include "settings/settings_store.h"

class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QSpinBox;
class QVBoxLayout;

namespace brindlehum {

class TempEditsPanel : public QWidget {
    Q_OBJECT
public:
    // `reveal` shows a folder in the file manager. `generation` is shown below the edits.
    TempEditsPanel(MusicModel& music, EditorTransport& transport, SettingsStore& settings,
                   std::function<void(const std::filesystem::path&)> reveal, QWidget* generation,
                   QWidget* parent = nullptr);

private:
    void makePins(QVBoxLayout& column);
    void makeOptions(QVBoxLayout& column);
    void makeResults(QVBoxLayout& column);
    void refresh();
    void refreshCards();
    void refreshLoops();
    void setTarget(double seconds, bool on);
    QString pinsText() const;

    MusicModel& music_;
    EditorTransport& transport_;
    SettingsStore& settings_;
    std::function<void(const std::filesystem::path&)> reveal_;
    QLabel* state_;
    QWidget* body_;
    QLabel* pins_;
    QPushButton* reset_;
    std::vector<QPushButton*> lengths_;
    QCheckBox* extended_;
    QCheckBox* exact_;
    QSpinBox* crossfade_;
    QVBoxLayout* cards_;
    QVBoxLayout* loops_;
    QLabel* loopsTitle_;
    QPushButton* make_;
    QProgressBar* progress_;
    QLabel* written_;
    QPushButton* show_;
    // What the cards and the rows of loops were built from.
    std::vector<std::string> shownCards_;
    std::vector<QString> shownLoops_;
};

}  // namespace brindlehum
