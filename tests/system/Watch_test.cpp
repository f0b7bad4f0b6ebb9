// SPDX-License-Identifier: MIT
// `devices --watch` with the built program.

#include "system/Receiver.h"
#include "system/Running.h"

#include <gmock/gmock.h>

#include <csignal>

#include <sys/wait.h>

namespace {

TEST(Watch, PrintsTheDevicesAtOnceAndStaysUntilInterrupted)
{
    const support::Receiver receiver;
    support::Running watching{
        {MAGELLAN_BIN_DIR "/magellangps", "devices", "--watch", "--test-folder", receiver.path()}};
    EXPECT_THAT(watching.readUntil("Magellan device 42"), testing::HasSubstr("Magellan device 42"));
    EXPECT_TRUE(watching.runs());
    EXPECT_TRUE(WIFSIGNALED(watching.end(SIGINT)));
}

} // namespace
