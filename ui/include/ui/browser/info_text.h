// InfoText: the texts of a sound's length, format and date cells, from its catalog row or else from its probe or file.
#pragma once

#include <QString>

#include "library/model/browser_entry.h"

namespace brindlehum::InfoText {

// Whether the catalog's row has the length and the format.
bool isKnown(const BrowserEntry& entry);
// "m:ss.mmm"; empty when the row doesn't have it and `info` is null.
QString duration(const BrowserEntry& entry, const AudioFileInfo* info);
QString format(const BrowserEntry& entry, const AudioFileInfo* info);
// Seconds, 0 when unknown.
double seconds(const BrowserEntry& entry, const AudioFileInfo* info);
// When the file or folder was last changed, as the user's locale writes it; seconds since 1970, 0 when unknown.
QString modified(const BrowserEntry& entry);
double modifiedSeconds(const BrowserEntry& entry);

}  // namespace brindlehum::InfoText
