// The test's own LV2 effects, in place of those that are installed on the machine.
#pragma once

#include <cstdlib>
#include <string>

namespace brindlehum::test {

// For this process and its children, from the next look.
inline void useTestEffects() {
    ::setenv("LV2_PATH", BRINDLEHUM_TEST_LV2, 1);
}

// "gain", "delay", "trouble", "needy", "keeper": effects.ttl says what they have.
inline std::string effect(const std::string& name) {
    return "urn:brindlehum:test:" + name;
}

inline const std::string effectBundle = "file://" BRINDLEHUM_TEST_LV2 "/effects.lv2/";

}  // namespace brindlehum::test
