// SPDX-License-Identifier: MIT
// Every call is passed on, and what it throws is wrapped.

#include <gps/Error.h>
#include <gps/GPSPoint.h>
#include <gps/Value.h>
#include <plugin/common/GuardedStatus.h>
#include <support/ActingReceiver.h>
#include <support/RecordingReceiver.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <exception>
#include <functional>
#include <vector>

namespace magellan {
namespace {

using testing::ElementsAre;

/// Every call of a status object, the end last.
const std::vector<std::function<void(gps::GPSOutputReceiver&)>> kCalls{
    [](auto& status) { status.gpsStateChange(1); },
    [](auto& status) { status.startTransfer(gps::TransferKind::kTracks); },
    [](auto& status) { status.endTransfer(gps::TransferKind::kRoutes); },
    [](auto& status) {
        status.newTrack({{"name", "T"}});
    },
    [](auto& status) {
        status.trackPoint({1, 2, 3, 4, 5}, {{"a", 1}});
    },
    [](auto& status) {
        status.wayPoint({5, 4, 3, 2, 1}, {{"b", 2}});
    },
    [](auto& status) {
        status.newRoute({{"name", "R"}});
    },
    [](auto& status) { status.startSending("Tracks", gps::TransferKind::kTracks); },
    [](auto& status) { status.endSending(gps::TransferKind::kWaypoints); },
    [](auto& status) {
        status.error(gps::Error{"domain", 7});
    },
    [](auto& status) { status.gpsStateChange(0); },
};

TEST(GuardedStatus, PassesEachCallOnUnchanged)
{
    support::RecordingReceiver direct;
    support::RecordingReceiver host;
    GuardedStatus guarded{host};
    for (const auto& call : kCalls) {
        call(direct);
        call(guarded);
    }
    EXPECT_EQ(host.calls(), direct.calls());
    EXPECT_EQ(host.calls().size(), kCalls.size());
}

TEST(GuardedStatus, WrapsWhatAnyCallThrowsSoThatItIsNotAStandardException)
{
    support::ActingReceiver host{"", [] { throw gps::RangeError{"PMGNTRK", 1, 1}; }};
    GuardedStatus guarded{host};
    for (const auto& call : kCalls) {
        try {
            call(guarded);
            ADD_FAILURE() << "nothing was thrown";
        } catch (const std::exception& failure) {
            ADD_FAILURE() << failure.what();
        } catch (const StatusFailure& failure) {
            EXPECT_THROW(std::rethrow_exception(failure.cause()), gps::RangeError);
        }
    }
}

TEST(GuardedStatus, ReportsTheEndAfterAFailureOnceAndDropsWhatThatThrows)
{
    support::ActingReceiver host{"", [] { throw 42; }};
    GuardedStatus guarded{host};
    EXPECT_THROW(guarded.gpsStateChange(1), StatusFailure);
    guarded.endAfterFailure();
    EXPECT_THAT(host.calls(), ElementsAre("gpsStateChange 1", "gpsStateChange 0"));
    guarded.endAfterFailure();
    EXPECT_THAT(host.calls(), ElementsAre("gpsStateChange 1", "gpsStateChange 0"));
}

} // namespace
} // namespace magellan
