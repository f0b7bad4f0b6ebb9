// SPDX-License-Identifier: MIT
// The parser changes the text in memory, so an error reads the file again to count its lines.

#include "host/formats/XmlFile.h"

#include "host/base/HostError.h"
#include "host/base/TranslatedFormat.h"
#include "host/base/XmlText.h"
#include "host/formats/XmlCharacters.h"
#include "host/formats/XmlNodes.h"

#include <gps/Characters.h>
#include <platform/System/FileManager.h>

#include <fmt/format.h>
#include <pugixml.hpp>

#include <algorithm>
#include <new>
#include <utility>

namespace host {
namespace {

// Text begins with the white space in front of it.
std::ptrdiff_t contentOffset(const pugi::xml_node& node)
{
    const std::string_view text = node.type() == pugi::node_pcdata ? node.value() : "";
    return node.offset_debug() +
           static_cast<std::ptrdiff_t>(text.size() - gps::withoutLeadingSpace(text).size());
}

constexpr auto* kCheckFile = marked("Check the file, or export it once more");

} // namespace

XmlFile::XmlFile(std::string path, std::string_view format, Unpack unpack)
    : path_(std::move(path)), format_(format), unpack_(std::move(unpack))
{}

std::optional<gps::Error> XmlFile::load(std::string& xml) const
{
    if (auto failure = gps::FileManager{}.readFile(path_, xml, kLargestXml))
        return failure;
    if (!unpack_)
        return std::nullopt;
    if (const auto problem = unpack_(xml); !problem.empty())
        return errorIn(name(), problem, tr(kCheckFile));
    return std::nullopt;
}

std::optional<gps::Error> XmlFile::read(std::string& xml) const
{
    if (auto failure = load(xml))
        return failure;
    if (!convertXmlToUtf8(xml))
        return errorAt(0, tr("the text encoding of this file is not supported"));
    return std::nullopt;
}

std::optional<gps::Error> XmlFile::parse(std::string& xml, pugi::xml_document& document) const
{
    // The parser would stop at a zero byte and call what it has read a whole document, cut a text
    // at a reference to one, and accept much else that is a sign of damage.
    if (const auto flaw = findXmlFlaw(xml))
        return errorAt(static_cast<std::ptrdiff_t>(flaw->offset), flaw->what, flaw->advice.c_str());
    // A name may be a single space. Without parse_fragment, the parser would ignore text around the
    // root element.
    constexpr auto kOptions = pugi::parse_default | pugi::parse_doctype | pugi::parse_embed_pcdata |
                              pugi::parse_ws_pcdata_single | pugi::parse_fragment;
    const auto result =
        document.load_buffer_inplace(xml.data(), xml.size(), kOptions, pugi::encoding_utf8);
    if (result.status == pugi::status_out_of_memory)
        throw std::bad_alloc{};
    if (!result)
        return errorAt(result.offset,
                       trFormat("the file is damaged or cut short ({})", result.description()));
    const auto root = document.document_element();
    const auto name = localName(root);
    if (!std::equal(name.begin(), name.end(), format_.begin(), format_.end(),
                    [](char a, char b) { return a == gps::lowerCase(b); }))
        return notThisFormat();
    // The parser accepts several root elements and text around them, which would be lost silently.
    if (const auto more = root.next_sibling())
        return errorAt(contentOffset(more), tr("there is more text after the end of the document"));
    for (auto before = root.previous_sibling(); before; before = before.previous_sibling()) {
        if (before.type() != pugi::node_doctype)
            return errorAt(contentOffset(before), tr("there is text before the document"));
    }
    return std::nullopt;
}

gps::Error XmlFile::errorAt(std::ptrdiff_t offset, const std::string& what, const char* advice,
                            std::size_t moreLines) const
{
    std::string xml;
    if (load(xml))
        return errorIn(name(), what, advice);
    (void)convertXmlToUtf8(xml); // the offset counts bytes of the converted text
    const auto line = lineAt(xml, static_cast<std::size_t>(offset)) + moreLines;
    return errorIn(trFormat("{}, line {}", name(), line), what, advice);
}

std::string XmlFile::sentence(std::string_view text) const
{
    return fmt::format("{}: {}.", name(), text);
}

std::string XmlFile::name() const
{
    return path_.substr(path_.find_last_of('/') + 1);
}

gps::Error XmlFile::errorIn(const std::string& where, const std::string& what,
                            const char* advice) const
{
    return hostError(fmt::format("{}: {}", where, what), advice, path_);
}

gps::Error XmlFile::notThisFormat() const
{
    return errorAt(0, trFormat("this is not a {} file", format_),
                   trFormat("Export it as {} from the program that made it", format_).c_str());
}

} // namespace host
