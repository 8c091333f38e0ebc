// UpmixNumbers: the numbers of an upmix that sliders show and change, whoever upmixes.
#pragma once

#include "upmix/upmix_params.h"

namespace brindlehum {

class UpmixNumbers {
public:
    virtual ~UpmixNumbers() = default;
    virtual const UpmixParams& now() const = 0;
    // What the chosen preset started from.
    virtual UpmixParams start() const = 0;
    // Whether the source is stereo: others keep their front and their LFE.
    virtual bool isStereo() const = 0;
    virtual void edit(const UpmixParams& params) = 0;
};

}  // namespace brindlehum
