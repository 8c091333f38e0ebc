// The symbol of an output profile, in every list of profiles.
#pragma once

#include <QString>

#include "settings/output_profile.h"

namespace brindlehum {

inline QString profileIcon(const OutputProfile& profile) {
    return profile.kind == OutputProfile::Kind::headphones ? "headphones" : "speakers";
}

}  // namespace brindlehum
