// SPDX-License-Identifier: MIT
// Measures reading a file of 100,000 sentences: sentences per second, and the ratio to a plain loop
// that only XORs the bytes and finds the separators. Both are measured in turn in the same run, and
// both start by reading the same file.

#include "LargeFile.h"
#include "ThreadTime.h"

#include <gps/Error.h>
#include <gps/GPSOutputReceiver.h>
#include <gps/GPSPoint.h>
#include <gps/Value.h>
#include <platform/System/FileManager.h>
#include <plugin/fsdevice/DeviceFileReaders.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t kSentences = 100'000;

using Reader = std::optional<gps::Error> (*)(gps::GPSOutputReceiver& status,
                                             const std::string& path, gps::FileAccount* account);

class Counting : public gps::GPSOutputReceiver {
public:
    std::size_t records = 0;

    void gpsStateChange(std::int32_t) override {}
    void startTransfer(gps::TransferKind) override {}
    void endTransfer(gps::TransferKind) override {}
    void newTrack(const gps::Dictionary&) override {}
    void trackPoint(const gps::GPSPoint&, const gps::Dictionary&) override { ++records; }
    void wayPoint(const gps::GPSPoint&, const gps::Dictionary&) override { ++records; }
    void newRoute(const gps::Dictionary&) override {}
    void startSending(std::string_view, gps::TransferKind) override {}
    void endSending(gps::TransferKind) override {}
    void error(const gps::Error&) override {}
};

/// The least that reading sentences takes: a checksum over all bytes and the offsets of "," and CR
/// LF.
std::uint8_t plainLoop(std::string_view text, std::vector<std::uint32_t>& separators)
{
    separators.clear();
    std::uint8_t checksum = 0;
    for (std::uint32_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        checksum = static_cast<std::uint8_t>(checksum ^ static_cast<std::uint8_t>(c));
        if (c == ',' || (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n'))
            separators.push_back(i);
    }
    return checksum;
}

void readFile(benchmark::State& state, bench::Kind kind, Reader reader)
{
    const bench::LargeFile file{kind, kSentences};
    std::vector<std::uint32_t> separators;
    // The best of each: other load on the machine can only add time.
    double reading = std::numeric_limits<double>::max();
    double plain = reading;
    double fileAlone = reading;
    for ([[maybe_unused]] const auto iteration : state) {
        Counting status;
        const double seconds = bench::secondsOf([&] {
            gps::FileAccount account;
            benchmark::DoNotOptimize(reader(status, file.path(), &account));
        });
        if (status.records != kSentences)
            state.SkipWithError("not every sentence was read");
        state.SetIterationTime(seconds);
        reading = std::min(reading, seconds);
        plain = std::min(plain, bench::secondsOf([&] {
                             std::string text;
                             benchmark::DoNotOptimize(
                                 gps::FileManager{}.readAsciiFile(file.path(), text));
                             benchmark::DoNotOptimize(plainLoop(text, separators));
                         }));
        fileAlone = std::min(fileAlone, bench::secondsOf([&] {
                                 std::string text;
                                 benchmark::DoNotOptimize(
                                     gps::FileManager{}.readAsciiFile(file.path(), text));
                             }));
    }
    state.counters["sentences/s"] = static_cast<double>(kSentences) / reading;
    state.counters["MB/s"] = static_cast<double>(file.bytes()) / reading / 1e6;
    state.counters["plain_MB/s"] = static_cast<double>(file.bytes()) / plain / 1e6;
    state.counters["ratio"] = reading / plain;
    state.counters["ratio_without_file"] = (reading - fileAlone) / (plain - fileAlone);
}

BENCHMARK_CAPTURE(readFile, tracks, bench::Kind::kTrack, magellan::acquireTracks)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, waypoints, bench::Kind::kWaypoints, magellan::acquireWayPoints)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, geocaches, bench::Kind::kGeocaches, magellan::acquireGeoCaches)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
