// SPDX-License-Identifier: MIT
// The parser changes the text in memory, so an error reads the file again to count its lines.

#include "host/formats/XmlFile.h"

#include "host/base/HostError.h"
#include "host/base/TranslatedFormat.h"
#include "host/base/XmlText.h"

#include <gps/Characters.h>
#include <platform/System/FileManager.h>

#include <fmt/format.h>
#include <pugixml.hpp>

#include <algorithm>
#include <new>
#include <utility>

namespace host {
namespace {

std::string_view withoutByteOrderMark(std::string_view text)
{
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    return text.starts_with(kMark) ? text.substr(kMark.size()) : text;
}

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
    switch (convertXmlToUtf8(xml)) {
    case XmlConversion::kUnknownEncoding:
        return errorAt(0, tr("the text encoding of this file is not supported"));
    case XmlConversion::kInvalidText:
        return errorAt(static_cast<std::ptrdiff_t>(xml.size()),
                       tr("the text is not valid in the encoding of the file"), tr(kExportAsUtf8));
    case XmlConversion::kDone:
        break;
    }
    return std::nullopt;
}

bool XmlFile::isThisFormat(std::string_view root) const
{
    const auto name = root.substr(root.find(':') + 1); // the prefix may be missing
    return std::equal(name.begin(), name.end(), format_.begin(), format_.end(),
                      [](char a, char b) { return a == gps::lowerCase(b); });
}

std::optional<gps::Error> XmlFile::check(std::string_view xml) const
{
    const auto begin = std::min(xml.find('<'), xml.size());
    const auto text = xml.substr(0, begin);
    if (const auto before = gps::withoutLeadingSpace(withoutByteOrderMark(text)); !before.empty()) {
        if (!isThisFormat(checkXml(xml.substr(begin)).root))
            return notThisFormat();
        return errorAt(static_cast<std::ptrdiff_t>(begin - before.size()),
                       tr("there is text before the document"));
    }
    const auto [root, flaw] = checkXml(xml);
    const bool hasRoot = !root.empty() || !flaw;
    if (hasRoot && !isThisFormat(root))
        return notThisFormat();
    if (flaw)
        return errorAt(static_cast<std::ptrdiff_t>(flaw->offset), flaw->what, flaw->advice.c_str());
    return std::nullopt;
}

std::optional<gps::Error> XmlFile::parse(std::string& xml, pugi::xml_document& document) const
{
    if (auto failure = check(xml))
        return failure;
    // A name may be a single space.
    constexpr auto kOptions =
        pugi::parse_default | pugi::parse_embed_pcdata | pugi::parse_ws_pcdata_single;
    const auto result =
        document.load_buffer_inplace(xml.data(), xml.size(), kOptions, pugi::encoding_utf8);
    if (result.status == pugi::status_out_of_memory)
        throw std::bad_alloc{};
    if (!result)
        return errorAt(result.offset, result.description());
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
