// SPDX-License-Identifier: MIT

#include "host/cli/Progress.h"

#include "host/operations/Operation.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace host {
namespace {

constexpr std::chrono::milliseconds kPause{200};

constexpr char kBegin[] = "\r\033[?7l";   // a narrow terminal cuts the line instead of wrapping it
constexpr char kEnd[] = "\033[K\033[?7h"; // what a longer line left is wiped
constexpr char kClear[] = "\r\033[K";

std::string rate(std::uint64_t count, std::chrono::milliseconds time)
{
    return std::to_string(
        count * 1000 /
        static_cast<std::uint64_t>(std::max(time.count(), std::chrono::milliseconds::rep{1})));
}

std::string bytes(std::uint64_t count)
{
    if (count < 1000)
        return std::to_string(count) + " bytes";
    const std::uint64_t unit = count < 1000000 ? 1000 : 1000000;
    return std::to_string(count / unit) + '.' + std::to_string(count / (unit / 10) % 10) +
           (unit == 1000 ? " kB" : " MB");
}

std::uint64_t bytesOf(const gps::SerialTraffic& traffic)
{
    return traffic.bytesRead + traffic.bytesWritten;
}

} // namespace

std::string progressText(const Advance& advance)
{
    std::string text{advance.phase};
    const auto& line = advance.line;
    const auto records =
        std::to_string(advance.records) + (advance.records == 1 ? " record" : " records");
    const auto speed = " at " + std::to_string(line.bitsPerSecond) + " bit/s";
    if (line.bitsPerSecond == 0)
        return advance.records == 0 ? text
                                    : text + ": " + records + ", " +
                                          rate(advance.records, advance.time) + " records/s";
    if (advance.records == 0)
        return text + ": " + std::to_string(advance.time.count() / 1000) + " s, " +
               bytes(bytesOf(line)) + speed;
    return text + ": " + records + ", " + bytes(bytesOf(line)) + "; " +
           rate(line.linesRead, advance.time) + " sentences/s, " +
           rate(bytesOf(line), advance.time) + " bytes/s" + speed;
}

bool wantsProgress(const GlobalOptions& options, bool usesStandardOutput)
{
    const char* const terminal = std::getenv("TERM");
    if (terminal != nullptr && terminal == std::string_view{"dumb"})
        return false; // one that cannot print over a line
    const bool printsMeanwhile = options.events || usesStandardOutput;
    return !options.quiet && !options.verbose && ::isatty(STDERR_FILENO) == 1 &&
           !(printsMeanwhile && ::isatty(STDOUT_FILENO) == 1);
}

// Opened anew, since not to wait is a matter of the description, and others hold the one that the
// program was given.
Progress::Progress(bool isShown)
    : terminal_(isShown ? ::open("/proc/self/fd/2", O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)
                        : -1)
{}

Progress::~Progress()
{
    if (terminal_ >= 0)
        ::close(terminal_);
}

void Progress::begin(std::string_view phase)
{
    isSerial_ = false;
    enter(phase);
    print();
}

void Progress::show(const EventBatch& batch)
{
    if (terminal_ < 0)
        return;
    for (const auto& event : batch)
        take(event);
    if (Clock::now() >= next_)
        print();
}

void Progress::take(const Event& event)
{
    if (event.kind == EventKind::kStartTransfer || event.kind == EventKind::kStartSending)
        enter(kindName(event.transfer));
    else if (event.kind == EventKind::kEndTransfer && isSerial_)
        enter("waiting for the receiver");
    else if (event.kind == EventKind::kTrackPoint || event.kind == EventKind::kWayPoint)
        ++records_;
}

void Progress::enter(std::string_view phase)
{
    phase_ = phase;
    records_ = 0;
    before_ = gps::serialTraffic();
    entered_ = Clock::now();
}

void Progress::print()
{
    if (terminal_ < 0)
        return;
    const auto now = Clock::now();
    next_ = now + kPause;
    auto line = gps::serialTraffic();
    line.bytesRead -= before_.bytesRead;
    line.bytesWritten -= before_.bytesWritten;
    line.linesRead -= before_.linesRead;
    isSerial_ = isSerial_ || bytesOf(line) > 0;
    if (!isSerial_)
        line = {};
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(now - entered_);
    const auto text = kBegin + progressText({phase_, records_, line, time}) + kEnd;
    (void)!::write(terminal_, text.data(), text.size());
}

void Progress::clear() const
{
    if (terminal_ >= 0)
        (void)!::write(terminal_, kClear, sizeof kClear - 1);
}

} // namespace host
