// EditorClipboard: what was copied last, kept across documents.
#pragma once

#include <optional>

#include "editor/document/edit_commands.h"

// Main thread.
namespace brindlehum::EditorClipboard {

const std::optional<Clip>& clip();
void set(Clip clip);
void clear();

}  // namespace brindlehum::EditorClipboard
