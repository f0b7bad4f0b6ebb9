// SPDX-License-Identifier: MIT

#include "host/base/Text.h"

namespace host {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

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

// Also what would turn a line's direction around.
bool isControl(char32_t c) noexcept
{
    return c < 0x20 || (c >= 0x7F && c < 0xA0) || (c >= 0x2028 && c <= 0x202E) ||
           (c >= 0x2066 && c <= 0x2069);
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
    const auto tail = [&](unsigned shift) {
        out += static_cast<char>(0x80U | ((character >> shift) & 0x3FU));
    };
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

} // namespace host
