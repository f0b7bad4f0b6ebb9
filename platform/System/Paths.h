// SPDX-License-Identifier: MIT
// Paths: joining and taking apart file paths as texts. Nothing here looks at the file system. [any]

#pragma once

#include <string>
#include <string_view>

namespace gps {

/// `folder` and `name` as one path, with exactly one "/" between them. Slashes at the start of
/// `name` are dropped. [any]
[[nodiscard]] std::string joinPath(std::string_view folder, std::string_view name);

/// Whether joinPath(folder, path) cannot lead out of `folder`: the path is not empty, has no
/// component ".." and holds no NUL byte. Links are not looked at. A component such as "..pois" is a
/// plain name. [any]
[[nodiscard]] bool staysInside(std::string_view path) noexcept;

/// The last component of a path, ignoring trailing slashes; a path of slashes only is returned as
/// it is. [any]
/// @return  a view into the path
[[nodiscard]] std::string_view lastComponent(std::string_view path) noexcept;

/// The text after the last "." of the last component, ignoring trailing slashes; empty if it has no
/// ".". [any]
/// @return  a view into the path
[[nodiscard]] std::string_view pathExtension(std::string_view path) noexcept;

} // namespace gps
