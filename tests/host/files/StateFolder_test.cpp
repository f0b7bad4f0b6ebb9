// SPDX-License-Identifier: MIT

#include "host/files/StateFolder.h"

#include "support/Variable.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using support::Variable;

TEST(StateFolder, IsBelowTheUsersOwnFolders)
{
    const Variable home{"HOME", "/home/me"};
    {
        const Variable state{"XDG_STATE_HOME", "/var/me"};
        EXPECT_EQ(host::stateFolder(), "/var/me/magellangps");
    }
    for (const char* unusable : {static_cast<const char*>(nullptr), "", "relative"}) {
        const Variable state{"XDG_STATE_HOME", unusable};
        EXPECT_EQ(host::stateFolder(), "/home/me/.local/state/magellangps");
    }
}

TEST(StateFolder, IsMissingWithoutAHome)
{
    const Variable state{"XDG_STATE_HOME", nullptr};
    for (const char* missing : {static_cast<const char*>(nullptr), ""}) {
        const Variable home{"HOME", missing};
        EXPECT_EQ(host::stateFolder(), std::nullopt);
    }
}

TEST(CacheFolder, IsBelowTheUsersOwnFolders)
{
    const Variable home{"HOME", "/home/me"};
    {
        const Variable cache{"XDG_CACHE_HOME", "/var/me"};
        EXPECT_EQ(host::cacheFolder(), "/var/me/magellangps");
    }
    const Variable cache{"XDG_CACHE_HOME", "relative"};
    EXPECT_EQ(host::cacheFolder(), "/home/me/.cache/magellangps");
    const Variable noHome{"HOME", nullptr};
    EXPECT_EQ(host::cacheFolder(), std::nullopt);
}

TEST(StateFolder, IdentifierBecomesAFileNameWithoutFolders)
{
    EXPECT_EQ(host::nameOfDevice("0417-AbZ9"), "0417-AbZ9");
    EXPECT_EQ(host::nameOfDevice("../a b\n\xC3\xA4"), "___a_b___");
    EXPECT_EQ(host::nameOfDevice(""), "device");
    EXPECT_EQ(host::nameOfDevice(std::string(64, '1')), std::string(64, '1'));
    EXPECT_EQ(host::nameOfDevice(std::string(65, '1')), std::string(64, '1'));
}

TEST(StateFolder, TimeIsNamedInUtc)
{
    EXPECT_THAT(host::nameOfNow(),
                testing::MatchesRegex(
                    "2[0-9][0-9][0-9][01][0-9][0-3][0-9]T[0-2][0-9][0-5][0-9][0-6][0-9]Z"));
}

} // namespace
