// Texts for length and format, from a catalog row or a probe.
#include "ui/browser/info_text.h"

#include <cmath>

#include "mix/player/player_model.h"

namespace brindlehum::InfoText {
namespace {

QString clock(double seconds) {
    if (!std::isfinite(seconds)) { return "0:00.000"; }
    // Whole milliseconds first, or 59.9996 would read as sixty seconds.
    const double ms = std::round(seconds * 1000);
    const double minutes = std::floor(ms / 60000);
    return QString::asprintf("%.0f:%06.3f", minutes, (ms - minutes * 60000) / 1000);
}

}  // namespace

bool isKnown(const BrowserEntry& entry) {
    return entry.row && entry.row->duration > 0;
}

double seconds(const BrowserEntry& entry, const AudioFileInfo* info) {
    if (isKnown(entry)) { return entry.row->duration; }
    return info && info->sampleRate > 0 ? double(info->frames) / info->sampleRate : 0;
}

QString duration(const BrowserEntry& entry, const AudioFileInfo* info) {
    if (isKnown(entry)) { return clock(entry.row->duration); }
    return info ? QString::fromStdString(PlayerModel::time(seconds(entry, info))) : QString();
}

QString format(const BrowserEntry& entry, const AudioFileInfo* info) {
    if (isKnown(entry)) { return QString::fromStdString(entry.row->formatSummary()); }
    return info ? QString::fromStdString(info->summary()) : QString();
}

}  // namespace brindlehum::InfoText
