// SPDX-License-Identifier: MIT
// Expat finds the flaw; what is said of it depends on the bytes there.

#include "host/formats/XmlCheck.h"

#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"

#include <gps/Characters.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include <expat.h>

namespace host {
namespace {

constexpr std::size_t kMostShown = 40; // characters of a name

using Parser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)>;

// What the functions below find, which get the parser itself as their argument.
struct Findings {
    std::string root{};
    std::optional<XmlFlaw> refusal{};
};

Findings& findingsOf(XML_Parser parser)
{
    return *static_cast<Findings*>(XML_GetUserData(parser));
}

std::size_t offsetIn(XML_Parser parser)
{
    return static_cast<std::size_t>(XML_GetCurrentByteIndex(parser));
}

void keepRoot(void* argument, const XML_Char* name, const XML_Char** /*attributes*/)
{
    constexpr std::size_t kMostCompared = 64; // bytes. The name may be as long as the file
    auto* const parser = static_cast<XML_Parser>(argument);
    findingsOf(parser).root = std::string_view{name}.substr(0, kMostCompared);
    XML_SetStartElementHandler(parser, nullptr); // it is not called for any other element
}

void refuse(XML_Parser parser, std::string what, const char* advice)
{
    findingsOf(parser).refusal = XmlFlaw{offsetIn(parser), std::move(what), advice};
    XML_StopParser(parser, XML_FALSE);
}

void checkVersion(void* argument, const XML_Char* version, const XML_Char* /*encoding*/,
                  int /*isStandalone*/)
{
    const std::string_view text = version;
    if (!text.starts_with("1.") || text.size() == 2 ||
        !std::all_of(text.begin() + 2, text.end(), gps::isDigit))
        refuse(static_cast<XML_Parser>(argument),
               trFormat("the file is not well-formed (there is no version {} of XML)",
                        displayText(text, kMostShown)),
               tr(kCheckFile));
}

void checkDocumentType(void* argument, const XML_Char* /*name*/, const XML_Char* /*system*/,
                       const XML_Char* /*publicId*/, int hasDeclarations)
{
    if (hasDeclarations != 0)
        refuse(static_cast<XML_Parser>(argument),
               tr("the file has declarations in its document type, which no map file needs"),
               tr(kCheckFile));
}

std::string entityText(std::string_view name)
{
    return trFormat("the file uses &{};, which is not one of the entities of XML itself",
                    displayText(name, kMostShown));
}

constexpr auto* kReplaceEntity =
    marked("Replace it by the character that it is for, or export the file once more");

// Called for an entity that another file may declare.
void refuseEntity(void* argument, const XML_Char* name, int /*isParameterEntity*/)
{
    refuse(static_cast<XML_Parser>(argument), entityText(name), tr(kReplaceEntity));
}

Parser makeParser(Findings& findings)
{
    Parser parser{XML_ParserCreate("UTF-8"), &XML_ParserFree};
    if (!parser)
        throw std::bad_alloc{};
    XML_SetUserData(parser.get(), &findings);
    XML_UseParserAsHandlerArg(parser.get());
    XML_SetStartElementHandler(parser.get(), keepRoot);
    XML_SetXmlDeclHandler(parser.get(), checkVersion);
    XML_SetStartDoctypeDeclHandler(parser.get(), checkDocumentType);
    XML_SetSkippedEntityHandler(parser.get(), refuseEntity);
    return parser;
}

// Returns whether the text is well-formed.
bool parse(XML_Parser parser, std::string_view xml, std::size_t piece)
{
    for (;;) {
        const auto part = xml.substr(0, piece);
        xml.remove_prefix(part.size());
        if (XML_Parse(parser, part.data(), static_cast<int>(part.size()), xml.empty() ? 1 : 0) !=
            XML_STATUS_OK)
            return false;
        if (xml.empty())
            return true;
    }
}

constexpr std::string_view kSpace = " \t\r\n"; // as XML has it
XmlFlaw damage(std::size_t offset, std::string what)
{
    return {offset, std::move(what), tr(kCheckFile)};
}

XmlFlaw flawOfEndTag(std::string_view xml, std::size_t offset)
{
    const auto name = xml.substr(offset, xml.find('>', offset) - offset);
    return damage(offset, trFormat("the file is damaged or cut short (</{}> does not end the "
                                   "element that is open)",
                                   displayText(gps::trimmed(name), kMostShown)));
}

XmlFlaw flawOfCharacterReference(std::string_view xml, std::size_t offset)
{
    const auto reference = xml.substr(offset, xml.find(';', offset) + 1 - offset);
    return {offset,
            trFormat("the file is not well-formed ({} is not a character that XML allows)",
                     displayText(reference, kMostShown)),
            tr("Remove it, or export the file once more")};
}

// @param offset  of the reference, or of the tag that has it in an attribute
XmlFlaw flawOfEntity(std::string_view xml, std::size_t offset)
{
    constexpr std::array<std::string_view, 6> kKnown{"&amp;",  "&lt;",   "&gt;",
                                                     "&quot;", "&apos;", "&#"};
    offset = xml.find('&', offset);
    while (std::any_of(kKnown.begin(), kKnown.end(),
                       [rest = xml.substr(offset)](auto known) { return rest.starts_with(known); }))
        offset = xml.find('&', offset + 1);
    const auto name = xml.substr(offset + 1, xml.find(';', offset) - offset - 1);
    return {offset, entityText(name), tr(kReplaceEntity)};
}

XmlFlaw flawOfCharacter(std::string_view xml, std::size_t offset)
{
    auto rest = xml.substr(offset);
    const auto before = rest.size();
    const auto character = takeCharacter(rest);
    const auto length = before - rest.size();
    if (character >= 0x80 && length == 1) // no valid character beyond ASCII is as short
        return {offset, tr("the text is not valid UTF-8"), tr(kExportAsUtf8)};
    if (character == 0xFFFE || character == 0xFFFF)
        return damage(offset, tr("the file is damaged (a character that XML does not allow)"));
    if (kSpace.find(xml[offset]) != std::string_view::npos)
        return damage(offset, tr("the file is not well-formed (white space is not allowed here)"));
    const auto shown = xml.substr(offset, length);
    return damage(offset,
                  trFormat("the file is not well-formed ({} is not allowed here)",
                           displayText(shown) == shown
                               ? fmt::format("\"{}\"", shown)
                               : fmt::format("U+{:04X}", static_cast<std::uint32_t>(character))));
}

// Whether a text ends with two hyphens that do not end the comment they are in.
bool endsWithHyphensOfComment(std::string_view text)
{
    const auto comment = text.rfind("<!--");
    return text.ends_with("--") && comment != std::string_view::npos &&
           text.find("-->", comment) == std::string_view::npos;
}

bool isOfReference(char c) noexcept
{
    const auto lower = gps::lowerCase(c);
    return gps::isDigit(c) || (lower >= 'a' && lower <= 'z') ||
           std::string_view{"#_.-:"}.find(c) != std::string_view::npos ||
           static_cast<unsigned char>(c) >= 0x80;
}

// @param offset  of the first byte that cannot continue what is before it
XmlFlaw flawOfByte(std::string_view xml, std::size_t offset)
{
    const char c = xml[offset];
    if (c == '\0')
        return damage(offset, tr("the file is damaged (a zero byte)"));
    if (static_cast<unsigned char>(c) < ' ' && kSpace.find(c) == std::string_view::npos)
        return damage(offset, tr("the file is damaged (a control character)"));
    const auto before = xml.substr(0, offset);
    const auto reference =
        std::find_if_not(before.rbegin(), before.rend(), isOfReference) - before.rbegin();
    const auto ampersand = offset - static_cast<std::size_t>(reference);
    if (before.substr(0, ampersand).ends_with('&'))
        return {ampersand - 1, tr("the file is not well-formed (a \"&\" that begins no reference)"),
                tr("Replace it by \"&amp;\", or export the file once more")};
    if (c == '>' && before.ends_with("]]"))
        return damage(offset, tr("the file is not well-formed (\"]]>\" in a text)"));
    if (endsWithHyphensOfComment(before))
        return damage(offset, tr("the file is not well-formed (\"--\" in a comment)"));
    return flawOfCharacter(xml, offset);
}

XmlFlaw flawOf(XML_Error error, std::string_view xml, std::size_t offset)
{
    switch (error) {
    case XML_ERROR_NO_ELEMENTS: // at the end of the text; what is cut is before its last line end
        return damage(xml.find_last_not_of(kSpace) + 1, tr("the file is damaged or cut short"));
    case XML_ERROR_UNCLOSED_TOKEN:
    case XML_ERROR_UNCLOSED_CDATA_SECTION:
    case XML_ERROR_PARTIAL_CHAR:
        return damage(offset, tr("the file is damaged or cut short"));
    case XML_ERROR_TAG_MISMATCH:
        return flawOfEndTag(xml, offset);
    case XML_ERROR_DUPLICATE_ATTRIBUTE:
        return damage(offset, tr("the file is not well-formed (an attribute is given twice)"));
    case XML_ERROR_JUNK_AFTER_DOC_ELEMENT:
        return damage(offset, tr("there is more text after the end of the document"));
    case XML_ERROR_MISPLACED_XML_PI:
        return {offset, tr("\"<?xml\" is not at the start of the file"),
                tr("Remove what is before it, or export the file once more")};
    case XML_ERROR_BAD_CHAR_REF:
        return flawOfCharacterReference(xml, offset);
    case XML_ERROR_UNDEFINED_ENTITY:
        return flawOfEntity(xml, offset);
    case XML_ERROR_INVALID_TOKEN:
        return flawOfByte(xml, offset);
    case XML_ERROR_SYNTAX:
        return damage(offset,
                      tr("the file is not well-formed (this cannot be before the document)"));
    default:
        return damage(offset, trFormat("the file is not well-formed ({})", XML_ErrorString(error)));
    }
}

} // namespace

XmlCheck checkXml(std::string_view xml, std::size_t piece)
{
    Findings findings;
    const auto parser = makeParser(findings);
    if (parse(parser.get(), xml, piece))
        return {std::move(findings.root), std::nullopt};
    const auto error = XML_GetErrorCode(parser.get());
    if (error == XML_ERROR_NO_MEMORY)
        throw std::bad_alloc{};
    if (error == XML_ERROR_NO_ELEMENTS && findings.root.empty())
        return {};
    if (!findings.refusal)
        findings.refusal = flawOf(error, xml, offsetIn(parser.get()));
    return {std::move(findings.root), std::move(findings.refusal)};
}

} // namespace host
