// SPDX-License-Identifier: MIT
// A serial line on a mocked device, which can delay output like a real one.

#include "../Testbed.h"

#include <platform/OrvUtils/OrvSerial.h>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>

#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace gps {
namespace {

constexpr char kPortPath[] = "/dev/ttyUSB0";

class SlowLineTest : public testing::Test {
protected:
    SlowLineTest()
    {
        testbed_.add(
            "P: /devices/pci0/tty/ttyUSB0\nN: ttyUSB0\nE: SUBSYSTEM=tty\nE: DEVNAME=/dev/ttyUSB0\n"
            "E: MAJOR=188\nE: MINOR=0\nA: dev=188:0\\n\n");
        receiver_ = umockdev_testbed_get_dev_fd(testbed_.get(), kPortPath);
        g_signal_connect(device_, "handle-ioctl", G_CALLBACK(&SlowLineTest::answer), this);
        EXPECT_TRUE(umockdev_testbed_attach_ioctl(testbed_.get(), kPortPath, device_, nullptr));
    }
    ~SlowLineTest() override
    {
        serial_->close();
        umockdev_testbed_detach_ioctl(testbed_.get(), kPortPath, nullptr);
        g_object_unref(device_);
    }

    /// Answers the ioctl requests to the device. [umockdev's thread]
    static gboolean answer(UMockdevIoctlBase* /*device*/, UMockdevIoctlClient* client,
                           SlowLineTest* test)
    {
        if (umockdev_ioctl_client_get_request(client) != TIOCOUTQ)
            return FALSE;
        const int waiting = test->queriesUntilEmpty_ > 0 ? 1 : 0;
        if (waiting != 0)
            --test->queriesUntilEmpty_;
        ++test->queries_;
        test->speedWhileWaiting_ = test->speed();
        auto* const number = umockdev_ioctl_data_resolve(umockdev_ioctl_client_get_arg(client), 0,
                                                         sizeof waiting, nullptr);
        auto copy = waiting;
        umockdev_ioctl_data_update(number, 0, reinterpret_cast<guint8*>(&copy), sizeof copy);
        umockdev_ioctl_data_unref(number);
        umockdev_ioctl_client_complete(client, 0, 0);
        return TRUE;
    }

    [[nodiscard]] speed_t speed() const
    {
        termios present{};
        ::tcgetattr(receiver_, &present);
        return ::cfgetospeed(&present);
    }

    support::Testbed testbed_;
    UMockdevIoctlBase* device_ = umockdev_ioctl_base_new();
    int receiver_ = -1;
    std::unique_ptr<OrvSerial> serial_ = OrvSerial::create();
    std::atomic<int> queriesUntilEmpty_{0};
    std::atomic<int> queries_{0};
    std::atomic<speed_t> speedWhileWaiting_{B0};
};

TEST_F(SlowLineTest, ASpeedIsChangedAfterTheOutputWasSent)
{
    ASSERT_EQ(serial_->openWithDevicePath(kPortPath), 0);
    queriesUntilEmpty_ = 5;
    serial_->setBaudRate(9600);
    EXPECT_EQ(queries_, 6);
    EXPECT_EQ(speedWhileWaiting_, speed_t{B4800});
    EXPECT_EQ(speed(), speed_t{B9600});
}

TEST_F(SlowLineTest, ALineThatIsStuckDoesNotBlockAChangeOfSpeed)
{
    ASSERT_EQ(serial_->openWithDevicePath(kPortPath), 0);
    queriesUntilEmpty_ = 1'000'000'000;
    serial_->setBaudRate(9600);
    EXPECT_EQ(speedWhileWaiting_, speed_t{B4800});
    EXPECT_EQ(speed(), speed_t{B9600});
}

} // namespace
} // namespace gps
