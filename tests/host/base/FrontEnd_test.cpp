// SPDX-License-Identifier: MIT

#include "host/base/FrontEnd.h"

#include <gtest/gtest.h>

namespace {

TEST(FrontEnd, IsTheTerminalUnlessAProgramSaysOtherwise)
{
    EXPECT_EQ(host::advice("a command", "a button"), "a command");
}

TEST(FrontEnd, AdviceIsThatOfTheWindowInIt)
{
    host::setFrontEnd(host::FrontEnd::kWindow);
    EXPECT_EQ(host::advice("a command", "a button"), "a button");
    host::setFrontEnd(host::FrontEnd::kTerminal);
}

} // namespace
