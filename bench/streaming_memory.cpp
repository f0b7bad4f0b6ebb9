// SPDX-License-Identifier: MIT
// Converts large track logs of two sizes to GPX with the program and compares its peak memory. The
// larger log may take no more additional memory than its own text; otherwise the exit status is 1.

#include "LargeFile.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct Measured {
    double fileBytes;
    double peakBytes;
    double gpxBytes;
};

/// Runs "magellangps import" on a log of that many points.
Measured measure(std::size_t points)
{
    const bench::LargeFile log{bench::Kind::kTrack, points};
    const auto gpx = (log.folder() / "out.gpx").string();
    const std::string program = MAGELLAN_BIN_DIR "/magellangps";

    const pid_t child = ::fork();
    if (child == 0) {
        ::execl(program.c_str(), program.c_str(), "import", log.path().c_str(), "-o", gpx.c_str(),
                "-q", nullptr);
        ::_exit(127);
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || ::wait4(child, &status, 0, &usage) != child || status != 0)
        throw std::runtime_error("magellangps failed");
    const Measured result{static_cast<double>(log.bytes()),
                          static_cast<double>(usage.ru_maxrss) * 1024,
                          static_cast<double>(std::filesystem::file_size(gpx))};
    std::printf("%9zu points: log %7.1f MB, GPX %7.1f MB, peak memory %7.1f MB\n", points,
                result.fileBytes / 1e6, result.gpxBytes / 1e6, result.peakBytes / 1e6);
    return result;
}

} // namespace

int main()
try {
    const auto small = measure(100'000);
    const auto large = measure(1'000'000);
    const double ratio = (large.peakBytes - small.peakBytes) / (large.fileBytes - small.fileBytes);
    std::printf("each byte of log more takes %.2f bytes of memory more\n", ratio);
    return ratio < 1.1 ? EXIT_SUCCESS : EXIT_FAILURE;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "streaming_memory: %s\n", failure.what());
    return EXIT_FAILURE;
}
