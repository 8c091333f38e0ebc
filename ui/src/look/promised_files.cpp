// PromisedFiles: asks for the files only when their names are asked for.
#include "ui/look/promised_files.h"

#include "ui/look/file_drag.h"

namespace brindlehum {
namespace {

const QString uriList = "text/uri-list";

}  // namespace

PromisedFiles::PromisedFiles(std::function<Files()> await) : await_(std::move(await)) {}

QStringList PromisedFiles::formats() const {
    return {uriList};
}

bool PromisedFiles::hasFormat(const QString& format) const {
    return format == uriList;
}

QVariant PromisedFiles::retrieveData(const QString& format, QMetaType /*type*/) const {
    if (format != uriList) { return {}; }
    const Files files = await_();
    return files.empty() ? QVariant() : QVariant(FileDrag::uriList(files));
}

}  // namespace brindlehum
