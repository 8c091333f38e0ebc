// Waiting for another program that has locked the catalog.
#pragma once

#include <functional>
#include <stop_token>

#include "base/error.h"

namespace brindlehum {

// Thrown when the other program keeps its lock for too long.
class CatalogLocked : public Error {
public:
    CatalogLocked() : Error(ErrorKind::catalog, "another program has locked it") {}
};

// What happens during a wait.
struct LockWait {
    // Called once a wait, when it has lasted two seconds, on the waiting thread, which may be any.
    std::function<void()> onLong = {};
    std::stop_token stop = {};  // ends the waits while the catalog is being opened
};

}  // namespace brindlehum
