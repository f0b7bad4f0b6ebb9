// SPDX-License-Identifier: MIT
// Every path is authorized.

#include "GPSStorageAuthorization.h"

namespace gps {
namespace {

std::size_t openAccesses = 0;

} // namespace

void SecurityScopedURL::startAccessingSecurityScopedResource() const noexcept
{
    ++openAccesses;
}

void SecurityScopedURL::stopAccessingSecurityScopedResource() const noexcept
{
    --openAccesses;
}

std::optional<SecurityScopedURL>
GPSStorageAuthorization::authorizedBookmarkURLForPath(const std::string& path)
{
    return SecurityScopedURL{path};
}

std::size_t GPSStorageAuthorization::openAccessCount() noexcept
{
    return openAccesses;
}

} // namespace gps
