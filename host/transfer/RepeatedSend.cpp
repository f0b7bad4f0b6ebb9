// SPDX-License-Identifier: MIT
// A new plan needs the device's lock, which the plan before it holds.

#include "host/transfer/RepeatedSend.h"

#include <utility>

namespace host {
namespace {

constexpr int kMostPlans = 3;

bool planAgain(const RepeatedSendCalls& calls, PreparedSend& send, SendReport& report)
{
    if (!report.isOutdated || send.request.isStopRequested())
        return false;
    auto device = send.device;
    auto request = send.request;
    if (auto failure = calls.readData(request.data)) {
        report.obstacle = std::move(failure);
        return false;
    }
    if (calls.onOutdated)
        calls.onOutdated(report);
    send = {}; // a second lock of the device would find the first one
    send = prepareSend(std::move(device), std::move(request));
    if (calls.onPlan)
        calls.onPlan(send);
    return true;
}

} // namespace

SendReport performRepeatedly(PreparedSend& send, const RepeatedSendCalls& calls)
{
    auto report = performSend(send);
    for (int plans = 1; plans < kMostPlans && planAgain(calls, send, report); ++plans)
        report = performSend(send);
    return report;
}

} // namespace host
