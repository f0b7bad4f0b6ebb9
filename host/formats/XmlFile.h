// SPDX-License-Identifier: MIT
// XmlFile: loads a map file of XML, and makes the errors that name its lines. What the readers of
// GPX and KML share. [any]

#pragma once

#include "host/base/Translation.h"

#include <gps/Error.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace pugi {
class xml_document;
}

namespace host {

/// The largest file that is read, in bytes.
inline constexpr std::size_t kLargestXml = std::size_t{1} << 30;

class XmlFile {
public:
    /// Takes a document out of what holds it, such as an archive.
    /// @return  why it cannot, as a part of a sentence; otherwise empty
    using Unpack = std::function<std::string(std::string& content)>;

    /// @param format  "GPX" or "KML": the name of the root element, too, in small letters
    XmlFile(std::string path, std::string_view format, Unpack unpack = {});

    /// Reads the file and converts it to UTF-8.
    [[nodiscard]] std::optional<gps::Error> read(std::string& xml) const;

    /// Parses what read() returned, or a part of it.
    /// @param xml       in: the text. out: what the document consists of, as long as it is used
    /// @param document  may have a document type declaration in front of its root element
    [[nodiscard]] std::optional<gps::Error> parse(std::string& xml,
                                                  pugi::xml_document& document) const;

    /// An error on the line of a byte of the text.
    /// @param moreLines  how many lines below that
    [[nodiscard]] gps::Error
    errorAt(std::ptrdiff_t offset, const std::string& what,
            const char* advice = tr("Check the file, or export it once more"),
            std::size_t moreLines = 0) const;

    /// A sentence about the file as a whole.
    [[nodiscard]] std::string sentence(std::string_view text) const;

private:
    [[nodiscard]] std::string name() const;
    [[nodiscard]] std::optional<gps::Error> load(std::string& xml) const;
    [[nodiscard]] gps::Error errorIn(const std::string& where, const std::string& what,
                                     const char* advice) const;
    [[nodiscard]] gps::Error notThisFormat() const;

    std::string path_;
    std::string_view format_;
    Unpack unpack_;
};

} // namespace host
