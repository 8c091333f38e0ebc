// ExportCopy: puts an exported file on the clipboard once it is there.
#pragma once

#include <QObject>
#include <memory>

namespace brindlehum {

class PullSource;
class ExportJob;

// Main thread. The clipboard gets a finished file and not a promise: clipboard managers read everything at once.
class ExportCopy : public QObject {
    Q_OBJECT
public:
    explicit ExportCopy(PullSource& source, QObject* parent = nullptr);
    // The selection if there is one and it is asked for, else the whole sound, in the chosen form. A newer call
    // replaces one that is under way; so does anything that the user copies meanwhile.
    void copy(bool selectionOnly);

private:
    void finish();

    PullSource& source_;
    std::shared_ptr<ExportJob> job_;  // under way
};

}  // namespace brindlehum
