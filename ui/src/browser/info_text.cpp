// Texts for length and format, from a catalog row or a probe.
#include "ui/browser/info_text.h"

#include "base/time_text.h"

namespace brindlehum::InfoText {

bool isKnown(const BrowserEntry& entry) {
    return entry.row && entry.row->duration > 0;
}

double seconds(const BrowserEntry& entry, const AudioFileInfo* info) {
    if (isKnown(entry)) { return entry.row->duration; }
    return info && info->sampleRate > 0 ? double(info->frames) / info->sampleRate : 0;
}

QString duration(const BrowserEntry& entry, const AudioFileInfo* info) {
    return isKnown(entry) || info ? QString::fromStdString(timeText(seconds(entry, info))) : QString();
}

QString format(const BrowserEntry& entry, const AudioFileInfo* info) {
    if (isKnown(entry)) { return QString::fromStdString(entry.row->formatSummary()); }
    return info ? QString::fromStdString(info->summary()) : QString();
}

}  // namespace brindlehum::InfoText
