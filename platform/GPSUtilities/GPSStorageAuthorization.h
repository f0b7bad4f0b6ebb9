// SPDX-License-Identifier: MIT
// The user's authorization to access a volume. Linux only has file permissions: every path is
// authorized here, and a lack of permission shows when a file is read. [host thread]

#pragma once

#include <optional>
#include <string>
#include <utility>

namespace gps {

/// A path whose use must be bracketed by the two functions below.
class SecurityScopedURL {
public:
    explicit SecurityScopedURL(std::string path) : path_(std::move(path)) {}

    [[nodiscard]] const std::string& path() const noexcept { return path_; }

    void startAccessingSecurityScopedResource() const noexcept {} ///< does nothing on Linux
    void stopAccessingSecurityScopedResource() const noexcept {}  ///< does nothing on Linux

private:
    std::string path_;
};

class GPSStorageAuthorization {
public:
    /// `authorizedBookmarkURLForPath:error:`: nullopt without authorization. [host thread]
    [[nodiscard]] static std::optional<SecurityScopedURL>
    authorizedBookmarkURLForPath(const std::string& path);
};

} // namespace gps
