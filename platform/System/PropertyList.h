// SPDX-License-Identifier: MIT
// Property lists in XML form, read into values. Bundles and user defaults are stored in them. A
// lack of memory is an exception, since a resource that seems to be unreadable is left out. [any]
// Source of the form: the published "PropertyList-1.0" document type.

#pragma once

#include <gps/Error.h>
#include <gps/Value.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace gps {

inline constexpr std::size_t kLargestPropertyList = std::size_t{1} << 20; ///< bytes
inline constexpr int kDeepestPropertyList = 64; ///< levels of nested arrays and dictionaries

/// Parses a property list. Dictionaries keep the order of the file; dates and data become strings.
/// [any]
/// @param value  out: the list's one value; unchanged after a failure
/// @return       domain "NSCocoaErrorDomain", code 3840, with a description of the mistake and its
///               byte offset
[[nodiscard]] std::optional<Error> parsePropertyList(std::string_view xml, Value& value);

/// The same for a file; also returns the read errors of FileManager. [any]
[[nodiscard]] std::optional<Error> readPropertyList(const std::string& path, Value& value);

/// Reads a file whose value is a dictionary; nullopt if it cannot be read or has another value.
/// [any]
[[nodiscard]] std::optional<Dictionary> readPropertyListDictionary(const std::string& path);

} // namespace gps
