// SPDX-License-Identifier: MIT
// Every call is passed on inside the one handler of passOn().

#include "GuardedStatus.h"

#include <platform/System/Log.h>

#include <cstdint>
#include <string_view>

namespace magellan {
namespace {

template <typename Call> void passOn(Call call)
{
    try {
        call();
    } catch (...) {
        throw StatusFailure{std::current_exception()};
    }
}

} // namespace

void GuardedStatus::endAfterFailure() noexcept
{
    try {
        gps::logLine("The host's status object threw an exception, so the operation has ended");
        if (!ended_)
            gpsStateChange(0);
    } catch (...) {
        return; // nobody is left to report it to
    }
}

void GuardedStatus::gpsStateChange(std::int32_t state)
{
    ended_ = state == 0;
    passOn([&] { status_.gpsStateChange(state); });
}

void GuardedStatus::startTransfer(gps::TransferKind kind)
{
    passOn([&] { status_.startTransfer(kind); });
}

void GuardedStatus::endTransfer(gps::TransferKind kind)
{
    passOn([&] { status_.endTransfer(kind); });
}

void GuardedStatus::newTrack(const gps::Dictionary& track)
{
    passOn([&] { status_.newTrack(track); });
}

void GuardedStatus::trackPoint(const gps::GPSPoint& point, const gps::Dictionary& extra)
{
    passOn([&] { status_.trackPoint(point, extra); });
}

void GuardedStatus::wayPoint(const gps::GPSPoint& point, const gps::Dictionary& extra)
{
    passOn([&] { status_.wayPoint(point, extra); });
}

void GuardedStatus::newRoute(const gps::Dictionary& route)
{
    passOn([&] { status_.newRoute(route); });
}

void GuardedStatus::startSending(std::string_view label, gps::TransferKind kind)
{
    passOn([&] { status_.startSending(label, kind); });
}

void GuardedStatus::endSending(gps::TransferKind kind)
{
    passOn([&] { status_.endSending(kind); });
}

void GuardedStatus::error(const gps::Error& error)
{
    passOn([&] { status_.error(error); });
}

} // namespace magellan
