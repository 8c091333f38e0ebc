// Texts for length and format, from a catalog row or a probe.
#include "ui/browser/info_text.h"

#include <QDateTime>
#include <QLocale>

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

double modifiedSeconds(const BrowserEntry& entry) {
    return entry.row ? entry.row->modified : entry.modified;
}

QString modified(const BrowserEntry& entry) {
    const double seconds = modifiedSeconds(entry);
    if (seconds == 0) { return {}; }
    return QLocale().toString(QDateTime::fromMSecsSinceEpoch(qint64(seconds * 1000)), QLocale::ShortFormat);
}

}  // namespace brindlehum::InfoText
