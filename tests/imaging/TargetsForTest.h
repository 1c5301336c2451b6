// Runs a test with every version of the kernels that this processor can run, not only with the one it would choose.
#pragma once

#include "imaging/kernels/Targets.h"

#include <gtest/gtest.h>
#include <hwy/highway.h>

namespace lumora::test {

template <typename Test> void forEachTarget(const Test &test) {
    for (const std::int64_t target : hwy::SupportedAndGeneratedTargets()) {
        SCOPED_TRACE(hwy::TargetName(target));
        hwy::GetChosenTarget().Update(target);
        test();
        if (testing::Test::HasFatalFailure()) {
            break;
        }
    }
    chooseKernelTarget();
}

} // namespace lumora::test
