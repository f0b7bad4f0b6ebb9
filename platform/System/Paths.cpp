// SPDX-License-Identifier: MIT
// Pure text functions: paths from a device's files are untrusted and are judged before any use.

#include "Paths.h"

#include <algorithm>

namespace gps {

std::string joinPath(std::string_view folder, std::string_view name)
{
    name.remove_prefix(std::min(name.find_first_not_of('/'), name.size()));
    if (folder.empty())
        return std::string{name};
    if (name.empty())
        return std::string{folder};
    const auto end = folder.find_last_not_of('/');
    std::string path{folder.substr(0, end == std::string_view::npos ? 0 : end + 1)};
    return path.append(1, '/').append(name);
}

bool staysInside(std::string_view path) noexcept
{
    // A system call would end the path at a NUL byte: "..\0" would be "..".
    if (path.empty() || path.find('\0') != std::string_view::npos)
        return false;
    while (!path.empty()) {
        const auto component = path.substr(0, path.find('/'));
        if (component == "..")
            return false;
        path.remove_prefix(std::min(path.size(), component.size() + 1));
    }
    return true;
}

std::string_view lastComponent(std::string_view path) noexcept
{
    const auto end = path.find_last_not_of('/');
    if (end == std::string_view::npos)
        return path;
    const auto slash = path.rfind('/', end);
    const auto begin = slash == std::string_view::npos ? 0 : slash + 1;
    return path.substr(begin, end + 1 - begin);
}

std::string_view pathExtension(std::string_view path) noexcept
{
    const auto name = lastComponent(path);
    const auto dot = name.rfind('.');
    return dot != std::string_view::npos ? name.substr(dot + 1) : std::string_view{};
}

} // namespace gps
