// SPDX-License-Identifier: MIT
// The errors that the plug-in itself creates, with texts in the user's language. Stateless. [any]

#pragma once

#include <gps/Error.h>

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

namespace magellan {

inline constexpr char kErrorDomain[] = "com.Orvane.GPSPlugin.ErrorDomain";

/// The log source of errors with a receiver's files, whichever driver's operation met them.
inline constexpr char kFilesLogSource[] = "MagellanGPSPlugin";

/// Codes in kErrorDomain. Two of them are equal: hosts tell these errors apart by their texts.
enum class ErrorCode : std::int32_t {
    kNoDevice = -1,
    kSerialPort = -1,
    kDeviceDataMissing = -2,
    kReadFailed = -3,
    kSessionInterrupted = -4,
    kImportRefused = -5,
};

/// The recovery suggestion for whatever reconnecting the receiver may solve.
inline constexpr char kSuggestMounting[] =
    "Please make sure your Magellan device is connected and mounted on the desktop, and try again";

/// Creates an error. Description and suggestion are translated if the string table has them.
/// @param path  the file or volume concerned, if any
[[nodiscard]] gps::Error makeError(ErrorCode code, std::string_view description,
                                   std::string_view suggestion,
                                   const std::optional<std::string>& path = std::nullopt);

/// Creates an error without a path. In its translated description, "%@" is replaced by `value`.
[[nodiscard]] gps::Error makeErrorAbout(ErrorCode code, std::string_view value,
                                        std::string_view description, std::string_view suggestion);

/// Converts an exception that a reader threw into an error about the file.
[[nodiscard]] gps::Error makeThrownError(const std::exception& failure, const std::string& path);

} // namespace magellan
