// SPDX-License-Identifier: MIT
// Texts may come from a device, so nothing in them can end the element that holds the data.

#include "host/formats/HtmlData.h"

#include "host/base/JsonText.h"
#include "host/base/Text.h"

#include <gps/NumberText.h>

#include <cmath>

namespace host {

void appendPageText(std::string& out, std::string_view text)
{
    std::string json;
    appendJson(json, pageText(text));
    for (const char c : json) {
        if (c == '<')
            out += "\\u003c";
        else if (c == '>')
            out += "\\u003e";
        else if (c == '&')
            out += "\\u0026";
        else
            out += c;
    }
}

// Digits to the base of 45, the lowest first. Each is a character of the first half if it is the
// last of its number, and otherwise one of the second half. The sign is the lowest bit.
void appendDigits(std::string& out, std::int64_t number)
{
    constexpr std::string_view kCharacters = " !#$%'()*+,-./0123456789:;=?@ABCDEFGHIJKLMNOP"
                                             "QRSTUVWXYZ[]^_`abcdefghijklmnopqrstuvwxyz{|}~";
    constexpr std::uint64_t kBase = kCharacters.size() / 2;
    auto rest = static_cast<std::uint64_t>(number < 0 ? -2 * number - 1 : 2 * number);
    for (; rest >= kBase; rest /= kBase)
        out += kCharacters[kBase + rest % kBase];
    out += kCharacters[rest];
}

void appendMember(std::string& out, std::string_view key, std::string_view text)
{
    appendJsonKey(out, key);
    appendPageText(out, text);
}

char* putNumber(char* at, const std::optional<std::int64_t>& number)
{
    return number ? gps::putInteger(at, *number) : put(at, "null");
}

void appendMember(std::string& out, std::string_view key, const std::optional<std::int64_t>& number)
{
    appendJsonKey(out, key);
    appendPut<gps::kMostOfInteger>(out, [&](char* at) { return putNumber(at, number); });
}

void appendMember(std::string& out, std::string_view key, const std::optional<double>& number)
{
    appendJsonKey(out, key);
    if (number)
        gps::appendShortest(out, std::round(*number * 1000) / 1000);
    else
        out += "null";
}

} // namespace host
