// SPDX-License-Identifier: MIT
// ICU decodes and encodes. It counts an incomplete sequence as one error; we replace each of its
// bytes, so that a damaged text keeps its length in characters and never swallows a good byte.

#include "host/base/Text.h"

#include <gps/Characters.h>

#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace host {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kEllipsis = 0x2026;

struct Range {
    char32_t first;
    char32_t last;
};

// Characters with which a name could command the terminal, hide the rest of its line, or look like
// another name.
constexpr std::array kUnsafe{
    Range{0x00, 0x1F},       Range{0x7F, 0x9F}, // C0 and C1 controls
    Range{0xAD, 0xAD},                          // soft hyphen
    Range{0x61C, 0x61C},                        // direction mark
    Range{0x180E, 0x180E},                      // vowel separator without width
    Range{0x200B, 0x200F},                      // without width, and direction marks
    Range{0x2028, 0x202E},                      // line separators, and direction embeddings
    Range{0x2060, 0x206F},                      // without width, and direction isolates
    Range{0xFEFF, 0xFEFF},                      // byte order mark
    Range{0xFFF9, 0xFFFB},                      // annotation marks
    Range{0xE0000, 0xE007F},                    // tags
};

bool isUnsafe(char32_t c) noexcept
{
    return std::any_of(kUnsafe.begin(), kUnsafe.end(),
                       [c](const Range& range) { return c >= range.first && c <= range.last; });
}

// Writing systems such as Persian and those of India need them.
bool isJoiner(char32_t c) noexcept
{
    return c == 0x200C || c == 0x200D;
}

bool isLineBreak(char32_t c) noexcept
{
    return (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029;
}

} // namespace

// ICU's macros convert between char, its own byte type and int without casts.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wsign-conversion"

char32_t takeCharacter(std::string_view& text) noexcept
{
    const auto first = static_cast<unsigned char>(text.front());
    if (first < 0x80) {
        text.remove_prefix(1);
        return first;
    }
    const auto size = text.size();
    std::size_t next = 0;
    UChar32 character = 0;
    U8_NEXT(text, next, size, character);
    const bool isValid = character >= 0;
    text.remove_prefix(isValid ? next : 1);
    return isValid ? static_cast<char32_t>(character) : kReplacement;
}

void appendCharacter(std::string& out, char32_t character)
{
    if (character < 0x80) {
        out += static_cast<char>(character);
        return;
    }
    std::array<char, U8_MAX_LENGTH> bytes{};
    std::size_t size = 0;
    U8_APPEND_UNSAFE(bytes, size, static_cast<std::uint32_t>(character));
    out.append(bytes.data(), size);
}

std::string_view takePiece(std::string_view& text, std::size_t most) noexcept
{
    auto size = std::min(text.size(), most);
    if (size < text.size())
        U8_TRUNCATE_IF_INCOMPLETE(text, 0U, size);
    const auto piece = text.substr(0, size);
    text.remove_prefix(size);
    return piece;
}

#pragma GCC diagnostic pop

std::string fileTypeOf(std::string_view path)
{
    const auto name = path.substr(path.find_last_of('/') + 1);
    const auto dot = name.find_last_of('.');
    if (dot == std::string_view::npos)
        return {};
    std::string extension{name.substr(dot + 1)};
    for (char& c : extension)
        c = gps::lowerCase(c);
    return extension;
}

std::string displayText(std::string_view text, std::size_t most)
{
    std::string shown;
    std::size_t count = 0;
    std::size_t beforeLast = 0; // the size without the last character
    while (!text.empty()) {
        if (count == most) {
            shown.resize(beforeLast);
            appendCharacter(shown, kEllipsis);
            return shown;
        }
        const char32_t c = takeCharacter(text);
        beforeLast = shown.size();
        appendCharacter(shown, isUnsafe(c) ? kReplacement : c);
        ++count;
    }
    return shown;
}

std::string pageText(std::string_view text)
{
    std::string shown;
    char32_t last = 0;
    while (!text.empty()) {
        const char32_t c = takeCharacter(text);
        if (c == '\n' && last == '\r') // a line break of two characters
            ;
        else if (isLineBreak(c) || c == '\t')
            shown += ' ';
        else
            appendCharacter(shown, isUnsafe(c) && !isJoiner(c) ? kReplacement : c);
        last = c;
    }
    return shown;
}

std::string joined(const std::vector<std::string>& texts, std::string_view separator)
{
    std::string row;
    for (const auto& text : texts) {
        if (&text != &texts.front())
            row += separator;
        row += text;
    }
    return row;
}

void groupDigits(std::string& text, std::size_t end)
{
    constexpr std::size_t kGroup = 3; // digits
    while (end > kGroup)
        text.insert(end -= kGroup, 1, ',');
}

std::size_t characterCount(std::string_view text) noexcept
{
    std::size_t count = 0;
    for (; !text.empty(); ++count)
        (void)takeCharacter(text);
    return count;
}

} // namespace host
