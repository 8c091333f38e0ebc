// keyName: a musical key as musicians of the user's language call it.
#pragma once

#include <QString>

#include "analysis/key/key_analyzer.h"

namespace brindlehum {

// "D# minor"; in German "dis-Moll".
QString keyName(const KeyResult& key);

}  // namespace brindlehum
