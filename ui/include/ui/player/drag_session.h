// DragSession: an export under the pointer, from the press that may become a drag to the drop.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include "ui/look/file_drag.h"

namespace brindlehum {

class DragOut;
class ExportJob;
class PullSource;

// Main thread. The file is rendered while the user drags; its name appears in the folder only once a target wants it.
class DragSession {
public:
    explicit DragSession(PullSource& source) : source_(source) {}
    ~DragSession() { release(); }
    DragSession(const DragSession&) = delete;
    DragSession& operator=(const DragSession&) = delete;

    // Begins to render.
    void press(bool selectionOnly);
    // The press was no drag: takes back what it began.
    void release();
    // Drags what the press began, and returns when the drag is over. A drag that nobody takes leaves nothing behind.
    void run(QWidget* source, const FileDrag::Picture& picture);

    PullSource& source() { return source_; }
    // A test stands in for the window system here.
    std::function<bool(QWidget*, std::unique_ptr<QMimeData>, const FileDrag::Picture&)> drag = FileDrag::run;

private:
    PullSource& source_;
    std::shared_ptr<ExportJob> job_;
};

// Drag data of files in the form that is chosen, each made when a target asks. What is no sound, and a sound that isn't
// offered in this form, goes as it is.
std::unique_ptr<QMimeData> promisedForms(DragOut& dragOut, const std::vector<std::filesystem::path>& files);
// Drags them, and returns when the drag is over.
void dragForms(DragOut& dragOut, const std::vector<std::filesystem::path>& files, QWidget* source,
               const FileDrag::Picture& picture);

}  // namespace brindlehum
