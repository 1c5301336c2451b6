#include "imaging/kernels/Targets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/kernels/Targets.cpp"
#include <hwy/foreach_target.h> // must come before highway.h
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

const char *thisTarget() {
    return hwy::TargetName(HWY_TARGET);
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(thisTarget);

bool chooseKernelTarget() {
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    return true;
}

const char *chosenKernelTarget() {
    return HWY_DYNAMIC_DISPATCH(thisTarget)();
}

} // namespace lumora
#endif
