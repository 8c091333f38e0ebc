// The upmix loops for processors with AVX2: this file alone is compiled for them.
#include "upmix_kernels.h"

#if defined(__AVX2__)

#include "upmix_loops.h"

namespace brindlehum::core {

const UpmixKernels* avx2UpmixKernels() {
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") ? &kernels : nullptr;
}

}  // namespace brindlehum::core

#else

namespace brindlehum::core {

const UpmixKernels* avx2UpmixKernels() {
    return nullptr;
}

}  // namespace brindlehum::core

#endif
