// SPDX-License-Identifier: MIT
// A driver without a session control cannot be asked, so the host leaves it at once.

#include "host/transfer/OperationWatch.h"

#include <utility>

namespace host {

OperationWatch::OperationWatch(gps::GPSPlugInProtocol& driver, StopQuery stopRequested,
                               Listening listening)
    : control_(dynamic_cast<gps::GPSSessionControl*>(&driver)),
      account_(listening != Listening::kNone ? dynamic_cast<gps::GPSTransferAccount*>(&driver)
                                             : nullptr),
      stopRequested_(std::move(stopRequested)), listening_(listening)
{}

bool OperationWatch::waits(Clock::time_point now)
{
    // The user's request overrides the deadline for position sentences, which may be none.
    if (!isStoppedByUser_ && stopRequested_ && stopRequested_()) {
        isStoppedByUser_ = true;
        deadline_ = now + kClosePatience;
    } else if (!deadline_ && isNmeaTooLong(now)) {
        deadline_ = listening_ == Listening::kAndLeave ? now + kNmeaClosePatience
                                                       : Clock::time_point::max();
    }
    if (!deadline_)
        return true;
    if (control_ == nullptr)
        return false;
    control_->requestStop(); // again and again: it has no effect before the operation runs
    return now < *deadline_;
}

bool OperationWatch::isNmeaTooLong(Clock::time_point now)
{
    if (account_ == nullptr || account_->lineVoice() != gps::LineVoice::kNmea) {
        nmeaSince_.reset();
        return false;
    }
    nmeaSince_ = nmeaSince_.value_or(now);
    return now - *nmeaSince_ >= kNmeaPatience;
}

} // namespace host
