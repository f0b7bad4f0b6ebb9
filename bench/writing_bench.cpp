// SPDX-License-Identifier: MIT
// Measures writing a track of 1,000,000 points in each format: MB per second, and the ratio to
// writing the same bytes in plain blocks. Both are measured in turn in the same run, into the same
// folder.

#include "LargeFile.h"
#include "ThreadTime.h"

#include <gps/GPSPoint.h>
#include <host/files/Output.h>
#include <host/formats/Formats.h>
#include <host/operations/Event.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::size_t kPoints = 1'000'000;
constexpr int kRounds = 3;

/// Degrees with the precision of a sentence: minutes with five decimals.
double asReceived(double degrees)
{
    const double whole = std::floor(degrees);
    return whole + std::round((degrees - whole) * 60e5) / 1e5 / 60;
}

/// A slow spiral, one point per second.
std::vector<gps::GPSPoint> makePoints()
{
    std::vector<gps::GPSPoint> points(kPoints);
    for (std::size_t i = 0; i < kPoints; ++i) {
        const auto at = static_cast<double>(i);
        points[i] = {asReceived(46.5 + 0.3 * std::sin(at / 5000)), asReceived(7.3 + at / 1e6),
                     static_cast<double>(1000 + i % 1000),
                     1218435348 + static_cast<std::int64_t>(i), 0};
    }
    return points;
}

/// A temporary file that each round overwrites from its start.
class Target {
public:
    explicit Target(const std::string& path)
        : file_(::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666))
    {}
    ~Target() { ::close(file_); }
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    [[nodiscard]] int file() const { return file_; }

private:
    int file_;
};

void writeTrack(const host::Format& format, const std::vector<gps::GPSPoint>& points,
                const std::string& path, const std::string& folder)
{
    const Target target{path};
    host::Output output{target.file(), path, gps::FileSystem::system(), host::Output::Kind::kFile};
    const auto writer = format.make(output, folder, {});
    host::Event event;
    event.kind = host::EventKind::kNewTrack;
    writer->event(event);
    event.kind = host::EventKind::kTrackPoint;
    for (const auto& point : points) {
        event.point = point;
        writer->event(event);
    }
    if (writer->close())
        throw std::runtime_error(path + " cannot be written");
}

void writePlainly(const std::string& text, const std::string& path)
{
    constexpr std::size_t kPiece = std::size_t{64} << 10;
    const Target target{path};
    for (std::size_t at = 0; at < text.size(); at += kPiece) {
        const auto piece = std::string_view{text}.substr(at, kPiece);
        if (::write(target.file(), piece.data(), piece.size()) !=
            static_cast<ssize_t>(piece.size()))
            throw std::runtime_error(path + " cannot be written");
    }
}

void measure(const host::Format& format, const std::vector<gps::GPSPoint>& points,
             const bench::LargeFile& scratch)
{
    const auto path = (scratch.folder() / format.name).string();
    // The best of each: other load on the machine can only add time.
    double writing = std::numeric_limits<double>::max();
    double plain = writing;
    std::size_t bytes = 0;
    for (int round = 0; round < kRounds; ++round) {
        writing = std::min(writing, bench::secondsOf([&] {
                               writeTrack(format, points, path, scratch.folder().string());
                           }));
        std::ifstream file{path, std::ios::binary};
        const std::string text{std::istreambuf_iterator<char>{file}, {}};
        plain = std::min(plain, bench::secondsOf([&] { writePlainly(text, path); }));
        bytes = text.size();
    }
    const auto megabytes = static_cast<double>(bytes) / 1e6;
    std::printf("%-8s %7.1f MB  %6.0f MB/s  plainly %6.0f MB/s  ratio %4.1f\n",
                std::string{format.name}.c_str(), megabytes, megabytes / writing, megabytes / plain,
                writing / plain);
    std::filesystem::remove(path);
}

} // namespace

int main()
try {
    const bench::LargeFile scratch{bench::Kind::kTrack, 1}; // for its folder
    const auto points = makePoints();
    for (const auto& format : host::formats())
        measure(format, points, scratch);
    return EXIT_SUCCESS;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "writing_bench: %s\n", failure.what());
    return EXIT_FAILURE;
}
