// Refusal: the Error that a call throws, as a value to compare with.
#pragma once

#include <optional>
#include <string>

#include "base/error.h"

namespace brindlehum::test {

struct Refusal {
    std::optional<ErrorKind> kind;  // none: the call threw no Error
    std::string text;
};

template <typename Call>
Refusal refusalOf(Call&& call) {
    try {
        call();
    } catch (const Error& error) { return {error.kind(), error.what()}; }
    return {};
}

}  // namespace brindlehum::test
