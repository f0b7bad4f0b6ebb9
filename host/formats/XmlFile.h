// SPDX-License-Identifier: MIT
// XmlFile: loads a map file of XML, and makes the errors that name its lines. What the readers of
// GPX and KML share. [any]

#pragma once

#include "host/base/Translation.h"
#include "host/formats/XmlCheck.h"

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

    /// Parses what read() returned, or a part of it. Refuses what is not well-formed.
    /// @param xml  in: the text. out: what the document consists of, as long as it is used
    [[nodiscard]] std::optional<gps::Error> parse(std::string& xml,
                                                  pugi::xml_document& document) const;

    /// An error on the line of a byte of the text.
    /// @param moreLines  how many lines below that
    [[nodiscard]] gps::Error errorAt(std::ptrdiff_t offset, const std::string& what,
                                     const char* advice = tr(kCheckFile),
                                     std::size_t moreLines = 0) const;

    /// A sentence about the file as a whole.
    [[nodiscard]] std::string sentence(std::string_view text) const;

private:
    [[nodiscard]] bool isThisFormat(std::string_view root) const;
    [[nodiscard]] std::optional<gps::Error> check(std::string_view xml) const;
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
