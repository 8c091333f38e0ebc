// The upmix loops for any processor, and the choice of the fastest version.
#include "upmix_kernels.h"

#include "upmix_loops.h"

namespace brindlehum::core {

const UpmixKernels& plainUpmixKernels() {
    return kernels;
}

const UpmixKernels& fastestUpmixKernels() {
    const UpmixKernels* fast = avx2UpmixKernels();
    return fast != nullptr ? *fast : kernels;
}

}  // namespace brindlehum::core
