// SPDX-License-Identifier: MIT

#include "host/cli/EarlyStop.h"

#include <gtest/gtest.h>

#include <csignal>

#include <unistd.h>

namespace {

using testing::ExitedWithCode;

// The standard output follows the message on standard error, which is what a death test sees.
template <typename Options> void end(int signal, const Options& options)
{
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
    host::endEarly(signal, options);
}

TEST(EarlyStop, EndsTheProgramWithTheStatusOfTheSignalAndOneLine)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    host::SendOptions send;
    send.quiet = true; // an error is shown all the same
    host::RestoreOptions restore;
    restore.backup = "20261122T120000Z";
    const host::AcquireOptions acquire;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        EXPECT_EXIT(end(signal, send), ExitedWithCode(128 + signal),
                    "^magellangps: The send was stopped before anything was written: every file of "
                    "the device is as it was.\n$");
        EXPECT_EXIT(end(signal, restore), ExitedWithCode(128 + signal),
                    "^magellangps: The restore was stopped before anything was written: every file "
                    "of the device is as it was.\n$");
        EXPECT_EXIT(end(signal, host::RestoreOptions{}), ExitedWithCode(128 + signal),
                    "^magellangps: The command was stopped: the backups are not listed.\n$");
        EXPECT_EXIT(end(signal, acquire), ExitedWithCode(128 + signal),
                    "^magellangps: The download was stopped before it began.\n$");
    }
}

TEST(EarlyStop, WithJsonADocumentFollows)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    host::SendOptions send;
    send.json = send.dryRun = true;
    EXPECT_EXIT(end(SIGINT, send), ExitedWithCode(130),
                "was.\n\\{\"status\":130,\"complete\":false,\"interrupted\":true,\"dryRun\":true,"
                "\"device\":null,.*\"text\":\"The send was stopped.*\\}\n$");
    host::RestoreOptions restore;
    restore.json = true;
    restore.backup = "20261122T120000Z";
    EXPECT_EXIT(
        end(SIGHUP, restore), ExitedWithCode(129),
        "was.\n\\{\"status\":129,\"complete\":false,\"interrupted\":true,\"device\":null,"
        "\"backups\":null,\"damagedBackups\":null,\"backup\":\"20261122T120000Z\",.*\\}\n$");
    host::ImportOptions import;
    import.json = true;
    EXPECT_EXIT(end(SIGTERM, import), ExitedWithCode(143),
                "began.\n\\{\"status\":143,\"complete\":false,\"interrupted\":true,\"device\":null,"
                ".*\\}\n$");
}

} // namespace
