// SPDX-License-Identifier: MIT
// When copies share their object, and when they no longer do.

#include <gps/CopyOnWrite.h>

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace gps {
namespace {

using Text = CopyOnWrite<std::string>;

TEST(CopyOnWrite, CopiesShareTheObject)
{
    const Text a{"text"};
    const Text b = a;
    EXPECT_EQ(a.get(), b.get());
    EXPECT_EQ(*b.get(), "text");
}

TEST(CopyOnWrite, AChangeDoesNotShowInTheOtherCopy)
{
    const Text a{"text"};
    Text b = a;
    *b.change() = "changed";
    EXPECT_EQ(*a.get(), "text");
    EXPECT_EQ(*b.get(), "changed");
}

TEST(CopyOnWrite, TheOnlyOwnerChangesTheObjectItself)
{
    Text a{"text"};
    const auto* const before = a.get();
    {
        const Text b = a;
    }
    EXPECT_EQ(a.change(), before);
}

TEST(CopyOnWrite, HasNoObjectOnceItIsMovedOut)
{
    Text a{"text"};
    Text b = std::move(a);
    EXPECT_EQ(a.get(), nullptr); // NOLINT(bugprone-use-after-move): the point of this test
    EXPECT_EQ(a.change(), nullptr);
    EXPECT_EQ(*b.get(), "text");
    EXPECT_FALSE(a == b);
    a = b;
    EXPECT_TRUE(a == b);
}

TEST(CopyOnWrite, AssignmentToItselfChangesNothing)
{
    Text a{"text"};
    const auto& same = a;
    a = same;
    EXPECT_EQ(*a.get(), "text");
}

TEST(CopyOnWrite, EqualityIsThatOfTheObjects)
{
    EXPECT_TRUE(Text{"a"} == Text{"a"});
    EXPECT_FALSE(Text{"a"} == Text{"b"});
}

TEST(CopyOnWrite, EachThreadMayChangeItsOwnCopy)
{
    const CopyOnWrite<std::vector<int>> original{std::vector<int>(100, 1)};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([copy = original, i]() mutable {
            for (int n = 0; n < 1000; ++n) {
                auto mine = copy;
                mine.change()->assign(100, i);
                copy.change()->back() = mine.get()->front();
            }
            EXPECT_EQ(copy.get()->back(), i);
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(*original.get(), std::vector<int>(100, 1));
}

} // namespace
} // namespace gps
