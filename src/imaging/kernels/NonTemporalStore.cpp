#include "imaging/kernels/NonTemporalStore.h"

#include "imaging/kernels/Targets.h"

#include <algorithm>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/kernels/NonTemporalStore.cpp"
#include <hwy/cache_control.h>
#include <hwy/foreach_target.h> // must come before highway.h
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

void copyStreaming(const std::uint8_t *from, std::uint8_t *to, std::size_t bytes) {
    const hn::CappedTag<std::uint8_t, 64> d; // at most a cache line at a time
    const std::size_t lanes = hn::Lanes(d);
    const std::size_t before = std::min(bytes, (lanes - reinterpret_cast<std::uintptr_t>(to) % lanes) % lanes);
    std::memcpy(to, from, before);
    std::size_t i = before;
    for (; i + lanes <= bytes; i += lanes) {
        hn::Stream(hn::LoadU(d, from + i), d, to + i);
    }
    std::memcpy(to + i, from + i, bytes - i);
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(copyStreaming);

void copyNonTemporal(const std::uint8_t *from, std::uint8_t *to, std::size_t bytes) {
    HWY_DYNAMIC_DISPATCH(copyStreaming)(from, to, bytes);
}

void flushNonTemporal() {
    hwy::FlushStream();
}

} // namespace lumora
#endif
