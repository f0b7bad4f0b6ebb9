// SPDX-License-Identifier: MIT
// GPX files come in every encoding. ICU converts those that are not UTF-8, so that the parser sees
// only UTF-8.

#include "host/base/XmlText.h"

#include "host/base/Text.h"

#include <gps/NumberText.h>

#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <utility>

namespace host {
namespace {

using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

// One that stops at what is not valid.
Converter openConverter(const std::string& encoding)
{
    UErrorCode status = U_ZERO_ERROR;
    Converter converter{ucnv_open(encoding.c_str(), &status), &ucnv_close};
    if (converter) {
        ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                            &status);
        ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                              &status);
    }
    return converter;
}

// The encoding in a declaration like `<?xml version="1.0" encoding="windows-1252"?>`; empty if
// there is none.
std::string declaredEncoding(std::string_view xml)
{
    const auto declaration = xml.substr(0, std::min(xml.find("?>"), std::size_t{256}));
    const auto key = declaration.find("encoding");
    constexpr std::string_view kStart = "<?xml"; // and not an instruction such as xml-stylesheet
    if (!declaration.starts_with(kStart) || declaration.find_first_of(" \t\r\n") != kStart.size() ||
        key == std::string_view::npos)
        return {};
    const auto begin = declaration.find_first_of("\"'", key);
    if (begin == std::string_view::npos)
        return {};
    const auto value = declaration.substr(begin + 1);
    const auto end = value.find(declaration[begin]);
    return end != std::string_view::npos ? std::string{value.substr(0, end)} : std::string{};
}

// Empty if the file is UTF-8, which needs no conversion.
std::string encodingOf(std::string_view xml)
{
    UErrorCode status = U_ZERO_ERROR;
    const auto front = xml.substr(0, 4);
    const char* const marked = ucnv_detectUnicodeSignature(
        front.data(), static_cast<std::int32_t>(front.size()), nullptr, &status);
    if (marked != nullptr)
        return marked == std::string_view{"UTF-8"} ? std::string{} : marked;
    if (xml.starts_with(std::string_view{"<\0", 2}))
        return "UTF-16LE";
    if (xml.starts_with(std::string_view{"\0<", 2}))
        return "UTF-16BE";
    auto declared = declaredEncoding(xml);
    // A declaration that is readable byte by byte is not UTF-16, even if it says so: some program
    // has converted the file and left the declaration.
    return ucnv_compareNames(declared.substr(0, 3).c_str(), "utf") == 0 ? std::string{} : declared;
}

// Stops at the first bytes that are not valid. An overflow means only that the piece is full and
// the next one follows.
// @param converted  gets the text before that
// @return           whether all of it is valid
bool toUtf8(UConverter& from, UConverter& to, std::string_view bytes, std::string& converted)
{
    std::array<UChar, 4096> pivot;
    UChar* pivotSource = pivot.data();
    UChar* pivotTarget = pivot.data();
    const char* source = bytes.data();
    std::array<char, 16384> piece;
    UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
    for (UBool isFirst = 1; status == U_BUFFER_OVERFLOW_ERROR; isFirst = 0) {
        status = U_ZERO_ERROR;
        char* target = piece.data();
        ucnv_convertEx(&to, &from, &target, piece.data() + piece.size(), &source,
                       bytes.data() + bytes.size(), pivot.data(), &pivotSource, &pivotTarget,
                       pivot.data() + pivot.size(), isFirst, 1, &status);
        converted.append(piece.data(), target);
    }
    if (U_SUCCESS(status) != 0)
        return true;
    // What is valid before may still wait between the two steps.
    icu::UnicodeString{pivotSource, static_cast<std::int32_t>(pivotTarget - pivotSource)}
        .toUTF8String(converted);
    return false;
}

// Which characters are written as they are. A table, because this is asked for each character of
// each text.
constexpr auto kIsPlain = [] {
    std::array<bool, 256> isPlain{};
    for (std::size_t c = ' '; c <= '~'; ++c)
        isPlain[c] = c != '&' && c != '<' && c != '>' && c != '"';
    return isPlain;
}();

bool needsCare(char c) noexcept
{
    return !kIsPlain[static_cast<unsigned char>(c)];
}

// Most texts are plain ASCII. Copying that in runs is several times as fast as decoding it.
std::string_view plainPrefix(std::string_view text) noexcept
{
    const auto* const end = std::find_if(text.begin(), text.end(), needsCare);
    return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

// takeCharacter() never returns half of a surrogate pair, which XML forbids as well.
bool isXmlCharacter(char32_t c) noexcept
{
    return c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c < 0xFFFE) || c > 0xFFFF;
}

} // namespace

XmlConversion convertXmlToUtf8(std::string& xml)
{
    const auto encoding = encodingOf(xml);
    if (encoding.empty())
        return XmlConversion::kDone;
    const auto from = openConverter(encoding);
    const auto to = openConverter("UTF-8");
    if (!from || !to)
        return XmlConversion::kUnknownEncoding;
    std::string converted;
    const bool isValid = toUtf8(*from, *to, xml, converted);
    xml = std::move(converted);
    return isValid ? XmlConversion::kDone : XmlConversion::kInvalidText;
}

// Linear in the offset: for one message, not for each record.
std::size_t lineAt(std::string_view text, std::size_t offset) noexcept
{
    const auto before = text.substr(0, offset);
    return 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
}

bool isPlainXml(std::string_view text) noexcept
{
    return std::none_of(text.begin(), text.end(), needsCare);
}

void appendXml(std::string& out, std::string_view text)
{
    while (!text.empty()) {
        const auto plain = plainPrefix(text);
        out += plain;
        text.remove_prefix(plain.size());
        if (text.empty())
            return;
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
            out += "&#13;"; // a parser would read a bare one as a line feed
        else if (isXmlCharacter(c))
            appendCharacter(out, c);
    }
}

} // namespace host
