// The size and time of a file in the form that the catalog stores.
#pragma once

#include <sys/stat.h>

#include "library/catalog/catalog.h"

namespace brindlehum {

inline Catalog::Stamp stampOf(const struct stat& facts) {
    return {facts.st_size, double(facts.st_mtim.tv_sec) + double(facts.st_mtim.tv_nsec) * 1e-9};
}

}  // namespace brindlehum
