// SecretText over explicit_bzero(3), which no optimiser leaves out, and the limit of core dumps.
#include "base/secret_text.h"

#include <sys/resource.h>

#include <algorithm>
#include <cstring>

namespace brindlehum {

SecretText::SecretText(std::initializer_list<std::string_view> parts) {
    for (const std::string_view part : parts) { size_ += part.size(); }
    if (size_ == 0) { return; }
    bytes_ = {new char[size_], [size = size_](char* bytes) {
                  ::explicit_bzero(bytes, size);
                  delete[] bytes;
              }};
    char* out = bytes_.get();
    for (const std::string_view part : parts) { out = std::ranges::copy(part, out).out; }
}

// A limit of 1 byte holds for dumps into a program, too, which a limit of 0 doesn't.
void withholdCoreDumps() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_CORE, &limit) != 0) { return; }
    limit.rlim_cur = std::min<rlim_t>(1, limit.rlim_max);
    ::setrlimit(RLIMIT_CORE, &limit);
}

}  // namespace brindlehum
