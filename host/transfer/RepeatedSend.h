// SPDX-License-Identifier: MIT
// performRepeatedly(): performs a send, and plans it again as often as another program changes the
// device before anything is written. For front ends that cannot ask the user whether the new plan
// is right, too. [host thread]

#pragma once

#include "host/transfer/Send.h"

#include <functional>
#include <optional>

namespace host {

/// What a repeated send needs from its front end.
struct RepeatedSendCalls {
    /// Reads what is to be sent, as it is now: the data of an earlier plan is fitted to what the
    /// device held then.
    std::function<std::optional<gps::Error>(std::optional<gps::Dictionary>& data)> readData;
    /// Called with the report of a send that was outdated, before it is planned again. Can be
    /// empty.
    std::function<void(const SendReport& outdated)> onOutdated{};
    /// Called with each new plan, before it is performed. Can be empty.
    std::function<void(const PreparedSend& send)> onPlan{};
};

/// Performs a send with performSend(), three times at most, because another program may not come to
/// an end.
/// @param send  in: the first plan. out: the plan that the report is of
[[nodiscard]] SendReport performRepeatedly(PreparedSend& send, const RepeatedSendCalls& calls);

} // namespace host
