// SPDX-License-Identifier: MIT

#include "host/fitting/PlainText.h"

#include "host/base/Text.h"

#include <gps/NumberText.h>
#include <platform/System/Ascii.h>

#include <unicode/translit.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace host {
namespace {

constexpr std::size_t kLongestPiece =
    1000; // bytes: each replacement moves the whole rest of what is handed over

// Takes so much off the front that no character is cut in two.
std::string_view takePiece(std::string_view& text) noexcept
{
    std::size_t size = std::min(text.size(), kLongestPiece);
    for (int i = 0;
         i < 3 && size < text.size() && (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80U;
         ++i)
        --size;
    const auto piece = text.substr(0, size);
    text.remove_prefix(size);
    return piece;
}

} // namespace

class PlainTexts::Romanizer {
public:
    Romanizer()
    {
        UErrorCode status = U_ZERO_ERROR;
        rules_.reset(
            icu::Transliterator::createInstance("Any-Latin; Latin-ASCII", UTRANS_FORWARD, status));
    }

    [[nodiscard]] std::string romanized(std::string_view text) const
    {
        auto wide =
            icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
        if (rules_) // a system without the data for it has none
            rules_->transliterate(wide);
        std::string latin;
        wide.toUTF8String(latin);
        return latin;
    }

private:
    std::unique_ptr<icu::Transliterator> rules_;
};

PlainTexts::PlainTexts(const gps::CharacterSet& characters) : characters_(characters) {}

PlainTexts::~PlainTexts() = default;

bool PlainTexts::isPlain(std::string_view text) const noexcept
{
    return std::all_of(text.begin(), text.end(),
                       [this](char c) { return characters_.contains(c); });
}

PlainText PlainTexts::of(std::string_view text)
{
    PlainText plain;
    while (!text.empty()) {
        const auto* const wordEnd = std::find_if(text.begin(), text.end(), gps::isWhiteSpace);
        const auto word = text.substr(0, static_cast<std::size_t>(wordEnd - text.begin()));
        appendWord(plain, word);
        text.remove_prefix(word.size());
        if (text.empty())
            break;
        const auto* const spaceEnd = std::find_if_not(text.begin(), text.end(), gps::isWhiteSpace);
        const auto space = text.substr(0, static_cast<std::size_t>(spaceEnd - text.begin()));
        // Line breaks are layout: one space stands for all that surrounds them.
        if (space.find_first_not_of(' ') == std::string_view::npos)
            append(plain, space);
        else if (!plain.text.empty() && plain.text.back() != ' ')
            append(plain, " ");
        text.remove_prefix(space.size());
    }
    return plain;
}

void PlainTexts::appendWord(PlainText& plain, std::string_view word)
{
    if (gps::isAscii(word)) {
        append(plain, word);
        return;
    }
    if (!romanizer_)
        romanizer_ = std::make_unique<Romanizer>();
    while (!word.empty())
        append(plain, romanizer_->romanized(takePiece(word)));
}

void PlainTexts::append(PlainText& plain, std::string_view characters) const
{
    while (!characters.empty()) {
        const char32_t c = takeCharacter(characters);
        const bool isKept = c < 0x80 && characters_.contains(static_cast<char>(c));
        appendCharacter(isKept ? plain.text : plain.dropped, c);
    }
}

} // namespace host
