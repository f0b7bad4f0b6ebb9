// SPDX-License-Identifier: MIT
// Built on std::from_chars and std::to_chars, the only conversions that ignore the locale; no other
// source calls them. Short numbers, which are nearly all that a receiver writes, take a faster path
// with the same results.

#include <gps/EightBytes.h>
#include <gps/NumberText.h>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <system_error>

namespace gps {
namespace {

constexpr auto kMinInt32 = std::numeric_limits<std::int32_t>::min();
constexpr auto kMaxInt32 = std::numeric_limits<std::int32_t>::max();

/// Removes an optional sign from the front; true for a minus.
bool takeSign(std::string_view& text) noexcept
{
    if (text.empty() || (text.front() != '-' && text.front() != '+'))
        return false;
    const bool minus = text.front() == '-';
    text.remove_prefix(1);
    return minus;
}

/// Reads up to 15 digits with a point anywhere among them: the digits and the power of ten are both
/// exact doubles, so one division rounds correctly.
std::optional<double> shortNumber(std::string_view text) noexcept
{
    std::int64_t digits = 0;
    std::size_t count = 0;
    std::size_t i = 0;
    for (; i < text.size() && isDigit(text[i]) && count <= 15; ++i, ++count)
        digits = digits * 10 + (text[i] - '0');
    std::size_t decimals = 0;
    if (i < text.size() && text[i] == '.') {
        for (++i; i < text.size() && isDigit(text[i]) && count <= 15; ++i, ++count, ++decimals)
            digits = digits * 10 + (text[i] - '0');
    }
    if (count == 0 || count > 15 || i != text.size())
        return std::nullopt;
    return static_cast<double>(digits) / kPowersOfTen[decimals];
}

/// Whether a number is an integer of up to five digits, such as an altitude in metres: its shortest
/// text and its decimal text are the same.
bool isShortInteger(double value) noexcept
{
    return std::abs(value) < 1e5 &&
           value == static_cast<double>(static_cast<std::int32_t>(value)) &&
           value != 0; // which may have a minus
}

/// What llround() returns, without a call into the C library. Precondition: not negative, and below
/// 2^63.
std::int64_t roundedHalfAway(double value) noexcept
{
    const auto whole = static_cast<std::int64_t>(value);
    return whole + (value - static_cast<double>(whole) >= 0.5 ? 1 : 0);
}

/// Writes the decimals of a number: nine digits without their trailing zeros.
/// @param digits  from 1 to 999,999,999
/// @return        behind the last digit
char* putNineDecimals(char* at, std::uint32_t digits) noexcept
{
    const std::uint64_t front = digitValues(digits / 10);
    const std::uint64_t text = front | repeated('0');
    std::memcpy(at, &text, sizeof text);
    if (digits % 10 != 0) {
        at[8] = static_cast<char>('0' + digits % 10);
        return at + 9;
    }
    return at + 8 - std::countl_zero(front) / 8;
}

/// Whether a number that from_chars reports as out of range is too large; otherwise it is too
/// small. Adds the exponent to the position of the first digit that is not 0.
bool isHuge(std::string_view text) noexcept
{
    // The digits before the point from the first significant one on, or minus the zeros after it.
    std::int64_t magnitude = 0;
    bool counting = false;
    std::size_t i = 0;
    for (; i < text.size() && isDigit(text[i]); ++i) {
        counting = counting || text[i] != '0';
        magnitude += counting ? 1 : 0;
    }
    if (i < text.size() && text[i] == '.') {
        for (++i; i < text.size() && isDigit(text[i]); ++i) {
            counting = counting || text[i] != '0';
            magnitude -= counting ? 0 : 1;
        }
    }
    std::int32_t exponent = 0;
    if (i + 1 < text.size() && (text[i] == 'e' || text[i] == 'E') && !isWhiteSpace(text[i + 1]))
        exponent = leadingInt32(text.substr(i + 1));
    return magnitude + exponent > 0;
}

/// A number without its sign, as read from the front of a text.
struct Magnitude {
    double value;    // saturated
    const char* end; // of the number in the text
    bool isTooLarge = false;
};

std::optional<Magnitude> readMagnitude(std::string_view text) noexcept
{
    if (const auto quick = shortNumber(text))
        return Magnitude{*quick, text.data() + text.size()};
    // from_chars would also accept a second sign and the words inf and nan.
    if (text.empty() || (!isDigit(text.front()) && text.front() != '.'))
        return std::nullopt;
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::invalid_argument)
        return std::nullopt;
    if (error != std::errc::result_out_of_range)
        return Magnitude{value, end};
    const bool isTooLarge = isHuge(text);
    return Magnitude{isTooLarge ? std::numeric_limits<double>::max() : 0, end, isTooLarge};
}

/// Reads digits up to the end of a text, without a sign.
template <typename Integer>
std::optional<Integer> wholeDigits(std::string_view text, int base) noexcept
{
    Integer value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional{value}
                                                                    : std::nullopt;
}

} // namespace

std::optional<double> leadingNumber(std::string_view text) noexcept
{
    text = withoutLeadingSpace(text);
    const bool minus = takeSign(text);
    const auto number = readMagnitude(text);
    if (!number)
        return std::nullopt;
    return minus ? -number->value : number->value;
}

std::int32_t leadingInt32(std::string_view text) noexcept
{
    text = withoutLeadingSpace(text);
    const bool minus = takeSign(text);
    std::int64_t value = 0;
    for (std::size_t i = 0; i < text.size() && isDigit(text[i]); ++i)
        value = std::min<std::int64_t>(value * 10 + (text[i] - '0'), std::int64_t{1} << 40);
    return saturatedInt32(minus ? -value : value);
}

bool leadingBool(std::string_view text) noexcept
{
    text = withoutLeadingSpace(text);
    takeSign(text);
    while (!text.empty() && text.front() == '0')
        text.remove_prefix(1);
    if (text.empty())
        return false;
    const char c = text.front();
    return c == 'Y' || c == 'y' || c == 'T' || c == 't' || isDigit(c);
}

std::optional<double> wholeNumber(std::string_view text) noexcept
{
    const bool minus = takeSign(text);
    const auto number = readMagnitude(text);
    if (!number || number->end != text.data() + text.size() || number->isTooLarge)
        return std::nullopt;
    return minus ? -number->value : number->value;
}

std::optional<std::int64_t> wholeInteger(std::string_view text) noexcept
{
    // from_chars accepts a minus but not a plus.
    if (text.size() > 1 && text.front() == '+' && isDigit(text[1]))
        text.remove_prefix(1);
    return wholeDigits<std::int64_t>(text, 10);
}

std::optional<std::uint32_t> wholeUnsigned(std::string_view text) noexcept
{
    return wholeDigits<std::uint32_t>(text, 10);
}

std::optional<std::uint32_t> hexInteger(std::string_view text) noexcept
{
    return wholeDigits<std::uint32_t>(text, 16);
}

std::int32_t saturatedInt32(double value) noexcept
{
    if (std::isnan(value))
        return 0;
    return static_cast<std::int32_t>(std::clamp<double>(value, kMinInt32, kMaxInt32));
}

std::int32_t saturatedInt32(std::int64_t value) noexcept
{
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, kMinInt32, kMaxInt32));
}

char* putInteger(char* at, std::int64_t value) noexcept
{
    return std::to_chars(at, at + kMostOfInteger, value).ptr;
}

char* putShortest(char* at, double value) noexcept
{
    if (isShortInteger(value))
        return putInteger(at, static_cast<std::int64_t>(value));
    return std::to_chars(at, at + kMostOfShortest, value).ptr;
}

char* putDecimal(char* at, double value) noexcept
{
    if (isShortInteger(value))
        return putInteger(at, static_cast<std::int64_t>(value));
    return std::to_chars(at, at + kMostOfDecimal, value, std::chars_format::fixed).ptr;
}

char* putRounded(char* at, double value) noexcept
{
    constexpr std::int64_t kUnits = 1'000'000'000;
    const std::int64_t digits = roundedHalfAway(std::abs(value) * static_cast<double>(kUnits));
    if (value < 0 && digits != 0)
        *at++ = '-';
    at = putInteger(at, digits / kUnits);
    const auto fraction = static_cast<std::uint32_t>(digits % kUnits);
    if (fraction == 0)
        return at;
    *at++ = '.';
    return putNineDecimals(at, fraction);
}

void appendShortest(std::string& out, double value)
{
    std::array<char, kMostOfShortest> text;
    out.append(text.data(), putShortest(text.data(), value));
}

void appendFixed(std::string& out, double value, int decimals)
{
    std::array<char, 420> text; // the largest double has 309 digits before the point
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value,
                                            std::chars_format::fixed, decimals);
    out.append(text.data(), end);
}

void appendInteger(std::string& out, std::int64_t value)
{
    std::array<char, kMostOfInteger> text;
    out.append(text.data(), putInteger(text.data(), value));
}

char* putPadded(char* at, std::int64_t value, int width) noexcept
{
    std::array<char, kMostOfInteger> text;
    char* const end = putInteger(text.data(), value);
    char* const digits = text.data() + (value < 0 ? 1 : 0);
    if (value < 0)
        *at++ = '-';
    for (auto length = end - text.data(); length < width; ++length)
        *at++ = '0';
    return std::copy(digits, end, at);
}

void appendPadded(std::string& out, std::int64_t value, int width)
{
    std::array<char, kMostOfInteger> text;
    const auto length = putInteger(text.data(), value) - text.data();
    const auto sign = value < 0 ? std::size_t{1} : 0;
    out.append(text.data(), sign);
    if (length < width)
        out.append(static_cast<std::size_t>(width - length), '0');
    out.append(text.data() + sign, static_cast<std::size_t>(length) - sign);
}

} // namespace gps
