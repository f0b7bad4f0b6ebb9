// SPDX-License-Identifier: MIT
// The members of the page's data.

#include <host/formats/HtmlData.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>

namespace {

std::string digitsOf(std::initializer_list<std::int64_t> numbers)
{
    std::string digits;
    for (const auto number : numbers)
        host::appendDigits(digits, number);
    return digits;
}

// tests/page/digits.test.mjs reads the same texts.
TEST(HtmlData, NumberUpTo22HasOneDigit)
{
    EXPECT_EQ(digitsOf({0, 1, -1, 22, -22}), " #!PO");
    EXPECT_EQ(digitsOf({23, -23, 1012, 1013, -1013}), "R!Q!~PRQ!QQ!");
    EXPECT_EQ(digitsOf({600000, -600000, std::int64_t{1} << 51}), "plX/olX/beQTo_bw|'");
}

TEST(HtmlData, NoDigitNeedsToBeEscaped)
{
    for (std::int64_t number = -5000; number <= 5000; ++number)
        EXPECT_EQ(digitsOf({number}).find_first_of("\"\\<>&"), std::string::npos) << number;
}

} // namespace
