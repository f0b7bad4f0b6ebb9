// SPDX-License-Identifier: MIT
// A hand-written scanner: string tables have no other parser here, and it is fuzzed.

#include "StringTable.h"

#include <gps/Characters.h>

#include <string>
#include <utility>

namespace gps {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Removes the elements of a string table from the front of a text. Every function returns whether
/// it found its element.
class Scanner {
public:
    explicit Scanner(std::string_view text) : rest_(text) { take(kByteOrderMark); }

    bool take(std::string_view token)
    {
        if (rest_.substr(0, token.size()) != token)
            return false;
        rest_.remove_prefix(token.size());
        return true;
    }

    /// Skips white space and comments; false for an unterminated comment.
    bool skipGaps()
    {
        for (;;) {
            rest_ = withoutLeadingSpace(rest_);
            if (take("//"))
                skipPast("\n");
            else if (!take("/*"))
                return true;
            else if (!skipPast("*/"))
                return false;
        }
    }

    bool takeQuoted(std::string& text)
    {
        if (!take("\""))
            return false;
        while (!rest_.empty()) {
            const char c = rest_.front();
            rest_.remove_prefix(1);
            if (c == '"')
                return true;
            if (c != '\\')
                text += c;
            else if (!takeEscape(text))
                return false;
        }
        return false;
    }

private:
    bool skipPast(std::string_view end)
    {
        const auto at = rest_.find(end);
        rest_.remove_prefix(at == std::string_view::npos ? rest_.size() : at + end.size());
        return at != std::string_view::npos;
    }

    bool takeEscape(std::string& text)
    {
        constexpr std::string_view kLetters = "abfnrtv\\\"'?";
        constexpr std::string_view kMeanings = "\a\b\f\n\r\t\v\\\"'?";
        const auto at = rest_.empty() ? std::string_view::npos : kLetters.find(rest_.front());
        if (at == std::string_view::npos)
            return false;
        text += kMeanings[at];
        rest_.remove_prefix(1);
        return true;
    }

    std::string_view rest_;
};

} // namespace

Dictionary parseStringTable(std::string_view text)
{
    Dictionary table;
    Scanner scanner{text};
    for (;;) {
        std::string key;
        std::string value;
        const bool whole = scanner.skipGaps() && scanner.takeQuoted(key) && scanner.skipGaps() &&
                           scanner.take("=") && scanner.skipGaps() && scanner.takeQuoted(value) &&
                           scanner.skipGaps() && scanner.take(";");
        if (!whole)
            return table;
        table.set(key, std::move(value));
    }
}

} // namespace gps
