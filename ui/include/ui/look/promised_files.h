// PromisedFiles: drag data of files that are still being made when the drag begins.
#pragma once

#include <QMimeData>
#include <filesystem>
#include <functional>
#include <vector>

namespace brindlehum {

// Offers text/uri-list. A target may ask while the pointer hovers over it, at the drop or after it, and more than once.
class PromisedFiles : public QMimeData {
    Q_OBJECT
public:
    using Files = std::vector<std::filesystem::path>;

    // `await` runs on the main thread each time that a target asks, and may block for a while. It returns no file when
    // there is none: the target then gets nothing.
    // `isCopy`: for the clipboard, also with the list that file managers paste from.
    explicit PromisedFiles(std::function<Files()> await, bool isCopy = false);

    QStringList formats() const override;
    bool hasFormat(const QString& format) const override;

protected:
    QVariant retrieveData(const QString& format, QMetaType type) const override;

private:
    std::function<Files()> await_;
    bool isCopy_;
};

}  // namespace brindlehum
