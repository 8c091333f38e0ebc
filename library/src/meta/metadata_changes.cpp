// Applies an edit to a record.
#include "library/meta/metadata_changes.h"

namespace brindlehum {

void MetadataChanges::apply(SoundMeta& meta) const {
    for (const auto& [name, text] : fields) {
        if (const SoundMeta::Tag* tag = SoundMeta::tag(name)) { meta.*tag->field = text; }
    }
    if (rating) { meta.rating = *rating; }
}

}  // namespace brindlehum
