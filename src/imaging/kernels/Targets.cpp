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
#if HWY_ARCH_X86
// All that the kernels need of the library, which measures how fine the clock is when it is loaded: 4 ms before main().
// With these the linker leaves it out.
namespace hwy {

int64_t SupportedTargets() {
    __builtin_cpu_init();
    const auto all = [](auto... has) { return (... && (has != 0)); };
    const bool sse4 =
        all(__builtin_cpu_supports("ssse3"), __builtin_cpu_supports("sse4.1"), __builtin_cpu_supports("sse4.2"),
            __builtin_cpu_supports("aes"), __builtin_cpu_supports("pclmul"));
    // Whatever has these has LZCNT and F16C, which not every compiler can ask for.
    const bool avx2 =
        sse4 && all(__builtin_cpu_supports("avx"), __builtin_cpu_supports("avx2"), __builtin_cpu_supports("fma"),
                    __builtin_cpu_supports("bmi"), __builtin_cpu_supports("bmi2"));
    const bool avx3 = avx2 && all(__builtin_cpu_supports("avx512f"), __builtin_cpu_supports("avx512vl"),
                                  __builtin_cpu_supports("avx512dq"), __builtin_cpu_supports("avx512bw"),
                                  __builtin_cpu_supports("avx512cd"));
    return HWY_STATIC_TARGET | HWY_EMU128 | (sse4 ? HWY_SSE4 : 0) | (avx2 ? HWY_AVX2 : 0) | (avx3 ? HWY_AVX3 : 0);
}

ChosenTarget &GetChosenTarget() {
    static ChosenTarget chosen;
    return chosen;
}

} // namespace hwy
#endif

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
