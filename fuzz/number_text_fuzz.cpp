// SPDX-License-Identifier: MIT
// Numbers: the leading number of a text is the one that the C library reads, for the alphabet in
// which both read the same forms.

#include "FuzzTarget.h"

#include <gps/NumberText.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace {

/// Maps any bytes to characters of decimal numbers: no letter of inf, nan or a hexadecimal form but
/// "e".
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
    const double wanted = std::strtod(text.c_str(), &end);
    fuzz::require(number.has_value() == (end != text.c_str()),
                  "a leading number is seen where the C library sees one");
    if (!number)
        return;
    const double largest = std::numeric_limits<double>::max();
    fuzz::require(*number == std::clamp(wanted, -largest, largest),
                  "the number is the C library's, saturated");
    fuzz::require(std::signbit(*number) == std::signbit(wanted), "its sign is the C library's");
}

void checkWriting(double value)
{
    std::string shortest;
    gps::appendShortest(shortest, value);
    std::string decimal;
    gps::appendDecimal(decimal, value);
    fuzz::require(gps::leadingNumber(shortest) == value, "the shortest text reads back");
    fuzz::require(gps::leadingNumber(decimal) == value, "the decimal text reads back");
    fuzz::require(decimal.find_first_not_of("-0123456789.") == decimal.npos,
                  "the decimal text has no exponent");

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
    if (const auto number = gps::leadingNumber(text))
        checkWriting(*number);
    return 0;
}
