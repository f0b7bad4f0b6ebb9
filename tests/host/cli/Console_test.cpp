// SPDX-License-Identifier: MIT

#include "host/cli/Console.h"

#include <gtest/gtest.h>

namespace {

TEST(Console, NotesAreLeftUnsaidWhenQuiet)
{
    testing::internal::CaptureStderr();
    host::Console{true}.note("one");
    host::Console{false}.note("two\nlines");
    host::Console{true}.error("three");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "note: two\xEF\xBF\xBDlines\nmagellangps: three\n");
}

} // namespace
