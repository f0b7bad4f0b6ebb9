// SPDX-License-Identifier: MIT

#include "host/files/StateFolder.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <optional>
#include <string>

namespace {

/// Sets an environment variable for its lifetime.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const char* value) : name_(name)
    {
        if (const char* const before = std::getenv(name))
            before_ = before;
        set(value);
    }
    ~ScopedVariable() { set(before_ ? before_->c_str() : nullptr); }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    void set(const char* value) const
    {
        value != nullptr ? ::setenv(name_, value, 1) : ::unsetenv(name_);
    }

    const char* name_;
    std::optional<std::string> before_;
};

TEST(StateFolder, IsBelowTheUsersOwnFolders)
{
    const ScopedVariable home{"HOME", "/home/me"};
    {
        const ScopedVariable state{"XDG_STATE_HOME", "/var/me"};
        EXPECT_EQ(host::stateFolder(), "/var/me/magellangps");
    }
    for (const char* unusable : {static_cast<const char*>(nullptr), "", "relative"}) {
        const ScopedVariable state{"XDG_STATE_HOME", unusable};
        EXPECT_EQ(host::stateFolder(), "/home/me/.local/state/magellangps");
    }
}

TEST(StateFolder, IsMissingWithoutAHome)
{
    const ScopedVariable state{"XDG_STATE_HOME", nullptr};
    for (const char* missing : {static_cast<const char*>(nullptr), ""}) {
        const ScopedVariable home{"HOME", missing};
        EXPECT_EQ(host::stateFolder(), std::nullopt);
    }
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
