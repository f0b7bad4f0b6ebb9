// SPDX-License-Identifier: MIT
// Error: the result of an operation that failed. Operations return std::optional<Error>; nullopt
// means success. RangeError is the one exception of a driver's own that reaches a host. Plain
// values: each thread may hold its own [any].

#pragma once

#include <gps/Value.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace gps {

/// The domain of errors with files and folders.
inline constexpr char kFileErrorDomain[] = "NSCocoaErrorDomain";

/// Keys of an error's user information. All values are strings, except for the underlying error.
inline constexpr char kErrorDescriptionKey[] = "NSLocalizedDescription";
inline constexpr char kErrorSuggestionKey[] = "NSLocalizedRecoverySuggestion";
inline constexpr char kErrorPathKey[] = "NSFilePath";
/// The operating system's text for an errno.
inline constexpr char kErrorReasonKey[] = "NSLocalizedFailureReason";
/// A dictionary of "domain", "code" and "userInfo".
inline constexpr char kErrorUnderlyingKey[] = "NSUnderlyingError";

/// A domain, a code that is unique in it, and a dictionary of details for the user.
class Error {
public:
    Error(std::string domain, std::int32_t code, Dictionary userInfo = {});

    [[nodiscard]] const std::string& domain() const noexcept { return domain_; }
    [[nodiscard]] std::int32_t code() const noexcept { return code_; }
    [[nodiscard]] const Dictionary& userInfo() const noexcept { return userInfo_; }

    /// The string under the key of that name; nullopt if it is missing.
    [[nodiscard]] std::optional<std::string> description() const;
    [[nodiscard]] std::optional<std::string> suggestion() const;
    [[nodiscard]] std::optional<std::string> path() const;

    /// A copy of this error with another one stored as its underlying error.
    [[nodiscard]] Error causedBy(const Error& underlying) const;

    /// The error as one log line: domain, code and user information.
    [[nodiscard]] std::string text() const;

    friend bool operator==(const Error& a, const Error& b) noexcept = default;

private:
    std::string domain_;
    std::int32_t code_;
    Dictionary userInfo_;
};

/// The domain of errors, all with code 0, that report a thrown exception.
inline constexpr char kRangeErrorDomain[] = "RangeError";

/// Thrown for a sentence of the right kind that has too few fields. It leaves a driver only through
/// a file import, after the import has reported its end.
class RangeError : public std::out_of_range {
public:
    /// @param sentence  the sentence's name, such as "PMGNTRK"
    /// @param field     the index of the missing field, from 0
    /// @param count     the number of fields that the sentence has
    RangeError(std::string_view sentence, std::size_t field, std::size_t count);
};

} // namespace gps
