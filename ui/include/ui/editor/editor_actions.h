// EditorActions: the editor's commands, shared by its menus and its toolbar, always enabled as they apply.
#pragma once

#include <QAction>
#include <QObject>
#include <functional>
#include <vector>

#include "editor/model/editor_model.h"

namespace brindlehum {

class EditorWaveView;

// Made for one window; the shortcuts work while it has the keyboard. Space plays, except on a button that Tab has led
// to, which it presses.
class EditorActions : public QObject {
    Q_OBJECT
public:
    EditorActions(EditorModel& editor, EditorWaveView& wave, QWidget& window);

    QAction *openFile, *saveAs, *closeDocument;  // carried out by the window
    QAction *undo, *redo, *cut, *copy, *paste, *remove, *trim, *silence, *selectAll, *selectNone;
    QAction *zoomIn, *zoomOut, *fit, *zoomSelection, *snap, *history, *spectrum, *linear;
    QAction *play, *loop, *preRoll, *loopSeam, *toStart, *click;
    std::vector<QAction*> effects;  // in the order of EditOps::effects()
    std::vector<QAction*> macros;   // in the order of macros()

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QAction* add(const QString& text, const QKeySequence& keys, std::function<void()> action, const QString& tip = {});
    QAction* addSwitch(const QString& text, const QKeySequence& keys, std::function<void(bool)> set,
                       const QString& tip);
    void makeEdits();
    void makeViews(EditorWaveView& wave);
    void makePlayback();
    void refresh();
    void refreshPlayback(bool isIdle);

    EditorModel& editor_;
    QWidget& window_;
};

}  // namespace brindlehum
