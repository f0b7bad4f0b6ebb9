// SPDX-License-Identifier: MIT
// Most bytes of a file are plain ASCII, so it is looked through in pieces, many bytes at once. Only
// a piece with other bytes is read one by one.

#include "host/formats/XmlCharacters.h"

#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"

#include <gps/Characters.h>
#include <gps/NumberText.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace host {
namespace {

constexpr bool isControl(char c) noexcept
{
    return static_cast<unsigned char>(c) < ' ' && c != '\t' && c != '\n' && c != '\r';
}

constexpr bool isUnplain(char c) noexcept
{
    return isControl(c) || c == '&' || static_cast<unsigned char>(c) >= 0x80;
}

// A table, because this is asked for each character of a piece that is not plain.
constexpr auto kIsUnplain = [] {
    std::array<bool, 256> table{};
    for (std::size_t c = 0; c < table.size(); ++c)
        table[c] = isUnplain(static_cast<char>(c));
    return table;
}();

bool isUnplainInTable(char c) noexcept
{
    return kIsUnplain[static_cast<unsigned char>(c)];
}

// One bit for all characters: compilers look at many bytes at once then.
bool hasUnplain(std::string_view text) noexcept
{
    unsigned char found = 0;
    for (const char c : text)
        found = static_cast<unsigned char>(found | static_cast<unsigned char>(isUnplain(c)));
    return found != 0;
}

bool isAllowed(std::uint64_t c) noexcept
{
    return c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c < 0xD800) ||
           (c >= 0xE000 && c < 0xFFFE) || (c > 0xFFFF && c <= 0x10FFFF);
}

// @param number  of a reference to a character: "10" or "xA"
bool isAllowedNumber(std::string_view number) noexcept
{
    if (number.starts_with('x')) {
        const auto character = gps::hexInteger(number.substr(1));
        return character && isAllowed(*character);
    }
    const auto character = gps::wholeInteger(number);
    return character && *character >= 0 && isAllowed(static_cast<std::uint64_t>(*character));
}

// The name of a reference: what is between "&" and ";". Empty if it is not a reference.
std::string_view referenceAt(std::string_view text) noexcept
{
    constexpr std::size_t kLongest = 64;
    text = text.substr(1, kLongest);
    const auto isOfName = [](char c) {
        return gps::isDigit(c) || (gps::lowerCase(c) >= 'a' && gps::lowerCase(c) <= 'z') ||
               c == '#' || c == '_' || c == '.' || c == '-' || c == ':';
    };
    const auto* const end = std::find_if_not(text.begin(), text.end(), isOfName);
    return end != text.end() && *end == ';'
               ? text.substr(0, static_cast<std::size_t>(end - text.begin()))
               : std::string_view{};
}

bool isKnownReference(std::string_view name) noexcept
{
    constexpr std::array<std::string_view, 5> kNames{"amp", "lt", "gt", "quot", "apos"};
    return name.starts_with('#') ? isAllowedNumber(name.substr(1))
                                 : std::find(kNames.begin(), kNames.end(), name) != kNames.end();
}

// Comments, instructions, CDATA sections and declarations of entities, in which "&" is a character
// like others. Asked for only where something looks wrong, with increasing offsets, so that all
// questions together look at the text once.
class LiteralSections {
public:
    explicit LiteralSections(std::string_view xml) : xml_(xml) {}

    [[nodiscard]] bool contain(std::size_t offset)
    {
        while (end_ <= offset && next_ < offset)
            advance();
        return begin_ <= offset && offset < end_;
    }

private:
    void advance()
    {
        constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kMarks{
            {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}, {"<!ENTITY", ">"}}};
        begin_ = std::min(xml_.find('<', next_), xml_.size());
        next_ = std::min(begin_ + 1, xml_.size());
        end_ = begin_;
        for (const auto& [open, close] : kMarks) {
            if (!xml_.substr(begin_).starts_with(open))
                continue;
            end_ = std::min(xml_.find(close, begin_ + open.size()), xml_.size());
            next_ = end_;
        }
    }

    std::string_view xml_;
    std::size_t begin_ = 0; // of the last section that was found
    std::size_t end_ = 0;
    std::size_t next_ = 0; // from where the next one is looked for
};

class FlawSearch {
public:
    explicit FlawSearch(std::string_view xml) : xml_(xml), sections_(xml) {}

    [[nodiscard]] std::optional<XmlFlaw> find()
    {
        constexpr std::size_t kPiece = 64; // bytes
        while (offset_ < xml_.size()) {
            const auto piece = xml_.substr(offset_, kPiece);
            const auto end = offset_ + piece.size();
            if (!hasUnplain(piece))
                offset_ = end;
            else if (auto flaw = findBefore(end))
                return flaw;
        }
        return std::nullopt;
    }

private:
    std::optional<XmlFlaw> findBefore(std::size_t end)
    {
        while (offset_ < end) {
            const auto rest = xml_.substr(offset_, end - offset_);
            const auto* const unplain = std::find_if(rest.begin(), rest.end(), isUnplainInTable);
            offset_ += static_cast<std::size_t>(unplain - rest.begin());
            if (offset_ == end)
                return std::nullopt;
            if (auto flaw = flawAtOffset())
                return flaw;
        }
        return std::nullopt;
    }

    std::optional<XmlFlaw> flawAtOffset()
    {
        if (isControl(xml_[offset_]))
            return damage(xml_[offset_] == '\0' ? tr("the file is damaged (a zero byte)")
                                                : tr("the file is damaged (a control character)"));
        return xml_[offset_] == '&' ? flawOfReference() : flawOfCharacter();
    }

    std::optional<XmlFlaw> flawOfCharacter()
    {
        auto rest = xml_.substr(offset_);
        const auto before = rest.size();
        const auto character = takeCharacter(rest);
        const auto length = before - rest.size();
        if (length == 1) // no valid character beyond ASCII is as short
            return XmlFlaw{offset_, tr("the text is not valid UTF-8"),
                           tr("Export it as UTF-8 from the program that made it")};
        if (!isAllowed(character))
            return damage(tr("the file is damaged (a character that XML does not allow)"));
        offset_ += length;
        return std::nullopt;
    }

    std::optional<XmlFlaw> flawOfReference()
    {
        const auto name = referenceAt(xml_.substr(offset_));
        if (!isKnownReference(name) && !sections_.contain(offset_))
            return flawOf(name);
        ++offset_;
        return std::nullopt;
    }

    [[nodiscard]] XmlFlaw flawOf(std::string_view name) const
    {
        if (name.empty())
            return {offset_, tr("the file is not well-formed (a \"&\" that begins no reference)"),
                    tr("Replace it by \"&amp;\", or export the file once more")};
        if (name.starts_with('#'))
            return {offset_,
                    trFormat("the file is not well-formed (&{}; is not a character that XML "
                             "allows)",
                             name),
                    tr("Remove it, or export the file once more")};
        return {
            offset_,
            trFormat("the file uses &{};, which is not one of the entities of XML itself", name),
            tr("Replace it by the character that it is for, or export the file once more")};
    }

    [[nodiscard]] XmlFlaw damage(std::string what) const
    {
        return {offset_, std::move(what), tr("Check the file, or export it once more")};
    }

    std::string_view xml_;
    LiteralSections sections_;
    std::size_t offset_ = 0;
};

} // namespace

std::optional<XmlFlaw> findXmlFlaw(std::string_view xml)
{
    return FlawSearch{xml}.find();
}

} // namespace host
