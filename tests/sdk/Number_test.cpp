// SPDX-License-Identifier: MIT

#include <gps/Number.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>

namespace gps {
namespace {

constexpr auto kMin64 = std::numeric_limits<std::int64_t>::min();
constexpr auto kMax64 = std::numeric_limits<std::int64_t>::max();

template <typename T> Number fromUnalignedBytesOf(NumberType type, T value)
{
    std::array<char, sizeof(T) + 1> bytes{};
    std::memcpy(bytes.data() + 1, &value, sizeof value);
    return Number::fromBytes(type, bytes.data() + 1);
}

TEST(Number, IsReadFromTheBytesOfEachType)
{
    EXPECT_EQ(fromUnalignedBytesOf(NumberType::kBool, true), Number{true});
    EXPECT_EQ(fromUnalignedBytesOf(NumberType::kInt8, std::int8_t{-128}), Number{-128});
    EXPECT_EQ(fromUnalignedBytesOf(NumberType::kInt16, std::int16_t{-32768}), Number{-32768});
    EXPECT_EQ(fromUnalignedBytesOf(NumberType::kInt32, std::int32_t{-7}), Number{-7});
    EXPECT_EQ(fromUnalignedBytesOf(NumberType::kInt64, kMin64), Number{kMin64});
    EXPECT_EQ(fromUnalignedBytesOf(NumberType::kFloat32, 1.5F), Number{1.5});
    EXPECT_EQ(fromUnalignedBytesOf(NumberType::kFloat64, 1e300), Number{1e300});
}

TEST(Number, RemembersTheTypeOfItsBytes)
{
    const std::array<char, 8> zeros{};
    for (const auto type :
         {NumberType::kBool, NumberType::kInt8, NumberType::kInt16, NumberType::kInt32,
          NumberType::kInt64, NumberType::kFloat32, NumberType::kFloat64}) {
        const auto number = Number::fromBytes(type, zeros.data());
        EXPECT_EQ(number.type(), type);
        EXPECT_EQ(number.isFloating(),
                  type == NumberType::kFloat32 || type == NumberType::kFloat64);
        EXPECT_EQ(number, Number{0});
    }
}

TEST(Number, AnyByteButZeroIsTrue)
{
    for (const char byte : {'\1', '\2', '\x80', '\xFF'}) {
        const auto number = Number::fromBytes(NumberType::kBool, &byte);
        EXPECT_EQ(number.type(), NumberType::kBool);
        EXPECT_EQ(number, Number{true});
    }
}

TEST(Number, FloatingNumbersBecomeIntegersByTruncationAndSaturation)
{
    struct Row {
        double real;
        std::int32_t int32;
        std::int64_t int64;
    };
    constexpr auto kMin32 = std::numeric_limits<std::int32_t>::min();
    constexpr auto kMax32 = std::numeric_limits<std::int32_t>::max();
    const Row rows[] = {{0.9, 0, 0},
                        {-0.9, 0, 0},
                        {2147483646.9, kMax32 - 1, 2147483646},
                        {2147483647.0, kMax32, 2147483647},
                        {2147483648.0, kMax32, 2147483648},
                        {-2147483647.9, kMin32 + 1, -2147483647},
                        {-2147483648.9, kMin32, -2147483648},
                        {-2147483649.0, kMin32, -2147483649},
                        {9223372036854774784.0, kMax32, 9223372036854774784},
                        {9223372036854775808.0, kMax32, kMax64},
                        {-9223372036854775808.0, kMin32, kMin64},
                        {-9223372036854777856.0, kMin32, kMin64},
                        {std::numeric_limits<double>::infinity(), kMax32, kMax64},
                        {-std::numeric_limits<double>::infinity(), kMin32, kMin64},
                        {std::numeric_limits<double>::quiet_NaN(), 0, 0}};
    for (const auto& [real, int32, int64] : rows) {
        EXPECT_EQ(Number{real}.int32Value(), int32) << real;
        EXPECT_EQ(Number{real}.int64Value(), int64) << real;
    }
}

TEST(Number, A32BitReadingOfALargeIntegerSaturates)
{
    EXPECT_EQ(Number{std::int64_t{2147483648}}.int32Value(), 2147483647);
    EXPECT_EQ(Number{std::int64_t{-2147483649}}.int32Value(), -2147483648);
    EXPECT_EQ(Number{std::int64_t{2147483647}}.int32Value(), 2147483647);
}

TEST(Number, EqualityIsExactBeyondWhatADoubleHolds)
{
    const std::int64_t big = (std::int64_t{1} << 53) + 1; // the next double is one lower
    EXPECT_NE(Number{big}, Number{9007199254740992.0});
    EXPECT_EQ(Number{big - 1}, Number{9007199254740992.0});
    EXPECT_NE(Number{kMax64}, Number{9223372036854775808.0});
    EXPECT_EQ(Number{kMin64}, Number{-9223372036854775808.0});
    EXPECT_NE(Number{1}, Number{1.5});
    EXPECT_NE(Number{1.5}, Number{1});
    EXPECT_NE(Number{0.1F}, Number{0.1});
}

TEST(Number, ANaNEqualsOnlyANaN)
{
    const Number nan{std::nan("")};
    EXPECT_EQ(nan, nan);
    EXPECT_EQ(nan, Number{std::nanf("")});
    EXPECT_NE(nan, Number{0});
    EXPECT_NE(Number{0}, nan);
    EXPECT_NE(nan, Number{0.0});
}

TEST(Number, ZeroHasNoSignInEquality)
{
    EXPECT_EQ(Number{-0.0}, Number{0.0});
    EXPECT_EQ(Number{-0.0}, Number{0});
}

TEST(Number, TextsAreTheShortestThatReadBack)
{
    EXPECT_EQ(Number{true}.text(), "1");
    EXPECT_EQ(Number{kMin64}.text(), "-9223372036854775808");
    EXPECT_EQ(Number{0.1}.text(), "0.1");
    EXPECT_EQ(Number{1.5F}.text(), "1.5");
    EXPECT_EQ(Number{1e22}.text(), "1e+22");
    EXPECT_EQ(Number{-0.0}.text(), "-0");
}

} // namespace
} // namespace gps
