// SPDX-License-Identifier: MIT
// A line has a variable number of tags in the middle, ended by "-"; a line that was cut off is
// skipped.

#include "MountTable.h"

#include "FileManager.h"

#include <gps/NumberText.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

namespace gps {
namespace {

/// Takes the text up to the next separator off the front, and the separator too.
std::string_view takeUpTo(std::string_view& text, char separator)
{
    const auto end = std::min(text.find(separator), text.size());
    const auto front = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return front;
}

bool isOctalEscape(std::string_view text)
{
    return text.size() >= 4 && text[0] == '\\' && text[1] >= '0' && text[1] <= '3' &&
           text[2] >= '0' && text[2] <= '7' && text[3] >= '0' && text[3] <= '7';
}

std::string withoutEscapes(std::string_view text)
{
    std::string plain;
    plain.reserve(text.size());
    while (!text.empty()) {
        const bool escaped = isOctalEscape(text);
        plain +=
            escaped
                ? static_cast<char>((text[1] - '0') * 64 + (text[2] - '0') * 8 + (text[3] - '0'))
                : text[0];
        text.remove_prefix(escaped ? 4 : 1);
    }
    return plain;
}

std::optional<MountTableEntry> parseLine(std::string_view line)
{
    const auto id = wholeUnsigned(takeUpTo(line, ' '));
    const auto parent = wholeUnsigned(takeUpTo(line, ' '));
    auto device = takeUpTo(line, ' ');
    const auto major = wholeUnsigned(takeUpTo(device, ':'));
    const auto minor = wholeUnsigned(device);
    takeUpTo(line, ' '); // the root within the volume
    const auto path = takeUpTo(line, ' ');
    takeUpTo(line, ' '); // options
    if (!id || !parent || !major || !minor || path.empty() || path.front() != '/')
        return std::nullopt;
    while (!line.empty()) { // tags, as many as there are
        if (takeUpTo(line, ' ') != "-")
            continue;
        takeUpTo(line, ' '); // the volume's type
        const auto source = takeUpTo(line, ' ');
        if (line.empty())
            return std::nullopt; // cut off: the type's own options come last
        return MountTableEntry{*major, *minor, withoutEscapes(path), withoutEscapes(source)};
    }
    return std::nullopt;
}

} // namespace

std::vector<MountTableEntry> parseMountTable(std::string_view text)
{
    std::vector<MountTableEntry> entries;
    while (!text.empty()) {
        if (auto entry = parseLine(takeUpTo(text, '\n')))
            entries.push_back(*std::move(entry));
    }
    return entries;
}

std::vector<MountTableEntry> readMountTable(const std::string& path)
{
    constexpr std::size_t kLargest = std::size_t{16} << 20; // bytes
    std::string text;
    if (FileManager{}.readFile(path, text, kLargest))
        return {};
    return parseMountTable(text);
}

} // namespace gps
