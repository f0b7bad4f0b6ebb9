// SPDX-License-Identifier: MIT
// RefusedFile: reads a receiver's file that a driver does not import although it knows the format.
// An import decides by the first sentence, and in files of routes the waypoints of the routes may
// come first. Used by downloads. [any]

#pragma once

#include <gps/GPSFileDevice.h>
#include <gps/GPSTransferAccount.h>
#include <gps/Value.h>

#include <string>

namespace host {

struct RefusedFile {
    gps::Dictionary data{};     ///< the records, as for a send; empty if the driver decodes none
    gps::FileAccount account{}; ///< of the file's lines; a valid sentence counts as accepted
};

/// Reads a file and lets a driver decode its content.
[[nodiscard]] RefusedFile decodeRefusedFile(const gps::GPSFileDevice& decoder,
                                            const std::string& path);

} // namespace host
