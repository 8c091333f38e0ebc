// UpmixPlanStorage: a plan in the form that the processor reads, with the lists that it points to.
#pragma once

#include "core/mn_upmix.h"
#include "upmix/upmix_plan.h"

namespace brindlehum {

// Immutable, and never moved: the record's address is the processor's.
class UpmixPlanStorage {
public:
    explicit UpmixPlanStorage(UpmixPlan plan);
    UpmixPlanStorage(const UpmixPlanStorage&) = delete;
    UpmixPlanStorage& operator=(const UpmixPlanStorage&) = delete;

    const mn_upmix_plan* pointer() const { return &record_; }

private:
    UpmixPlan plan_;
    mn_upmix_plan record_;
};

}  // namespace brindlehum
