// Upmixer: a processor with the plan that it runs.
#pragma once

#include <memory>
#include <optional>

#include "core/mn_upmix.h"
#include "upmix/upmix_params.h"
#include "upmix/upmix_plan.h"

namespace brindlehum {

class UpmixPlanStorage;

// Control side; only `raw` goes to the render thread, which may be in it until some time after it was unpublished.
class Upmixer {
public:
    // Samples of the transform: 1024 up to 50 kHz, 2048 up to 100 kHz, 4096 above, which take 21 to 23 ms at any rate
    // from 44.1 kHz to 192 kHz. Four hops fill it.
    static int fftSizeAt(double sampleRate);
    // 1 to 16 inputs, 1 to 24 outputs; null otherwise, and when there is no memory.
    static std::unique_ptr<Upmixer> make(int inChannels, int outChannels, double sampleRate);
    ~Upmixer();

    // Plans the request and hands the plan to the processor, which takes it up without a click at its next hop. Returns
    // the plan before, which must live until the processor can't read it any more: some 3 seconds. Null when there was
    // none, and when the request is the one that runs. Takes up to some milliseconds.
    std::shared_ptr<const UpmixPlanStorage> apply(const UpmixRequest& request);

    mn_upmix* raw() const { return raw_.get(); }
    int inChannels() const { return mn_upmix_in_channels(raw()); }
    int outChannels() const { return mn_upmix_out_channels(raw()); }
    double sampleRate() const { return transform_.sampleRate; }
    int fftSize() const { return transform_.size; }
    int bins() const { return transform_.bins(); }
    const std::optional<UpmixRequest>& request() const { return request_; }
    int plans() const { return plans_; }  // made so far

private:
    struct Destroy {
        void operator()(mn_upmix* upmix) const { mn_upmix_destroy(upmix); }
    };
    using Processor = std::unique_ptr<mn_upmix, Destroy>;
    Upmixer(Processor raw, UpmixTransform transform);

    Processor raw_;
    UpmixTransform transform_;
    std::optional<UpmixRequest> request_;
    int plans_ = 0;
    std::shared_ptr<const UpmixPlanStorage> storage_;
};

}  // namespace brindlehum
