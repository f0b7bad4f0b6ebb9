// SPDX-License-Identifier: MIT

#include "host/files/StateFolder.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <optional>
#include <string>

namespace {

/// A variable of the environment, set for as long as this lives.
class Setting {
public:
    Setting(const char* name, const char* value) : name_(name)
    {
        if (const char* const before = std::getenv(name))
            before_ = before;
        set(value);
    }
    ~Setting() { set(before_ ? before_->c_str() : nullptr); }
    Setting(const Setting&) = delete;
    Setting& operator=(const Setting&) = delete;

private:
    void set(const char* value) const
    {
        value != nullptr ? ::setenv(name_, value, 1) : ::unsetenv(name_);
    }

    const char* name_;
    std::optional<std::string> before_;
};

TEST(Names, StateFolderIsTheUsersOwn)
{
    const Setting home{"HOME", "/home/me"};
    {
        const Setting state{"XDG_STATE_HOME", "/var/me"};
        EXPECT_EQ(host::stateFolder(), "/var/me/magellangps");
    }
    for (const char* unusable : {static_cast<const char*>(nullptr), "", "relative"}) {
        const Setting state{"XDG_STATE_HOME", unusable};
        EXPECT_EQ(host::stateFolder(), "/home/me/.local/state/magellangps");
    }
}

TEST(Names, WithoutAHomeThereIsNoStateFolder)
{
    const Setting state{"XDG_STATE_HOME", nullptr};
    for (const char* none : {static_cast<const char*>(nullptr), ""}) {
        const Setting home{"HOME", none};
        EXPECT_EQ(host::stateFolder(), std::nullopt);
    }
}

TEST(Names, IdentifierBecomesAHarmlessName)
{
    EXPECT_EQ(host::nameOfDevice("0417-AbZ9"), "0417-AbZ9");
    EXPECT_EQ(host::nameOfDevice("../a b\n\xC3\xA4"), "___a_b___");
    EXPECT_EQ(host::nameOfDevice(""), "device");
    EXPECT_EQ(host::nameOfDevice(std::string(64, '1')), std::string(64, '1'));
    EXPECT_EQ(host::nameOfDevice(std::string(65, '1')), std::string(64, '1'));
}

TEST(Names, PresentTimeIsInUtc)
{
    EXPECT_THAT(host::nameOfNow(),
                testing::MatchesRegex(
                    "2[0-9][0-9][0-9][01][0-9][0-3][0-9]T[0-2][0-9][0-5][0-9][0-6][0-9]Z"));
}

} // namespace
