// The kernels' version for this processor is chosen before anything runs.
#include "imaging/kernels/Targets.h"

#include <gtest/gtest.h>
#include <hwy/highway.h>

namespace {

const bool chosenBeforeMain = hwy::GetChosenTarget().IsInitialized();

TEST(Targets, AreChosenBeforeMain) {
    EXPECT_TRUE(chosenBeforeMain);
}

} // namespace
