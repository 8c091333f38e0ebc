// DocumentOut: hands the editor's sound to other programs, by a handle to drag and through the clipboard.
#pragma once

#include <QMimeData>
#include <memory>

#include "editor/model/editor_model.h"
#include "ui/player/drag_session.h"

namespace brindlehum {

class DragHandle;

// Main thread. What is copied or cut in the editor is also offered as a file, which is made when another program asks.
class DocumentOut : public QObject {
    Q_OBJECT
public:
    // Lives with `wave`, which is the picture of a drag.
    DocumentOut(EditorModel& editor, QWidget& wave);

    // Drags the selection, or the whole document without one; the keyboard copies it as a file.
    DragHandle* handle() { return handle_; }
    DragSession& drags() { return drags_; }

private:
    void offer();

    DocumentPulls& pulls_;
    DragSession drags_;
    DragHandle* handle_;
};

}  // namespace brindlehum
