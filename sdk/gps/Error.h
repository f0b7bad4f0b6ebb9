// SPDX-License-Identifier: MIT
// Error: what an operation that can fail answers, as std::optional<Error> with none for success;
// and RangeError, the one exception that may cross the boundary between a host and a driver. Plain
// values: any thread may hold its own.

#pragma once

#include <gps/Value.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace gps {

/// The domain of errors that the operating system's files and folders give.
inline constexpr char kFileErrorDomain[] = "NSCocoaErrorDomain";

/// Keys of an error's user information.
inline constexpr char kErrorDescriptionKey[] = "NSLocalizedDescription";
inline constexpr char kErrorSuggestionKey[] = "NSLocalizedRecoverySuggestion";
inline constexpr char kErrorPathKey[] = "NSFilePath";
inline constexpr char kErrorReasonKey[] =
    "NSLocalizedFailureReason"; ///< the system's own text, as errno has it
inline constexpr char kErrorUnderlyingKey[] =
    "NSUnderlyingError"; ///< a dictionary: "domain", "code", "userInfo"

class Error {
public:
    Error(std::string domain, std::int32_t code, Dictionary userInfo = {});

    [[nodiscard]] const std::string& domain() const noexcept { return domain_; }
    [[nodiscard]] std::int32_t code() const noexcept { return code_; }
    [[nodiscard]] const Dictionary& userInfo() const noexcept { return userInfo_; }

    [[nodiscard]] std::optional<std::string> description() const;
    [[nodiscard]] std::optional<std::string> suggestion() const;
    [[nodiscard]] std::optional<std::string> path() const;

    /// This error with another one noted as its cause.
    [[nodiscard]] Error causedBy(const Error& underlying) const;

    /// One line for a log: domain, code, user information.
    [[nodiscard]] std::string text() const;

    friend bool operator==(const Error& a, const Error& b) noexcept = default;

private:
    std::string domain_;
    std::int32_t code_;
    Dictionary userInfo_;
};

/// The domain, with the code 0, under which a failure that was thrown is told of as an error.
inline constexpr char kRangeErrorDomain[] = "RangeError";

/// A sentence of the right kind that has too few fields. Leaves a driver only through a file
/// import, after the import has reported its end.
class RangeError : public std::out_of_range {
public:
    /// @param sentence  the sentence's name, as "PMGNTRK"
    /// @param field     the position that was wanted, from 0
    /// @param count     how many fields there are
    RangeError(std::string_view sentence, std::size_t field, std::size_t count);
};

} // namespace gps
