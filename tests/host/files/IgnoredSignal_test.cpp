// SPDX-License-Identifier: MIT

#include "host/files/IgnoredSignal.h"

#include "support/Signals.h"

#include <gtest/gtest.h>

namespace {

TEST(IgnoredSignal, OnlyAnIgnoredSignalIsIgnored)
{
    const support::DefaultSignals defaults;
    EXPECT_FALSE(host::isIgnored(SIGHUP));
    (void)std::signal(SIGHUP, SIG_IGN);
    EXPECT_TRUE(host::isIgnored(SIGHUP));
    EXPECT_FALSE(host::isIgnored(SIGINT));
    (void)std::signal(SIGHUP, [](int) {});
    EXPECT_FALSE(host::isIgnored(SIGHUP));
}

TEST(IgnoredSignal, NumberThatIsNotASignalIsNotIgnored)
{
    EXPECT_FALSE(host::isIgnored(-1));
}

} // namespace
