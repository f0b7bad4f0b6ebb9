// SPDX-License-Identifier: MIT
// Checks the whole structure, so that a damaged bundle or settings file is reported instead of
// being used in part.

#include "PropertyList.h"

#include "FileManager.h"

#include <gps/Characters.h>
#include <gps/NumberText.h>

#include <pugixml.hpp>

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>

namespace gps {
namespace {

constexpr std::int32_t kBrokenPropertyList = 3840;

using Problem = std::optional<Error>;

Error problemAt(std::ptrdiff_t offset, const std::string& what)
{
    return {kFileErrorDomain,
            kBrokenPropertyList,
            {{kErrorDescriptionKey,
              "The property list " + what + " at byte " + std::to_string(offset) + "."}}};
}

Error problemAt(const pugi::xml_node& node, const std::string& what)
{
    return problemAt(node.offset_debug(), what);
}

bool isElement(const pugi::xml_node& node)
{
    return node.type() == pugi::node_element;
}

/// Only white space is allowed between elements.
bool isIgnorable(const pugi::xml_node& node)
{
    return !isElement(node) && trimmed(node.value()).empty();
}

/// The first node at or after `node` that is not white space; a null node if there is none.
pugi::xml_node significant(pugi::xml_node node)
{
    while (node && isIgnorable(node))
        node = node.next_sibling();
    return node;
}

/// Reads an element's text, including white space. Comments may split it into pieces.
Problem readText(const pugi::xml_node& element, std::string& text)
{
    for (const auto& piece : element.children()) {
        if (isElement(piece))
            return problemAt(piece,
                             "has an element inside a <" + std::string{element.name()} + ">");
        text += piece.value();
    }
    return std::nullopt;
}

/// Reads the number of an <integer> or a <real>, or the empty <true> or <false>.
bool readLiteral(std::string_view kind, std::string_view text, Value& value)
{
    if (kind == "integer") {
        const auto number = wholeInteger(text);
        if (number)
            value = *number;
        return number.has_value();
    }
    if (kind == "real") {
        const auto number = wholeNumber(text);
        if (number)
            value = *number;
        return number.has_value();
    }
    value = kind == "true";
    return text.empty();
}

Problem readScalar(const pugi::xml_node& element, Value& value)
{
    const std::string_view kind = element.name();
    std::string text;
    if (auto problem = readText(element, text))
        return problem;
    if (kind == "string" || kind == "date" || kind == "data") {
        value = std::move(text);
        return std::nullopt;
    }
    if (kind == "integer" || kind == "real" || kind == "true" || kind == "false") {
        if (readLiteral(kind, trimmed(text), value))
            return std::nullopt;
        return problemAt(element, "has a <" + std::string{kind} + "> with an invalid value");
    }
    return problemAt(element, "has the unknown element <" + std::string{kind} + ">");
}

Problem readValue(const pugi::xml_node& element, int depth, Value& value);

Problem readArray(const pugi::xml_node& element, int depth, Value& value)
{
    Array array;
    for (auto node = significant(element.first_child()); node;
         node = significant(node.next_sibling())) {
        Value item;
        if (auto problem = readValue(node, depth, item))
            return problem;
        array.push_back(std::move(item));
    }
    value = std::move(array);
    return std::nullopt;
}

Problem readDictionary(const pugi::xml_node& element, int depth, Value& value)
{
    Dictionary dictionary;
    for (auto node = significant(element.first_child()); node;
         node = significant(node.next_sibling())) {
        if (!isElement(node) || node.name() != std::string_view{"key"})
            return problemAt(node, "lacks a <key>");
        std::string key;
        if (auto problem = readText(node, key))
            return problem;
        const auto keyNode = node;
        node = significant(node.next_sibling());
        if (!node)
            return problemAt(keyNode, "has a <key> without a value");
        Value item;
        if (auto problem = readValue(node, depth, item))
            return problem;
        dictionary.set(key, std::move(item));
    }
    value = std::move(dictionary);
    return std::nullopt;
}

/// @param depth  how many arrays and dictionaries contain the element
Problem readValue(const pugi::xml_node& element, int depth, Value& value)
{
    if (!isElement(element))
        return problemAt(element, "has text between its elements");
    const std::string_view kind = element.name();
    if (kind != "array" && kind != "dict")
        return readScalar(element, value);
    if (depth == kDeepestPropertyList)
        return problemAt(element, "is nested too deeply");
    return kind == "array" ? readArray(element, depth + 1, value)
                           : readDictionary(element, depth + 1, value);
}

Problem readDocument(const pugi::xml_document& document, Value& value)
{
    const auto root = significant(document.first_child());
    if (!isElement(root) || root.name() != std::string_view{"plist"})
        return problemAt(0, "has no <plist>");
    if (const auto more = significant(root.next_sibling()))
        return problemAt(more, "has content after its end");
    const auto element = significant(root.first_child());
    if (!element)
        return problemAt(root, "has no value");
    if (const auto more = significant(element.next_sibling()))
        return problemAt(more, "has a second value");
    return readValue(element, 0, value);
}

} // namespace

std::optional<Error> parsePropertyList(std::string_view xml, Value& value)
{
    if (xml.size() > kLargestPropertyList)
        return problemAt(static_cast<std::ptrdiff_t>(kLargestPropertyList), "is too large");
    if (const auto zero = xml.find('\0');
        zero != std::string_view::npos) // the parser would take it for the end
        return problemAt(static_cast<std::ptrdiff_t>(zero), "has a zero byte");

    // As a fragment, because otherwise the parser drops text outside the root silently.
    pugi::xml_document document;
    const auto result = document.load_buffer(
        xml.data(), xml.size(), pugi::parse_default | pugi::parse_ws_pcdata | pugi::parse_fragment,
        pugi::encoding_utf8);
    if (result.status == pugi::status_out_of_memory)
        throw std::bad_alloc{};
    if (!result)
        return problemAt(result.offset,
                         "is not well-formed XML (" + std::string{result.description()} + ")");
    Value whole;
    if (auto problem = readDocument(document, whole))
        return problem;
    value = std::move(whole);
    return std::nullopt;
}

std::optional<Error> readPropertyList(const std::string& path, Value& value)
{
    std::string xml;
    // FileManager would report a lack of memory as an unreadable file. Here it is an exception.
    xml.reserve(kLargestPropertyList + 1);
    if (auto error = FileManager{}.readFile(path, xml, kLargestPropertyList))
        return error;
    return parsePropertyList(xml, value);
}

std::optional<Dictionary> readPropertyListDictionary(const std::string& path)
{
    Value value;
    if (readPropertyList(path, value))
        return std::nullopt;
    auto* dictionary = value.as<Dictionary>();
    return dictionary != nullptr ? std::optional{std::move(*dictionary)} : std::nullopt;
}

} // namespace gps
