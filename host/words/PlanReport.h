// SPDX-License-Identifier: MIT
// A send in words: what it will do, and what it did. Used by `send`. Stateless. [any]

#pragma once

#include "host/transfer/Send.h"

#include <string>
#include <vector>

namespace host {

/// The plan, one line for each file, each changed text, each loss and each remark of the driver.
/// Files below the device's location are shown relative to it.
[[nodiscard]] std::string planReport(const PreparedSend& send);

/// The routes and tracks that a send leaves out, because they have no points.
[[nodiscard]] std::vector<std::string> emptyRecordErrors(const PreparedSend& send);

/// What is wrong with a plan: files that cannot be written, and files whose present content would
/// be lost.
[[nodiscard]] std::vector<std::string> planErrors(const PreparedSend& send);

/// What went wrong in a send, in the order in which it happened, and then which files are new and
/// which are as before. Empty if the send is complete.
[[nodiscard]] std::vector<std::string> sendErrors(const SendReport& report,
                                                  const PreparedSend& send);

/// The files that are not as planned and yet hold what was sent: tracks under other names, and
/// files that another program has changed, too.
[[nodiscard]] std::vector<std::string> writingNotes(const SendReport& report,
                                                    const PreparedSend& send);

/// "2 waypoints, 1 geocache"; "no records" for none.
[[nodiscard]] std::string dataSummary(const gps::Dictionary& data);

/// What was sent, in one line. Precondition: the send is complete and had data.
[[nodiscard]] std::string sentSummary(const PreparedSend& send);

} // namespace host
