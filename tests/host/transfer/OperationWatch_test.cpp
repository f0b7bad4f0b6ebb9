// SPDX-License-Identifier: MIT

#include "host/transfer/OperationWatch.h"

#include "host/FakeDriver.h"

#include <gtest/gtest.h>

namespace {

using gps::LineVoice;
using host::OperationWatch;
using support::AccountingDriver;
using support::FakeDriver;
using Listening = OperationWatch::Listening;
using std::chrono::milliseconds;

constexpr milliseconds kInstant{1};

class OperationWatchTest : public testing::Test {
protected:
    [[nodiscard]] OperationWatch watch(gps::GPSPlugInProtocol& driver,
                                       Listening listening = Listening::kNone)
    {
        return {driver, [this] { return isStopRequested_; }, listening};
    }

    const OperationWatch::Clock::time_point start_{};
    AccountingDriver driver_;
    bool isStopRequested_ = false;
};

TEST_F(OperationWatchTest, WaitsForEverWithoutAReasonToStop)
{
    auto watch = this->watch(driver_, Listening::kAndLeave);
    EXPECT_TRUE(watch.waits(start_));
    EXPECT_TRUE(watch.waits(start_ + std::chrono::hours{9}));
    EXPECT_FALSE(driver_.isStopRequested);
    EXPECT_FALSE(watch.isStoppedByUser());
}

TEST_F(OperationWatchTest, UsersRequestStopsTheDriverWhichHasTimeToCloseDown)
{
    auto watch = this->watch(driver_);
    isStopRequested_ = true;
    EXPECT_TRUE(watch.waits(start_));
    EXPECT_TRUE(driver_.isStopRequested);
    EXPECT_TRUE(watch.isStoppedByUser());
    EXPECT_TRUE(watch.waits(start_ + OperationWatch::kClosePatience - kInstant));
    EXPECT_FALSE(watch.waits(start_ + OperationWatch::kClosePatience));
}

TEST_F(OperationWatchTest, DriverIsAskedAgainAsLongAsItRuns)
{
    auto watch = this->watch(driver_);
    isStopRequested_ = true;
    (void)watch.waits(start_);
    driver_.isStopRequested = false; // the operation began only now
    (void)watch.waits(start_ + kInstant);
    EXPECT_TRUE(driver_.isStopRequested);
}

TEST_F(OperationWatchTest, DriverThatCannotBeStoppedIsLeftAtOnce)
{
    FakeDriver driver;
    auto watch = this->watch(driver);
    EXPECT_TRUE(watch.waits(start_));
    isStopRequested_ = true;
    EXPECT_FALSE(watch.waits(start_));
    EXPECT_TRUE(watch.isStoppedByUser());
}

TEST_F(OperationWatchTest, PositionSentencesStopTheDriverAfterAWhile)
{
    driver_.voice = LineVoice::kNmea;
    auto watch = this->watch(driver_, Listening::kAndLeave);
    EXPECT_TRUE(watch.waits(start_));
    EXPECT_TRUE(watch.waits(start_ + OperationWatch::kNmeaPatience - kInstant));
    EXPECT_FALSE(driver_.isStopRequested);
    const auto asked = start_ + OperationWatch::kNmeaPatience;
    EXPECT_TRUE(watch.waits(asked));
    EXPECT_TRUE(driver_.isStopRequested);
    EXPECT_FALSE(watch.isStoppedByUser());
    EXPECT_TRUE(watch.waits(asked + OperationWatch::kNmeaClosePatience - kInstant));
    EXPECT_FALSE(watch.waits(asked + OperationWatch::kNmeaClosePatience));
}

TEST_F(OperationWatchTest, NmeaIsLeftWithinTenSeconds)
{
    EXPECT_LT(OperationWatch::kNmeaPatience + OperationWatch::kNmeaClosePatience,
              std::chrono::seconds{10});
}

TEST_F(OperationWatchTest, AnswerInTimeEndsTheSuspicion)
{
    driver_.voice = LineVoice::kNmea;
    auto watch = this->watch(driver_, Listening::kAndLeave);
    (void)watch.waits(start_);
    driver_.voice = LineVoice::kReceiver;
    EXPECT_TRUE(watch.waits(start_ + OperationWatch::kNmeaPatience));
    driver_.voice = LineVoice::kNmea;
    EXPECT_TRUE(watch.waits(start_ + OperationWatch::kNmeaPatience * 2));
    EXPECT_FALSE(driver_.isStopRequested);
}

TEST_F(OperationWatchTest, DriverThatIsUsedAgainIsWaitedFor)
{
    driver_.voice = LineVoice::kNmea;
    auto watch = this->watch(driver_, Listening::kAndWait);
    (void)watch.waits(start_);
    EXPECT_TRUE(watch.waits(start_ + OperationWatch::kNmeaPatience));
    EXPECT_TRUE(driver_.isStopRequested);
    EXPECT_TRUE(watch.waits(start_ + std::chrono::hours{9}));
}

TEST_F(OperationWatchTest, VoiceMeansNothingWithoutASerialLine)
{
    driver_.voice = LineVoice::kNmea;
    auto watch = this->watch(driver_);
    (void)watch.waits(start_);
    EXPECT_TRUE(watch.waits(start_ + std::chrono::hours{9}));
    EXPECT_FALSE(driver_.isStopRequested);
}

} // namespace
