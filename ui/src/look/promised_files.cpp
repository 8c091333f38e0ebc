// PromisedFiles: asks for the files only when their names are asked for.
#include "ui/look/promised_files.h"

#include "ui/look/file_drag.h"

namespace brindlehum {
namespace {

const QString uriList = "text/uri-list";

}  // namespace

PromisedFiles::PromisedFiles(std::function<Files()> await, bool isCopy) : await_(std::move(await)), isCopy_(isCopy) {}

QStringList PromisedFiles::formats() const {
    QStringList offered{uriList};
    if (isCopy_) { offered << FileDrag::copiedFiles; }
    return offered;
}

bool PromisedFiles::hasFormat(const QString& format) const {
    return formats().contains(format);
}

QVariant PromisedFiles::retrieveData(const QString& format, QMetaType /*type*/) const {
    if (!hasFormat(format)) { return {}; }
    const Files files = await_();
    if (files.empty()) { return {}; }
    return format == uriList ? FileDrag::uriList(files) : FileDrag::copiedList(files);
}

}  // namespace brindlehum
