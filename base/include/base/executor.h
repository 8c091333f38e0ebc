// Executor: where a piece of work runs, such as the main thread, a serial queue or the background pool.
#pragma once

#include <functional>

namespace brindlehum {

// Takes a job and runs it later on the executor's thread. Any thread may call it.
using Executor = std::function<void(std::function<void()>)>;

}  // namespace brindlehum
