// SPDX-License-Identifier: MIT
// Measures how close a serial download comes to the speed of the line. A simulated receiver paces
// its line to 115200 bit/s; the time of the data phases is compared with the time that their bytes
// need on the line: sentences, acknowledgements and commands. Then the same without pacing:
// sentences per second and processor time per sentence.
//
//     serial_bench [SENTENCES]        default: 10,000

#include "ThreadTime.h"

#include <gps/GPSOutputReceiver.h>
#include <gps/NumberText.h>
#include <gps/Value.h>
#include <plugin/serialdevice/MagellanSerialGPSPlugin.h>
#include <tools/simulator/Receiver.h>

#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

namespace {

constexpr int kBitsPerByte = 10; // with start and stop bit
constexpr double kBitsPerSecond = 115200;
constexpr std::size_t kFrameSize = 6; // "$", "*", two digits, CR LF around a body

/// Counts records, and measures the worker's processor time from the first startTransfer to the
/// last endTransfer.
class Counting : public gps::GPSOutputReceiver {
public:
    void gpsStateChange(std::int32_t state) override
    {
        const std::lock_guard lock{mutex_};
        idle_ = state == 0;
        changed_.notify_all();
    }
    void startTransfer(gps::TransferKind) override
    {
        if (begin_ == 0)
            begin_ = bench::threadSeconds();
    }
    void endTransfer(gps::TransferKind) override { end_ = bench::threadSeconds(); }
    void newTrack(const gps::Dictionary&) override {}
    void trackPoint(const gps::GPSPoint&, const gps::Dictionary&) override { ++records; }
    void wayPoint(const gps::GPSPoint&, const gps::Dictionary&) override { ++records; }
    void newRoute(const gps::Dictionary&) override {}
    void startSending(std::string_view, gps::TransferKind) override {}
    void endSending(gps::TransferKind) override {}
    void error(const gps::Error&) override {}

    void waitUntilIdle()
    {
        std::unique_lock lock{mutex_};
        changed_.wait(lock, [this] { return idle_; });
    }
    [[nodiscard]] double workerSeconds() const { return end_ - begin_; }

    std::size_t records = 0;

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool idle_ = false;
    double begin_ = 0;
    double end_ = 0;
};

std::string twoDigits(std::size_t number)
{
    return {static_cast<char>('0' + number / 10 % 10), static_cast<char>('0' + number % 10)};
}

std::string joined(std::initializer_list<std::string_view> parts)
{
    std::string text;
    for (const auto part : parts)
        text += part;
    return text;
}

/// Half waypoints, half track points, as long as those of real receivers.
simulator::Sentences makeSentences(std::size_t count)
{
    simulator::Sentences sentences;
    for (std::size_t i = 0; i < count; ++i) {
        const auto minutes = joined({twoDigits(i / 100 % 60), ".", twoDigits(i), "345"});
        const auto position = joined({"46", minutes, ",N,007", minutes, ",E,"});
        const auto second = joined({twoDigits(i / 60 % 60), twoDigits(i % 60)});
        if (i % 2 == 0)
            sentences.waypoints.push_back(
                joined({"PMGNWPL,", position, "0000500,M,WPT", second, ",a place,a"}));
        else
            sentences.tracks.push_back(
                joined({"PMGNTRK,", position, "00500,M,12", second, ".00,A,DAY,010624"}));
    }
    return sentences;
}

struct DataPhases {
    double seconds = 0;
    std::size_t bytes = 0;     // on the line, in both directions
    std::size_t sentences = 0; // from the receiver
};

/// The data phases: from the first data command to the acknowledgement of the last END.
DataPhases dataPhasesOf(const simulator::Receiver& receiver)
{
    DataPhases phases;
    double begin = -1;
    std::size_t pending = 0; // bytes since the last END's acknowledgement
    for (const auto& entry : receiver.log()) {
        const bool isReceived = entry.kind == simulator::LogKind::kReceived;
        if (!isReceived && entry.kind != simulator::LogKind::kSent)
            continue;
        const std::size_t size = entry.text.size() + kFrameSize;
        if (begin < 0) {
            if (entry.text != "PMGNCMD,WAYPOINT")
                continue;
            begin = entry.seconds - static_cast<double>(size) * kBitsPerByte /
                                        kBitsPerSecond; // when its first byte left
        }
        pending += size;
        phases.sentences += !isReceived && !entry.text.starts_with("PMGNCSM") ? 1U : 0U;
        if (isReceived && entry.text == "PMGNCSM,3D") {
            phases.seconds = entry.seconds - begin;
            phases.bytes += std::exchange(pending, 0);
        }
    }
    return phases;
}

/// Runs one download. @return  whether all records arrived
bool run(std::size_t count, bool paced)
{
    const simulator::Receiver receiver{{.paced = paced, .sentences = makeSentences(count)}};
    const auto driver = std::make_shared<magellan::MagellanSerialGPSPlugin>();
    driver->setSerialPort(gps::Dictionary{{"location", receiver.path()}});
    const auto status = std::make_shared<Counting>();
    if (driver->gpsRunAcquire(status, {{"waypoints", true}, {"tracks", true}}))
        std::abort();
    status->waitUntilIdle();
    if (status->records != count) {
        std::fprintf(stderr, "only %zu of %zu records arrived\n", status->records, count);
        return false;
    }
    const auto phases = dataPhasesOf(receiver);
    if (paced) {
        const double wire = static_cast<double>(phases.bytes) * kBitsPerByte / kBitsPerSecond;
        std::printf(
            "paced:   %zu sentences, %zu bytes, %.2f s; the wire alone %.2f s; ratio %.4f\n",
            phases.sentences, phases.bytes, phases.seconds, wire, phases.seconds / wire);
    } else {
        std::printf("unpaced: %.0f sentences/s; %.1f microseconds of the driver's processor time a "
                    "sentence\n",
                    static_cast<double>(phases.sentences) / phases.seconds,
                    status->workerSeconds() * 1e6 / static_cast<double>(phases.sentences));
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    const auto wanted = argc > 1 ? gps::wholeInteger(argv[1]) : 10000;
    if (!wanted || *wanted <= 0) {
        std::fprintf(stderr, "usage: serial_bench [SENTENCES]\n");
        return EXIT_FAILURE;
    }
    const auto count = static_cast<std::size_t>(*wanted);
    return run(count, true) && run(count, false) ? EXIT_SUCCESS : EXIT_FAILURE;
}
