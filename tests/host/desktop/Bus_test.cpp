// SPDX-License-Identifier: MIT
// Calls on a real bus are in tests/system_udev.

#include "host/desktop/Bus.h"

#include "support/Variable.h"

#include <gtest/gtest.h>

namespace {

TEST(Bus, FailureWithoutSomebodyToAnswerIsToldFromARefusal)
{
    for (const char* const name :
         {"", "org.freedesktop.DBus.Error.ServiceUnknown",
          "org.freedesktop.DBus.Error.NameHasNoOwner",
          "org.freedesktop.DBus.Error.Spawn.ChildExited", "org.freedesktop.systemd1.NoSuchUnit"})
        EXPECT_TRUE((host::BusFailure{name, {}}.isUnavailable())) << name;
    for (const char* const name :
         {"org.freedesktop.UDisks2.Error.NotAuthorized", "org.freedesktop.DBus.Error.NoReply",
          "org.freedesktop.Other.ServiceUnknown"})
        EXPECT_FALSE((host::BusFailure{name, {}}.isUnavailable())) << name;
}

TEST(Bus, EveryCallOnABusThatDoesNotExistFailsWithTheReason)
{
    const support::Variable address{"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere"};
    host::Bus bus{host::Bus::Kind::kSystem};
    host::Bus::Reply reply;
    for (int calls = 0; calls < 2; ++calls) {
        const auto failure = bus.call({"a.b", "/", "a.b"}, "C", reply, "");
        ASSERT_TRUE(failure);
        EXPECT_TRUE(failure->isUnavailable());
        EXPECT_EQ(failure->message, "no message bus: No such file or directory");
    }
    const char* text = nullptr;
    EXPECT_FALSE(reply.read("s", &text));
}

} // namespace
