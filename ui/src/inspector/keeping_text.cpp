// Goes by the formats of the files: WAV files, others that hold metadata, and those that don't.
#include "ui/inspector/keeping_text.h"

#include <QCoreApplication>
#include <algorithm>

#include "base/text.h"
#include "library/meta/meta_io.h"

namespace brindlehum {

QString keepingText(const std::vector<std::filesystem::path>& files) {
    const auto isWave = [](const std::filesystem::path& file) {
        const std::string extension = lowerAscii(file.extension().string());
        return extension == ".wav" || extension == ".wave" || extension == ".bwf";
    };
    const auto embedding = std::ranges::count_if(files, MetaIO::canWrite);
    if (embedding == 0 && !files.empty()) {
        return QCoreApplication::translate(
            "KeepingText", "Saved in the catalog and the library's log: these files can't hold metadata.");
    }
    if (size_t(embedding) < files.size()) {
        return QCoreApplication::translate(
            "KeepingText",
            "Saved into the files that can hold metadata, for the others in the catalog and the library's log.");
    }
    if (!std::ranges::all_of(files, isWave)) {
        return QCoreApplication::translate("KeepingText",
                                           "Saved into the files and shared with everyone on this library.");
    }
    return QCoreApplication::translate("KeepingText",
                                       "Saved into the files (iXML + BWF) and shared with everyone on this library.");
}

}  // namespace brindlehum
