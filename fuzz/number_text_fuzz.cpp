// SPDX-License-Identifier: MIT
// Compares gps/NumberText.h with the C library, and the two ways to read a coordinate. Inputs are
// mapped to an alphabet in which both accept the same forms.

#include "FuzzTarget.h"

#include <gps/NumberText.h>
#include <platform/GPSUtilities/NMEAUtils.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace {

/// Maps any bytes to the characters of decimal numbers. Of the letters of inf, nan and hexadecimal
/// forms, which only the C library reads, there is just "e".
std::string inAlphabet(std::string_view bytes)
{
    constexpr std::string_view kAlphabet = "0123456789+-.eE \t";
    std::string text;
    for (const char byte : bytes)
        text += kAlphabet.find(byte) != kAlphabet.npos
                    ? byte
                    : kAlphabet[static_cast<unsigned char>(byte) % kAlphabet.size()];
    return text;
}

void checkReading(const std::string& text)
{
    const auto number = gps::leadingNumber(text);
    char* end = nullptr;
    const double expected = std::strtod(text.c_str(), &end);
    fuzz::require(number.has_value() == (end != text.c_str()),
                  "a leading number is found if the C library finds one");
    if (!number)
        return;
    const double largest = std::numeric_limits<double>::max();
    fuzz::require(*number == std::clamp(expected, -largest, largest),
                  "the number is the C library's, saturated");
    fuzz::require(std::signbit(*number) == std::signbit(expected), "its sign is the C library's");
}

/// A whole reading is the leading one where the C library reads to the end and within the range.
void checkWhole(const std::string& text)
{
    char* end = nullptr;
    const double expected = std::strtod(text.c_str(), &end);
    const bool isWhole = !text.empty() && end == text.c_str() + text.size() &&
                         !gps::isWhiteSpace(text.front()) && std::isfinite(expected);
    const auto number = gps::wholeNumber(text);
    fuzz::require(number.has_value() == isWhole, "a whole number is seen where there is one");
    fuzz::require(!isWhole || number == expected, "the whole number is the C library's");

    errno = 0;
    const long long integer = std::strtoll(text.c_str(), &end, 10);
    const bool isInteger = !text.empty() && end == text.c_str() + text.size() && errno == 0 &&
                           !gps::isWhiteSpace(text.front());
    fuzz::require(gps::wholeInteger(text) ==
                      (isInteger ? std::optional<std::int64_t>{integer} : std::nullopt),
                  "the whole integer is the C library's");
    const bool isUnsigned = isInteger && gps::isDigit(text.front()) && integer <= 0xFFFFFFFFLL;
    fuzz::require(gps::wholeUnsigned(text).has_value() == isUnsigned,
                  "an unsigned integer is one without a sign, within 32 bits");
    if (const auto hex = gps::hexInteger(text))
        fuzz::require(*hex == std::strtoull(text.c_str(), nullptr, 16),
                      "the hexadecimal integer is the C library's");
}

/// A coordinate has a faster way for the texts of receivers, which do not end with a letter.
void checkCoordinate(const std::string& text)
{
    const double degrees = gps::NMEAUtils::convertNMEADegreesMinutes(text, "E");
    fuzz::require(degrees == gps::NMEAUtils::convertNMEADegreesMinutes(text + "x", "E"),
                  "a coordinate does not depend on what follows the number");
}

std::string written(char* (*put)(char*, double), double value)
{
    std::array<char, gps::kMostOfDecimal> text;
    return {text.data(), put(text.data(), value)};
}

void checkWriting(double value)
{
    std::string shortest;
    gps::appendShortest(shortest, value);
    const auto decimal = written(gps::putDecimal, value);
    fuzz::require(gps::leadingNumber(shortest) == value, "the shortest text reads back");
    fuzz::require(gps::leadingNumber(decimal) == value, "the decimal text reads back");
    fuzz::require(decimal.find_first_not_of("-0123456789.") == decimal.npos,
                  "the decimal text has no exponent");

    std::string fixed;
    gps::appendFixed(fixed, value, 6);
    char expected[400];
    std::snprintf(expected, sizeof expected, "%.6f", value);
    fuzz::require(fixed == expected, "a fixed number is what printf writes");

    if (std::abs(value) <= 999'999'999) {
        const auto readBack = gps::wholeNumber(written(gps::putRounded, value));
        fuzz::require(readBack && std::abs(*readBack - value) <= 6e-10 + std::abs(value) * 1e-15,
                      "a rounded number is the nearest with nine decimals");
    }

    const auto whole = gps::saturatedInt32(value);
    std::string padded;
    gps::appendPadded(padded, whole, 7);
    fuzz::require(padded.size() >= 7 && gps::leadingInt32(padded) == whole,
                  "a padded whole number reads back");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto text = inAlphabet(fuzz::textOf(data, size));
    checkReading(text);
    checkWhole(text);
    checkCoordinate(text);
    if (const auto number = gps::leadingNumber(text))
        checkWriting(*number);
    return 0;
}
