// InfoText: what the length and format cells of a sound say, from its catalog row or from its probe.
#pragma once

#include <QString>

#include "library/model/browser_entry.h"

namespace brindlehum::InfoText {

// Whether the catalog alone can tell.
bool isKnown(const BrowserEntry& entry);
// "m:ss.mmm"; empty when neither the row nor `info` (null: not there) tells.
QString duration(const BrowserEntry& entry, const AudioFileInfo* info);
QString format(const BrowserEntry& entry, const AudioFileInfo* info);
// Seconds, 0 when unknown.
double seconds(const BrowserEntry& entry, const AudioFileInfo* info);

}  // namespace brindlehum::InfoText
