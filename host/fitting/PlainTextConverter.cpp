// SPDX-License-Identifier: MIT
// Texts are converted word by word, so that an ASCII word among others skips the transliterator and
// white space never reaches it.

#include "host/fitting/PlainTextConverter.h"

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

// The transliterator moves the rest of its text on each replacement, which is quadratic. Short
// pieces keep that cheap.
constexpr std::size_t kLongestPiece = 1000; // bytes

} // namespace

class PlainTextConverter::Romanizer {
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
        if (rules_) // null if ICU's transliteration data is not installed
            rules_->transliterate(wide);
        std::string latin;
        wide.toUTF8String(latin);
        return latin;
    }

private:
    std::unique_ptr<icu::Transliterator> rules_;
};

PlainTextConverter::PlainTextConverter(const gps::CharacterSet& characters)
    : characters_(characters)
{}

PlainTextConverter::~PlainTextConverter() = default;

bool PlainTextConverter::isPlain(std::string_view text) const noexcept
{
    return std::all_of(text.begin(), text.end(),
                       [this](char c) { return characters_.contains(c); });
}

PlainText PlainTextConverter::convert(std::string_view text)
{
    PlainText plain;
    while (!text.empty()) {
        const auto* const wordEnd = std::find_if(text.begin(), text.end(), gps::isWhiteSpace);
        const auto word = text.substr(0, static_cast<std::size_t>(wordEnd - text.begin()));
        appendWord(plain, word);
        text.remove_prefix(word.size());

        const auto* const spaceEnd = std::find_if_not(text.begin(), text.end(), gps::isWhiteSpace);
        const auto space = text.substr(0, static_cast<std::size_t>(spaceEnd - text.begin()));
        // Line breaks are layout: a run of white space that contains one becomes a single space.
        if (space.find_first_not_of(' ') == std::string_view::npos)
            append(plain, space);
        else if (!plain.text.empty() && plain.text.back() != ' ')
            append(plain, " ");
        text.remove_prefix(space.size());
    }
    return plain;
}

void PlainTextConverter::appendWord(PlainText& plain, std::string_view word)
{
    if (gps::isAscii(word)) {
        append(plain, word);
        return;
    }
    if (!romanizer_)
        romanizer_ = std::make_unique<Romanizer>();
    while (!word.empty())
        append(plain, romanizer_->romanized(takePiece(word, kLongestPiece)));
}

void PlainTextConverter::append(PlainText& plain, std::string_view characters) const
{
    while (!characters.empty()) {
        const char32_t c = takeCharacter(characters);
        const bool isKept = c < 0x80 && characters_.contains(static_cast<char>(c));
        appendCharacter(isKept ? plain.text : plain.dropped, c);
    }
}

} // namespace host
