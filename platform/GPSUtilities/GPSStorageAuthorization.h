// SPDX-License-Identifier: MIT
// The user's grant of access to a volume. This system grants by file permissions alone, so every
// path is granted here and a refusal shows when a file is read. [host thread]

#pragma once

#include <optional>
#include <string>
#include <utility>

namespace gps {

/// A path on which access can be opened and closed.
class SecurityScopedURL {
public:
    explicit SecurityScopedURL(std::string path) : path_(std::move(path)) {}

    [[nodiscard]] const std::string& path() const noexcept { return path_; }

    void startAccessingSecurityScopedResource() const noexcept {}
    void stopAccessingSecurityScopedResource() const noexcept {}

private:
    std::string path_;
};

class GPSStorageAuthorization {
public:
    /// `authorizedBookmarkURLForPath:error:`. @return  none without a grant
    [[nodiscard]] static std::optional<SecurityScopedURL>
    authorizedBookmarkURLForPath(const std::string& path);
};

} // namespace gps
