// Where a piece of work is to run: the main thread, a serial queue, the background pool.
#pragma once

#include <functional>

namespace brindlehum {

// Takes a job and runs it later on its own thread; may be called from any thread.
using Executor = std::function<void(std::function<void()>)>;

}  // namespace brindlehum
