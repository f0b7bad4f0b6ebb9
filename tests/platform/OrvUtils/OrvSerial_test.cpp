// SPDX-License-Identifier: MIT
// The serial port on real pseudo-terminals; `receiver_` is their far end. tcdrain() is replaced in
// this program, because no signal can be timed to interrupt it.

#include <gps/NumberText.h>
#include <platform/OrvUtils/OrvSerial.h>
#include <platform/OrvUtils/SerialTraffic.h>
#include <support/Alarms.h>
#include <support/AsNobody.h>
#include <support/PseudoTerminal.h>
#include <support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>

namespace {

/// The errno values that the next calls of tcdrain() fail with, last one first.
std::vector<int> drainFailures;
int drainCalls = 0;

} // namespace

/// Replaces the system's function: the dynamic linker prefers a symbol that the program itself
/// exports.
extern "C" [[gnu::visibility("default")]] int tcdrain(int file)
{
    ++drainCalls;
    if (drainFailures.empty())
        return ::ioctl(file, TCSBRK, 1); // what the C library does
    errno = drainFailures.back();
    drainFailures.pop_back();
    return -1;
}

namespace gps {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using support::Alarms;
using support::PseudoTerminal;

constexpr float kLong = 30; ///< seconds, for input that is sure to arrive
constexpr float kShort = 0.05F;

int open(OrvSerial& serial, const PseudoTerminal& terminal)
{
    return serial.openWithDevicePath(terminal.path().c_str());
}

/// Whether another program, without privileges, can open the line without asking for a lock.
bool opensForOthers(const PseudoTerminal& terminal)
{
    const support::AsNobody nobody;
    const int line = ::open(terminal.path().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    const bool opened = line >= 0;
    if (opened)
        ::close(line);
    return opened;
}

/// Locks settings of the line, so that later changes have no effect. @return  false if that is not
/// permitted
bool keepSettings(const PseudoTerminal& terminal, tcflag_t controlFlags)
{
    termios kept{};
    kept.c_cflag = controlFlags;
    return ::ioctl(terminal.otherProgram(), TIOCSLCKTRMIOS, &kept) == 0;
}

/// A text in which no position looks like its neighbours.
std::string textOf(std::size_t size)
{
    std::string text;
    while (text.size() < size)
        text += std::to_string(text.size()) + ",";
    text.resize(size);
    return text;
}

class OrvSerialTest : public testing::Test {
protected:
    OrvSerialTest() { ::chmod(receiver_.path().c_str(), 0666); }

    [[nodiscard]] std::optional<std::string> readLine(float timeout = kLong) const
    {
        return serial_->readStringTo("\r\n", timeout);
    }
    void send(std::string_view text) const { serial_->sendString(text, StringEncoding::kASCII); }

    PseudoTerminal receiver_;
    std::unique_ptr<OrvSerial> serial_ = OrvSerial::create();
};

/// With the line open.
class OpenOrvSerial : public OrvSerialTest {
protected:
    OpenOrvSerial() { EXPECT_EQ(open(*serial_, receiver_), 0); }
};

/// A receiver that sends the same piece repeatedly until finish() is called (or for half a
/// minute), and then a line end.
class Chatter {
public:
    Chatter(const PseudoTerminal& receiver, std::string piece, std::chrono::milliseconds pause)
        : thread_(
              [this, &receiver, piece = std::move(piece), pause] { run(receiver, piece, pause); })
    {}
    ~Chatter()
    {
        finish();
        thread_.join();
    }
    Chatter(const Chatter&) = delete;
    Chatter& operator=(const Chatter&) = delete;

    void finish() { finished_ = true; }

private:
    void run(const PseudoTerminal& receiver, const std::string& piece,
             std::chrono::milliseconds pause) const
    {
        const auto end = std::chrono::steady_clock::now() + 30s;
        while (!finished_ && std::chrono::steady_clock::now() < end) {
            if (receiver.writeSome(piece) == 0 || pause > 0ms)
                std::this_thread::sleep_for(std::max(pause, 1ms));
        }
        receiver.write("end\r\n");
    }

    std::atomic<bool> finished_{false};
    std::thread thread_;
};

// Opening.

TEST_F(OrvSerialTest, OpensRawWithEightDataBitsNoParityOneStopBitAndNoFlowControl)
{
    termios left{};
    ::tcgetattr(receiver_.otherProgram(), &left);
    left.c_iflag |= tcflag_t{IXON | IXOFF | IXANY | INPCK | ISTRIP | ICRNL};
    left.c_cflag |= tcflag_t{CSTOPB | CRTSCTS};
    left.c_cflag &= ~tcflag_t{CLOCAL};
    ::tcsetattr(receiver_.otherProgram(), TCSANOW, &left);

    ASSERT_EQ(open(*serial_, receiver_), 0);
    const termios present = receiver_.settings();
    EXPECT_EQ(present.c_cflag & tcflag_t{CSIZE | PARENB | CSTOPB | CRTSCTS | CLOCAL | CREAD},
              tcflag_t{CS8 | CLOCAL | CREAD});
    EXPECT_EQ(present.c_iflag &
                  tcflag_t{IXON | IXOFF | IXANY | INPCK | ISTRIP | ICRNL | INLCR | IGNCR},
              0U);
    EXPECT_EQ(present.c_lflag & tcflag_t{ICANON | ECHO | ISIG | IEXTEN}, 0U);
    EXPECT_EQ(present.c_oflag & tcflag_t{OPOST}, 0U);
}

TEST_F(OrvSerialTest, OpensAt4800WhenNoSpeedWasSet)
{
    ASSERT_EQ(open(*serial_, receiver_), 0);
    EXPECT_EQ(receiver_.speed(), speed_t{B4800});
}

TEST_F(OrvSerialTest, ASpeedSetWhileClosedAppliesToEachOpening)
{
    serial_->setBaudRate(57600);
    for (int i = 0; i < 2; ++i) {
        const PseudoTerminal another;
        ASSERT_EQ(open(*serial_, another), 0);
        EXPECT_EQ(another.speed(), speed_t{B57600});
        serial_->close();
    }
}

TEST_F(OrvSerialTest, APathThatIsNotASerialLineDoesNotOpen)
{
    const support::TemporaryFolder folder;
    ASSERT_EQ(::mkfifo(folder.path("fifo").c_str(), 0600), 0);
    const std::pair<std::string, int> paths[] = {
        {folder.put("file", "text\r\n"), ENOTTY},
        {folder.path(), EISDIR},
        {folder.path("fifo"), ENOTTY},
        {"/dev/null", ENOTTY},
        {folder.path("missing"), ENOENT},
        {folder.path("no/port"), ENOENT},
        {"", ENOENT},
    };
    for (const auto& [path, error] : paths) {
        EXPECT_EQ(serial_->openWithDevicePath(path.c_str()), error) << path;
        send("text");
        EXPECT_EQ(readLine(0), std::nullopt) << path;
    }
    EXPECT_EQ(folder.read("file"), "text\r\n");
}

TEST_F(OrvSerialTest, ALineWithoutPermissionDoesNotOpen)
{
    ::chmod(receiver_.path().c_str(), 0);
    const support::AsNobody nobody;
    EXPECT_EQ(open(*serial_, receiver_), EACCES);
}

TEST_F(OpenOrvSerial, CountsReceivedBytesWithOrWithoutALineEnd)
{
    EXPECT_EQ(serial_->bytesReceived(), 0U);
    receiver_.write("line\r\n");
    EXPECT_EQ(readLine(), "line");
    EXPECT_EQ(serial_->bytesReceived(), 6U);
    receiver_.write("noise");
    receiver_.waitForInput();
    EXPECT_EQ(readLine(0), std::nullopt);
    EXPECT_EQ(serial_->bytesReceived(), 11U);
}

TEST_F(OpenOrvSerial, ASecondOpenerIsRejectedAndChangesNothing)
{
    serial_->setBaudRate(19200);
    receiver_.write("unread\r\n");
    receiver_.waitForInput();
    const auto second = OrvSerial::create();
    EXPECT_EQ(open(*second, receiver_), EBUSY);
    {
        const support::AsNobody nobody;
        EXPECT_EQ(open(*second, receiver_), EBUSY);
    }
    EXPECT_FALSE(opensForOthers(receiver_));
    EXPECT_EQ(receiver_.speed(), speed_t{B19200});
    EXPECT_EQ(readLine(), "unread");
}

TEST_F(OrvSerialTest, ALineThatAnotherProgramHasLockedIsBusy)
{
    ASSERT_EQ(::flock(receiver_.otherProgram(), LOCK_EX | LOCK_NB), 0);
    EXPECT_EQ(open(*serial_, receiver_), EBUSY);
    ASSERT_EQ(::flock(receiver_.otherProgram(), LOCK_UN), 0);
    ASSERT_EQ(::ioctl(receiver_.otherProgram(), TIOCEXCL), 0);
    const support::AsNobody nobody;
    EXPECT_EQ(open(*serial_, receiver_), EBUSY);
}

TEST_F(OpenOrvSerial, ClosingFreesTheLineForOthers)
{
    serial_->close();
    EXPECT_TRUE(opensForOthers(receiver_));
    const auto second = OrvSerial::create();
    EXPECT_EQ(open(*second, receiver_), 0);
}

TEST_F(OpenOrvSerial, DestroyingFreesTheLineForOthers)
{
    serial_.reset();
    EXPECT_TRUE(opensForOthers(receiver_));
    const auto second = OrvSerial::create();
    EXPECT_EQ(open(*second, receiver_), 0);
}

TEST_F(OrvSerialTest, ALineThatDoesNotAcceptASettingDoesNotOpenAndIsFreeForOthers)
{
    for (const auto kept : {tcflag_t{CBAUD}, tcflag_t{CSTOPB}}) {
        termios present{};
        ::tcgetattr(receiver_.otherProgram(), &present);
        present.c_cflag |= kept & tcflag_t{CSTOPB};
        ::tcsetattr(receiver_.otherProgram(), TCSANOW, &present);
        if (!keepSettings(receiver_, kept))
            GTEST_SKIP() << "fixing the settings of a line is not permitted";
        EXPECT_EQ(open(*serial_, receiver_), EINVAL);
        EXPECT_EQ(readLine(0), std::nullopt);
        EXPECT_TRUE(opensForOthers(receiver_));
        ASSERT_TRUE(keepSettings(receiver_, 0));
    }
    EXPECT_EQ(open(*serial_, receiver_), 0);
}

TEST_F(OrvSerialTest, OpeningDropsInputFromBefore)
{
    termios raw = receiver_.settings();
    ::cfmakeraw(&raw);
    ::tcsetattr(receiver_.otherProgram(), TCSANOW, &raw);
    receiver_.write("stale\r\n");
    receiver_.waitForInput();
    ASSERT_EQ(open(*serial_, receiver_), 0);
    receiver_.write("fresh\r\n");
    EXPECT_EQ(readLine(), "fresh");
}

TEST_F(OrvSerialTest, TheLineDoesNotBecomeTheControllingTerminal)
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::setsid();
        const bool opened = open(*serial_, receiver_) == 0;
        const bool controlled = ::open("/dev/tty", O_RDWR) >= 0;
        ::_exit(opened && !controlled ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST_F(OpenOrvSerial, TheLineIsNotInheritedByChildProcesses)
{
    int found = 0;
    for (const auto& entry : std::filesystem::directory_iterator{"/proc/self/fd"}) {
        std::error_code gone;
        if (std::filesystem::read_symlink(entry, gone) != receiver_.path())
            continue;
        ++found;
        const auto file = gps::wholeInteger(entry.path().filename().string());
        ASSERT_TRUE(file);
        EXPECT_EQ(::fcntl(static_cast<int>(*file), F_GETFD), FD_CLOEXEC);
    }
    EXPECT_EQ(found, 2); // the other program's descriptor and ours
}

TEST_F(OpenOrvSerial, OpeningAnotherLineClosesTheFirst)
{
    receiver_.write("first\r\nrest");
    EXPECT_EQ(readLine(), "first");
    const PseudoTerminal another;
    ASSERT_EQ(open(*serial_, another), 0);
    EXPECT_TRUE(opensForOthers(receiver_));
    another.write("second\r\n");
    EXPECT_EQ(readLine(), "second");
}

TEST_F(OpenOrvSerial, ReopeningDropsWhatWasReceivedBefore)
{
    receiver_.write("first\r\nrest");
    EXPECT_EQ(readLine(), "first");
    serial_->close();
    ASSERT_EQ(open(*serial_, receiver_), 0);
    receiver_.write("second\r\n");
    EXPECT_EQ(readLine(), "second");
}

// Closed.

TEST_F(OrvSerialTest, WhileClosedNothingIsSentOrRead)
{
    send("text\r\n");
    EXPECT_EQ(readLine(0), std::nullopt);
    EXPECT_EQ(readLine(kShort), std::nullopt);
    EXPECT_NO_THROW(serial_->close());
}

TEST_F(OpenOrvSerial, ClosingTwiceDoesNothing)
{
    receiver_.write("text\r\n");
    receiver_.waitForInput();
    serial_->close();
    serial_->close();
    EXPECT_EQ(readLine(0), std::nullopt);
}

// Speeds.

TEST_F(OpenOrvSerial, EachStandardSpeedTakesEffectAtOnce)
{
    constexpr std::pair<int, speed_t> kSpeeds[] = {
        {1200, B1200},   {2400, B2400},   {4800, B4800},     {9600, B9600}, {19200, B19200},
        {38400, B38400}, {57600, B57600}, {115200, B115200}, {0, B0},
    };
    for (const auto& [speed, seen] : kSpeeds) {
        serial_->setBaudRate(speed);
        EXPECT_EQ(receiver_.speed(), seen) << speed;
        EXPECT_EQ(serialTraffic().bitsPerSecond, speed);
    }
}

TEST_F(OpenOrvSerial, OtherSpeedsAreRejectedOpenOrClosed)
{
    for (const int speed : {-1, 1, 300, 1199, 1201, 4801, 14400, 115199, 115201, 230400}) {
        EXPECT_THROW(serial_->setBaudRate(speed), SerialFailure) << speed;
        EXPECT_EQ(receiver_.speed(), speed_t{B4800}) << speed;
    }
    serial_->close();
    EXPECT_THROW(serial_->setBaudRate(300), SerialFailure);
}

TEST_F(OpenOrvSerial, ASpeedThatTheOpenLineDoesNotAcceptThrows)
{
    if (!keepSettings(receiver_, CBAUD))
        GTEST_SKIP() << "fixing the settings of a line is not permitted";
    EXPECT_NO_THROW(serial_->setBaudRate(4800));
    EXPECT_THROW(serial_->setBaudRate(9600), SerialFailure);
}

TEST_F(OpenOrvSerial, ANewSpeedDropsInputThatTheSystemHolds)
{
    receiver_.write("stale\r\n");
    receiver_.waitForInput();
    serial_->setBaudRate(9600);
    receiver_.write("fresh\r\n");
    EXPECT_EQ(readLine(), "fresh");
}

TEST_F(OpenOrvSerial, ANewSpeedDropsInputThatWasReadAhead)
{
    receiver_.write("stale");
    EXPECT_EQ(readLine(kShort), std::nullopt);
    serial_->setBaudRate(9600);
    receiver_.write("fresh\r\n");
    EXPECT_EQ(readLine(), "fresh");
}

TEST_F(OpenOrvSerial, ANewSpeedDoesNotWaitForAReceiverThatNeverReads)
{
    send(std::string(3000, 'x'));
    serial_->setBaudRate(9600);
    EXPECT_EQ(receiver_.speed(), speed_t{B9600});
}

TEST_F(OpenOrvSerial, ANewSpeedKeepsWaitingForOutputAfterASignal)
{
    drainFailures = {EINTR, EINTR};
    drainCalls = 0;
    serial_->setBaudRate(9600);
    EXPECT_EQ(drainCalls, 3);
    EXPECT_EQ(receiver_.speed(), speed_t{B9600});
}

TEST_F(OpenOrvSerial, ANewSpeedDoesNotWaitForOutputOnALineThatCannotWait)
{
    drainFailures = {EINTR, EIO};
    drainCalls = 0;
    serial_->setBaudRate(9600);
    EXPECT_EQ(drainCalls, 1);
    drainFailures.clear();
}

// Sending.

TEST_F(OpenOrvSerial, SendsEveryByteUnchanged)
{
    std::string bytes = "$PMGNCMD,VERSION*28\r\n";
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    send(bytes);
    EXPECT_EQ(receiver_.read(bytes.size()), bytes);
}

TEST_F(OpenOrvSerial, ATextThatFillsTheLineArrivesWholeThroughInterruptions)
{
    const auto text = textOf(40'000); // the system buffers half of it
    std::string arrived;
    const Alarms alarms;
    std::thread reader{[&, before = Alarms::count.load()] {
        while (Alarms::count < before + 3)
            std::this_thread::sleep_for(1ms);
        arrived = receiver_.read(text.size());
    }};
    send(text);
    reader.join();
    EXPECT_EQ(arrived, text);
}

TEST_F(OpenOrvSerial, AReceiverThatNeverReadsDoesNotBlockASendAndTheNextReadThrows)
{
    receiver_.write("text\r\n");
    send(std::string(1'000'000, 'x'));
    EXPECT_THROW((void)readLine(), SerialFailure);
    send("more"); // returns at once: a line that failed is not tried again
    EXPECT_THROW((void)readLine(), SerialFailure);

    const PseudoTerminal another;
    ASSERT_EQ(open(*serial_, another), 0);
    another.write("text\r\n");
    EXPECT_EQ(readLine(), "text");
}

// Reading.

TEST_F(OpenOrvSerial, ReadsEachTextWithoutItsTerminatorInOrder)
{
    receiver_.write("$PMGNCSM,28*05\r\n\r\nb\r\n");
    EXPECT_EQ(readLine(), "$PMGNCSM,28*05");
    EXPECT_EQ(readLine(), "");
    EXPECT_EQ(readLine(), "b");
    EXPECT_EQ(readLine(kShort), std::nullopt);
}

TEST_F(OpenOrvSerial, OnlyTheWholeTerminatorEndsAText)
{
    receiver_.write("a\rb\nc\n\rd\r\r\n");
    EXPECT_EQ(readLine(), "a\rb\nc\n\rd\r");
    receiver_.write("one;two\r\n;");
    EXPECT_EQ(serial_->readStringTo(";", kLong), "one");
    EXPECT_EQ(serial_->readStringTo("\r\n;", kLong), "two");
}

TEST_F(OpenOrvSerial, NulAndEveryOtherByteIsData)
{
    std::string bytes = "a\0b\0"s;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    receiver_.write(bytes + "\r\n");
    EXPECT_EQ(readLine(), bytes);
}

TEST_F(OpenOrvSerial, ATextThatArrivesInPiecesIsReadWhole)
{
    const std::string sentence = "$PMGNCSM,28*05\r\n";
    for (std::size_t cut = 0; cut < sentence.size(); ++cut) {
        receiver_.write(sentence.substr(0, cut));
        EXPECT_EQ(readLine(0.005F), std::nullopt) << cut;
        receiver_.write(sentence.substr(cut));
        EXPECT_EQ(readLine(), sentence.substr(0, sentence.size() - 2)) << cut;
    }
}

TEST_F(OpenOrvSerial, ATextThatArrivesByteByByteWhileWaitingIsReadWhole)
{
    std::thread receiver{[this] {
        for (const char byte : "$PMGNCSM,28*05\r\nx"s) {
            receiver_.write({&byte, 1});
            std::this_thread::sleep_for(1ms);
        }
    }};
    EXPECT_EQ(readLine(), "$PMGNCSM,28*05");
    receiver.join();
}

TEST_F(OpenOrvSerial, WithoutATimeoutOnlyWhatHasArrivedIsRead)
{
    EXPECT_EQ(readLine(0), std::nullopt);
    EXPECT_EQ(readLine(-1), std::nullopt);
    receiver_.write("text\r\n");
    receiver_.waitForInput();
    EXPECT_EQ(readLine(0), "text");
}

TEST_F(OpenOrvSerial, OnlyTheEndOfATooLongTextIsRead)
{
    for (const std::size_t size : {4094U, 4095U, 4096U, 4097U, 4098U, 8192U, 100'000U}) {
        const auto text = textOf(size);
        std::thread receiver{[&] { receiver_.write(text + "\r\nnext\r\n"); }};
        EXPECT_EQ(readLine(), text.substr(size - std::min<std::size_t>(size, 4096))) << size;
        EXPECT_EQ(readLine(), "next") << size;
        receiver.join();
    }
}

TEST_F(OpenOrvSerial, TheEndOfATooLongTextIsKeptForTheNextRead)
{
    for (const std::size_t size : {4095U, 4096U, 4097U, 10'000U}) {
        const auto text = textOf(size);
        for (const std::string_view begun : {"", "\r"}) {
            std::thread receiver{[&] { receiver_.write(text + std::string{begun}); }};
            EXPECT_EQ(readLine(kShort), std::nullopt) << size;
            receiver.join();
            receiver_.write(std::string_view{"\r\n"}.substr(begun.size()));
            EXPECT_EQ(readLine(), text.substr(size - std::min<std::size_t>(size, 4096))) << size;
        }
    }
}

// A timeout that restarted with each byte would last until the line end arrives.
TEST_F(OpenOrvSerial, TheTimeoutCoversTheWholeReadHoweverMuchArrives)
{
    for (const auto& [piece, pause] : {std::pair{"x"s, 2ms}, {std::string(1000, 'x'), 0ms}}) {
        Chatter chatter{receiver_, piece, pause};
        EXPECT_EQ(readLine(0.1F), std::nullopt);
        chatter.finish();
        const auto rest = readLine();
        ASSERT_TRUE(rest);
        EXPECT_LE(rest->size(), 4096U);
        EXPECT_EQ(rest->substr(rest->size() - 3), "end");
    }
}

TEST_F(OpenOrvSerial, SignalsNeitherEndNorProlongARead)
{
    const Alarms alarms;
    const int before = Alarms::count;
    receiver_.write("half");
    while (Alarms::count < before + 3)
        EXPECT_EQ(readLine(kShort), std::nullopt);
    receiver_.write(" and half\r\n");
    EXPECT_EQ(readLine(), "half and half");
}

// Failures.

TEST_F(OpenOrvSerial, ALineThatFailsWhileWaitingThrows)
{
    std::thread hangUp{[this] {
        (void)receiver_.read(1);
        receiver_.hangUp();
    }};
    send("x");
    EXPECT_THROW((void)readLine(), SerialFailure);
    hangUp.join();
}

TEST_F(OpenOrvSerial, ALineThatHasFailedThrowsAtEachRead)
{
    receiver_.hangUp();
    for (const float timeout : {kLong, kLong, 0.0F})
        EXPECT_THROW((void)readLine(timeout), SerialFailure);
    serial_->close();
    EXPECT_EQ(readLine(), std::nullopt);
}

TEST_F(OpenOrvSerial, SendingOnALineThatHasFailedIsSilentAndTheNextReadThrows)
{
    receiver_.write("a\r\nb\r\n");
    EXPECT_EQ(readLine(), "a");
    receiver_.hangUp();
    EXPECT_NO_THROW(send("text\r\n"));
    EXPECT_THROW((void)readLine(), SerialFailure);
}

TEST_F(OpenOrvSerial, ANewSpeedOnALineThatHasFailedThrows)
{
    receiver_.hangUp();
    EXPECT_THROW(serial_->setBaudRate(9600), SerialFailure);
    EXPECT_THROW(serial_->setBaudRate(0), SerialFailure);
}

TEST_F(OpenOrvSerial, TheFailureNamesThePathAndTheReason)
{
    receiver_.hangUp();
    try {
        (void)readLine();
        FAIL();
    } catch (const SerialFailure& failure) {
        EXPECT_EQ(failure.what(), receiver_.path() + ": read: Input/output error");
    }
}

// Traffic.

TEST_F(OpenOrvSerial, TrafficOverTheLineIsCounted)
{
    const auto before = serialTraffic();
    send("12345");
    receiver_.write("a\r\nbc\r\nrest");
    EXPECT_EQ(readLine(), "a");
    EXPECT_EQ(readLine(), "bc");
    EXPECT_EQ(serial_->readStringTo("rest", kLong), "");
    const auto after = serialTraffic();
    EXPECT_EQ(after.bytesWritten - before.bytesWritten, 5U);
    EXPECT_EQ(after.bytesRead - before.bytesRead, 11U);
    EXPECT_EQ(after.linesRead - before.linesRead, 3U);
    EXPECT_EQ(after.bitsPerSecond, 4800);
}

TEST_F(OrvSerialTest, ASpeedIsReportedOnceALineRunsAtIt)
{
    ASSERT_EQ(open(*serial_, receiver_), 0);
    serial_->close();
    serial_->setBaudRate(19200);
    EXPECT_EQ(serialTraffic().bitsPerSecond, 4800);
    ASSERT_EQ(open(*serial_, receiver_), 0);
    EXPECT_EQ(serialTraffic().bitsPerSecond, 19200);
}

} // namespace
} // namespace gps
