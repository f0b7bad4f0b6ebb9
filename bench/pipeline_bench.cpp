// SPDX-License-Identifier: MIT
// Measures how busy the two threads of a download are: the driver's, which reads a file of
// 1,000,000 track points, and the host's, which writes them in one format. The rest of the time a
// thread waits for the other one. The download takes as long as the busier one.

#include "LargeFile.h"
#include "ThreadTime.h"
#include "host/files/Output.h"
#include "host/formats/Formats.h"
#include "host/operations/Operation.h"

#include <gps/Error.h>
#include <plugin/fsdevice/DeviceFileReaders.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::size_t kPoints = 1'000'000;
constexpr int kRounds = 5;

struct Times {
    double wall = 0; // seconds
    double reader = 0;
    double writer = 0;
};

Times download(const std::string& from, const host::Format& format, const std::string& to,
               const std::string& folder)
{
    const int file = ::open(to.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    host::Output output{file, to, gps::FileSystem::system(), host::Output::Kind::kFile};
    const auto writer = format.make(output, folder, {});
    Times times;
    const auto start = std::chrono::steady_clock::now();
    const double readerStart = bench::threadSeconds();
    const auto outcome = host::runOperation(
        [&](const gps::GPSPlugInProtocol::Status& status) {
            auto error = magellan::acquireTracks(*status, from, nullptr);
            status->gpsStateChange(0);
            times.reader = bench::threadSeconds() - readerStart;
            return error;
        },
        [&](const host::EventBatch& batch) {
            for (const auto& event : batch)
                writer->event(event);
            times.writer = bench::threadSeconds(); // of a thread that does nothing else
        });
    const auto failure = writer->close();
    times.wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    ::close(file);
    if (outcome.error || failure)
        throw std::runtime_error(to + " cannot be written");
    return times;
}

void measure(const bench::LargeFile& log, const host::Format& format)
{
    const auto path = (log.folder() / format.name).string();
    // The fastest round: other load on the machine can only add time.
    std::optional<Times> best;
    for (int round = 0; round < kRounds; ++round) {
        const auto times = download(log.path(), format, path, log.folder().string());
        if (!best || times.wall < best->wall)
            best = times;
    }
    std::printf("%-8s %6.3f s  reader %3.0f %%  writer %3.0f %%\n",
                std::string{format.name}.c_str(), best->wall, 100 * best->reader / best->wall,
                100 * best->writer / best->wall);
    std::filesystem::remove(path);
}

} // namespace

int main()
try {
    const bench::LargeFile log{bench::Kind::kTrack, kPoints};
    for (const auto& format : host::formats())
        measure(log, format);
    return EXIT_SUCCESS;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "pipeline_bench: %s\n", failure.what());
    return EXIT_FAILURE;
}
