// SPDX-License-Identifier: MIT
// The user's authorization to access a volume. Linux only has file permissions: every path is
// authorized here, and a lack of permission shows when a file is read. [host thread]

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

namespace gps {

/// A path whose use must be bracketed by the two functions below. On Linux they only count.
class SecurityScopedURL {
public:
    explicit SecurityScopedURL(std::string path) : path_(std::move(path)) {}

    [[nodiscard]] const std::string& path() const noexcept { return path_; }

    void startAccessingSecurityScopedResource() const noexcept;
    void stopAccessingSecurityScopedResource() const noexcept;

private:
    std::string path_;
};

class GPSStorageAuthorization {
public:
    /// `authorizedBookmarkURLForPath:error:`: nullopt without authorization. [host thread]
    [[nodiscard]] static std::optional<SecurityScopedURL>
    authorizedBookmarkURLForPath(const std::string& path);

    /// How many brackets are open: for tests of their balance. [any]
    [[nodiscard]] static std::size_t openAccessCount() noexcept;
};

/// Accesses a path during its lifetime, if the user has authorized that. [host thread]
class AuthorizedPath {
public:
    explicit AuthorizedPath(const std::string& path)
        : url_(GPSStorageAuthorization::authorizedBookmarkURLForPath(path))
    {
        if (url_)
            url_->startAccessingSecurityScopedResource();
    }
    ~AuthorizedPath()
    {
        if (url_)
            url_->stopAccessingSecurityScopedResource();
    }
    AuthorizedPath(const AuthorizedPath&) = delete;
    AuthorizedPath& operator=(const AuthorizedPath&) = delete;

private:
    std::optional<SecurityScopedURL> url_;
};

} // namespace gps
