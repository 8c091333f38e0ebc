// Upmixer: chooses the transform's size, and exchanges plans.
#include "upmix/upmixer.h"

#include <utility>

#include "plan_storage.h"
#include "upmix/upmix_planner.h"

namespace brindlehum {

int Upmixer::fftSizeAt(double sampleRate) {
    return sampleRate <= 50000 ? 1024 : sampleRate <= 100000 ? 2048 : 4096;
}

std::unique_ptr<Upmixer> Upmixer::make(int inChannels, int outChannels, double sampleRate) {
    const UpmixTransform transform{fftSizeAt(sampleRate), sampleRate};
    Processor raw(mn_upmix_create(inChannels, outChannels, transform.size, sampleRate));
    return raw ? std::unique_ptr<Upmixer>(new Upmixer(std::move(raw), transform)) : nullptr;
}

Upmixer::Upmixer(Processor raw, UpmixTransform transform) : raw_(std::move(raw)), transform_(transform) {}
Upmixer::~Upmixer() = default;

std::shared_ptr<const UpmixPlanStorage> Upmixer::apply(const UpmixRequest& request) {
    if (request_ == request) { return nullptr; }
    auto storage = std::make_shared<const UpmixPlanStorage>(UpmixPlanner::plan(request, transform_));
    mn_upmix_set_plan(raw(), storage->pointer());
    request_ = request;
    ++plans_;
    return std::exchange(storage_, std::move(storage));
}

}  // namespace brindlehum
