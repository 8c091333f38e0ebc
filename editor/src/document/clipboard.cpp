// EditorClipboard: one clip for the whole program.
#include "editor/document/clipboard.h"

namespace brindlehum::EditorClipboard {
namespace {

std::optional<Clip>& held() {
    static std::optional<Clip> clip;
    return clip;
}

}  // namespace

const std::optional<Clip>& clip() {
    return held();
}

void set(Clip clip) {
    held() = std::move(clip);
}

void clear() {
    held().reset();
}

}  // namespace brindlehum::EditorClipboard
