// SPDX-License-Identifier: MIT
// Property lists in their XML form, read into values. [any]
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
inline constexpr int kDeepestPropertyList = 64; ///< arrays and dictionaries within one another

/// Reads a property list. Dictionaries keep the file's order; dates and data are taken as their
/// text.
/// @param value  out: the list's one value; untouched after a failure
/// @return       domain "NSCocoaErrorDomain", code 3840, with a description that says what is wrong
/// at which byte
[[nodiscard]] std::optional<Error> parsePropertyList(std::string_view xml, Value& value);

/// The same from a file; an unreadable one gives the read errors of FileManager.
[[nodiscard]] std::optional<Error> readPropertyList(const std::string& path, Value& value);

/// A property list file whose value is a dictionary; none if it cannot be read or holds something
/// else.
[[nodiscard]] std::optional<Dictionary> readPropertyListDictionary(const std::string& path);

} // namespace gps
