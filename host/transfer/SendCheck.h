// SPDX-License-Identifier: MIT
// Checks what a send did, since a driver's worker reports only which kinds it has sent. Used by
// performSend(). Stateless. [any]

#pragma once

#include "host/operations/Operation.h"

#include <gps/GPSFileDevice.h>

#include <string>
#include <vector>

namespace host {

/// One planned file after a send.
struct SentFile {
    enum class Result {
        kWritten,        ///< holds exactly what was planned
        kMissing,        ///< does not exist
        kUnreadable,     ///< exists but cannot be read
        kDifferent,      ///< holds something else
        kBlocked,        ///< could not be written, as the plan said
        kNothingToWrite, ///< was not to be written, as the plan said
    };

    std::string path;
    Result result;
};

/// The kinds of records in a data dictionary, in the order in which they are sent.
[[nodiscard]] std::vector<gps::TransferKind> kindsIn(const gps::Dictionary& data);

/// Reads each file that was to be written and compares it with the plan, byte for byte.
[[nodiscard]] std::vector<SentFile> checkFiles(const gps::SendPlan& plan);

/// Whether a driver logs an error that the plan already contains: a file to be created could not be
/// read before the send, or the present content of a file to be merged cannot be read.
[[nodiscard]] bool isExpected(const gps::Error& logged, const gps::SendPlan& plan);

} // namespace host
