// SPDX-License-Identifier: MIT

#include "host/cli/Console.h"

#include <gtest/gtest.h>

namespace {

TEST(Console, NotesAreNotPrintedWhenQuiet)
{
    testing::internal::CaptureStderr();
    host::Console{true}.note("one");
    host::Console{false}.note("two\nlines");
    host::Console{true}.error("three");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "note: two\xEF\xBF\xBDlines\nmagellangps: three\n");
}

TEST(Console, MessagesAreErrorsOrNotes)
{
    const std::vector<host::Message> messages{{true, "one"}, {false, "two"}};
    testing::internal::CaptureStderr();
    host::Console{true}.messages(messages);
    host::Console{false}.messages(messages);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "magellangps: one\nmagellangps: one\nnote: two\n");
}

} // namespace
