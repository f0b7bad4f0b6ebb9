// SPDX-License-Identifier: MIT

#include "host/cli/ProgressLine.h"

#include <gtest/gtest.h>

namespace {

TEST(ProgressLine, NothingIsPrintedUnlessItIsShown)
{
    testing::internal::CaptureStderr();
    const host::ProgressLine line{false};
    EXPECT_FALSE(line.callback());
    line.show({.phase = host::TransferPhase::kReading});
    line.show({});
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
