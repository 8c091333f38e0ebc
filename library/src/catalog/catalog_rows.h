// Reads rows of `files` as records.
#pragma once

#include "catalog/database.h"
#include "library/catalog/catalog.h"
#include "meta/meta_codec.h"

namespace brindlehum {

// The columns must be path, root, duration, sr, channels, bits, codec, meta, mtime, in this order.
inline Catalog::Row readRow(const Statement& row) {
    return {.path = std::string(row.text(0)),
            .root = std::string(row.text(1)),
            .duration = row.real(2),
            .sampleRate = row.real(3),
            .channels = int(row.integer(4)),
            .bits = int(row.integer(5)),
            .codec = std::string(row.text(6)),
            .meta = decodeMeta(row.text(7)),
            .modified = row.real(8)};
}

}  // namespace brindlehum
