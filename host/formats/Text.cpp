// SPDX-License-Identifier: MIT

#include "host/formats/Text.h"

#include <array>
#include <chrono>
#include <cmath>

#include <gps/NumberText.h>

namespace host {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr std::int64_t kFirstMoment = 315532800;    // 1980-01-01 00:00 UTC
constexpr std::int64_t kPastMoments = 253402300800; // 10000-01-01 00:00 UTC

struct Lead {
    std::size_t length; // of the whole character; 0: no first byte
    char32_t bits;
    char32_t least; // a smaller character has a shorter form
};

Lead leadOf(unsigned char byte) noexcept
{
    if (byte >= 0xC2 && byte <= 0xDF)
        return {2, byte & 0x1FU, 0x80};
    if (byte >= 0xE0 && byte <= 0xEF)
        return {3, byte & 0x0FU, 0x800};
    if (byte >= 0xF0 && byte <= 0xF4)
        return {4, byte & 0x07U, 0x10000};
    return {0, 0, 0};
}

bool isXmlCharacter(char32_t c) noexcept
{
    return c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c < 0xFFFE) || c > 0xFFFF;
}

// Also what would turn a line's direction around.
bool isControl(char32_t c) noexcept
{
    return c < 0x20 || (c >= 0x7F && c < 0xA0) || (c >= 0x2028 && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

void putTwoDigits(char* at, unsigned number) noexcept
{
    at[0] = static_cast<char>('0' + number / 10);
    at[1] = static_cast<char>('0' + number % 10);
}

} // namespace

char32_t takeCharacter(std::string_view& text) noexcept
{
    const auto first = static_cast<unsigned char>(text.front());
    if (first < 0x80) {
        text.remove_prefix(1);
        return first;
    }
    auto [length, character, least] = leadOf(first);
    bool whole = length > 0 && length <= text.size();
    for (std::size_t i = 1; whole && i < length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        whole = (byte & 0xC0U) == 0x80U;
        character = (character << 6U) | (byte & 0x3FU);
    }
    const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
    whole = whole && character >= least && character <= 0x10FFFF && !isSurrogate;
    text.remove_prefix(whole ? length : 1);
    return whole ? character : kReplacement;
}

void appendCharacter(std::string& out, char32_t character)
{
    const auto tail = [&](unsigned shift) { out += static_cast<char>(0x80U | ((character >> shift) & 0x3FU)); };
    if (character < 0x80) {
        out += static_cast<char>(character);
    } else if (character < 0x800) {
        out += static_cast<char>(0xC0U | (character >> 6U));
        tail(0);
    } else if (character < 0x10000) {
        out += static_cast<char>(0xE0U | (character >> 12U));
        tail(6);
        tail(0);
    } else {
        out += static_cast<char>(0xF0U | (character >> 18U));
        tail(12);
        tail(6);
        tail(0);
    }
}

void appendXml(std::string& out, std::string_view text)
{
    while (!text.empty()) {
        const char32_t c = takeCharacter(text);
        if (c == '&')
            out += "&amp;";
        else if (c == '<')
            out += "&lt;";
        else if (c == '>')
            out += "&gt;";
        else if (c == '"')
            out += "&quot;";
        else if (c == '\r')
            out += "&#13;"; // a reader would take it for a line feed
        else if (isXmlCharacter(c))
            appendCharacter(out, c);
    }
}

std::string displayText(std::string_view text, std::size_t most)
{
    std::string shown;
    std::size_t count = 0;
    std::size_t beforeLast = 0; // the size without the last character
    while (!text.empty()) {
        if (count == most) {
            shown.resize(beforeLast);
            appendCharacter(shown, 0x2026);
            return shown;
        }
        const char32_t c = takeCharacter(text);
        beforeLast = shown.size();
        appendCharacter(shown, isControl(c) ? kReplacement : c);
        ++count;
    }
    return shown;
}

std::string joined(const std::vector<std::string>& texts, std::string_view between)
{
    std::string row;
    for (const auto& text : texts) {
        if (&text != &texts.front())
            row += between;
        row += text;
    }
    return row;
}

std::size_t characterCount(std::string_view text) noexcept
{
    std::size_t count = 0;
    for (; !text.empty(); ++count)
        (void)takeCharacter(text);
    return count;
}

bool hasMoment(const gps::GPSPoint& point) noexcept
{
    return point.time >= kFirstMoment && point.time < kPastMoments;
}

void appendDegrees(std::string& out, double degrees)
{
    constexpr int kDecimals = 9;
    gps::appendRounded(out, degrees, kDecimals);
}

void appendMoment(std::string& out, std::int64_t time, char separator)
{
    using namespace std::chrono;
    const sys_seconds moment{seconds{time}};
    const auto day = floor<days>(moment);
    const year_month_day date{day};
    const auto year = static_cast<unsigned>(static_cast<int>(date.year()));
    const auto inDay = static_cast<unsigned>((moment - day).count());
    std::array<char, 19> text{'0',       '0', '0', '0', '-', '0', '0', '-', '0', '0',
                              separator, '0', '0', ':', '0', '0', ':', '0', '0'};
    putTwoDigits(text.data(), year / 100);
    putTwoDigits(&text[2], year % 100);
    putTwoDigits(&text[5], static_cast<unsigned>(date.month()));
    putTwoDigits(&text[8], static_cast<unsigned>(date.day()));
    putTwoDigits(&text[11], inDay / 3600);
    putTwoDigits(&text[14], inDay / 60 % 60);
    putTwoDigits(&text[17], inDay % 60);
    out.append(text.data(), text.size());
}

bool isOnGlobe(const gps::GPSPoint& point) noexcept
{
    return std::abs(point.latitude) <= 90 && std::abs(point.longitude) <= 180; // false for a NaN
}

} // namespace host
