// SPDX-License-Identifier: MIT
// The errors that the plug-in makes itself, with their texts in the user's language. Stateless:
// [any] thread.

#pragma once

#include <gps/Error.h>

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

namespace magellan {

inline constexpr char kErrorDomain[] = "com.Orvane.GPSPlugin.ErrorDomain";

/// Whom the log names for failures with a receiver's files, whichever driver's operation met them.
inline constexpr char kFilesLogSource[] = "MagellanGPSPlugin";

enum class ErrorCode : std::int32_t {
    kNoDevice = -1,
    kSerialPort = -1,
    kDeviceDataMissing = -2,
    kReadFailed = -3,
    kSessionInterrupted = -4,
    kImportRefused = -5,
};

/// The recovery suggestion of everything that may be put right by plugging a receiver in again.
inline constexpr char kSuggestMounting[] =
    "Please make sure your Magellan device is connected and mounted on the desktop, and try again";

/// A text in the user's language with its "%@" filled in.
[[nodiscard]] std::string filledText(std::string_view text, std::string_view value);

/// An error with its description and suggestion, each the key of its own translation.
/// @param description  a text that has no translation stands as it is
/// @param path         the file or volume concerned, if there is one
[[nodiscard]] gps::Error makeError(ErrorCode code, std::string_view description,
                                   std::string_view suggestion,
                                   const std::optional<std::string>& path = std::nullopt);

/// What a reader has thrown, as an error about the file.
[[nodiscard]] gps::Error makeThrownError(const std::exception& failure, const std::string& path);

} // namespace magellan
