// Ctrl+C as a wish that long work looks at.
#pragma once

namespace brindlehum::cli {

// From now on the first Ctrl+C only makes interrupted() true; the second ends the program at once. A signal that our
// parent ignores, as a shell does for background jobs, stays ignored.
void endAtInterrupt();
bool interrupted();

}  // namespace brindlehum::cli
