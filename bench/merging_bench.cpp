// SPDX-License-Identifier: MIT
// Measures merging n records into a file of n records, for n up to a million, and prints how much
// longer ten times as many take. No step may grow faster than the number of records.

#include "ThreadTime.h"

#include <gps/Value.h>
#include <plugin/fsdevice/DeviceFileWriters.h>
#include <plugin/fsdevice/GeocacheSplit.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr std::size_t kSmallest = 1'000;
constexpr std::size_t kLargest = 1'000'000;

gps::Dictionary record(const std::string& name, const char* symbol)
{
    return {{"name", name},
            {"comment", "by the lake"},
            {"symbol", symbol},
            {"point", gps::GPSPoint{46.5, 7.25, 1200, 0, 0}}};
}

gps::Array records(std::size_t count, const char* symbol, bool allEqual)
{
    gps::Array list;
    list.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        list.emplace_back(record(allEqual ? "Oak" : "Point " + std::to_string(i), symbol));
    return list;
}

/// Routes of ten points each; no two points are the same waypoint.
gps::Array routes(std::size_t count)
{
    constexpr std::size_t kPoints = 10;
    gps::Array list;
    for (std::size_t i = 0; i < count / kPoints; ++i) {
        gps::Array points;
        for (std::size_t p = 0; p < kPoints; ++p)
            points.emplace_back(record("Point " + std::to_string(i * kPoints + p), "Flag"));
        list.emplace_back(
            gps::Dictionary{{"name", "Route " + std::to_string(i)}, {"points", std::move(points)}});
    }
    return list;
}

/// Processor time of the work in a separate process, as a send has one, so that each size starts
/// with fresh memory.
template <typename Work> double secondsInAChild(Work work)
{
    int ends[2];
    if (::pipe(ends) != 0)
        std::abort();
    const pid_t child = ::fork();
    if (child == 0) {
        const double seconds = bench::secondsOf(work);
        ::_exit(::write(ends[1], &seconds, sizeof seconds) == sizeof seconds ? 0 : 1);
    }
    double seconds = 0;
    if (child < 0 || ::read(ends[0], &seconds, sizeof seconds) != sizeof seconds)
        std::abort();
    ::waitpid(child, nullptr, 0);
    ::close(ends[0]);
    ::close(ends[1]);
    return seconds;
}

/// The best of several rounds: other load on the machine can only add time.
template <typename Work> double bestOf(int rounds, Work work)
{
    double best = secondsInAChild(work);
    for (int i = 1; i < rounds; ++i)
        best = std::min(best, secondsInAChild(work));
    return best;
}

/// Prints the processor time for each size and its ratio to the size before.
template <typename Make, typename Work>
void measure(std::string_view wanted, std::string_view what, Make make, Work work)
{
    if (!what.starts_with(wanted))
        return;
    double before = 0;
    for (std::size_t count = kSmallest; count <= kLargest; count *= 10) {
        const gps::Array list = make(count);
        const double seconds = bestOf(count < kLargest ? 10 : 3, [&] { work(list); });
        std::printf("%-28s %8zu  %9.3f ms", what.data(), count, seconds * 1e3);
        if (before > 0)
            std::printf("  x %.1f", seconds / before);
        std::printf("\n");
        std::fflush(stdout);
        before = seconds;
    }
}

class Folder {
public:
    Folder()
    {
        std::string name =
            std::filesystem::exists("/dev/shm") ? "/dev/shm/bench-XXXXXX" : "/tmp/bench-XXXXXX";
        path_ = ::mkdtemp(name.data());
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    [[nodiscard]] std::string fresh(const char* name) const
    {
        const auto path = path_ / name;
        std::filesystem::remove(path);
        return path.string();
    }

private:
    std::filesystem::path path_;
};

} // namespace

/// Runs all measurements, or those whose name begins with the first argument.
int main(int count, char** arguments)
{
    const std::string_view wanted = count > 1 ? arguments[1] : "";
    const Folder folder;
    // Twice: into an empty folder, and into what the first merge wrote.
    const auto twice = [](auto merge, const std::string& path) {
        return [merge, path](const gps::Array& list) {
            std::filesystem::remove(path);
            (void)merge(list, path);
            (void)merge(list, path);
        };
    };
    measure(
        wanted, "waypoints", [](std::size_t n) { return records(n, "Flag", false); },
        twice([](const auto&... a) { return magellan::mergeWaypoints(a...); },
              folder.fresh("w.upt")));
    measure(
        wanted, "geocaches, all different",
        [](std::size_t n) { return records(n, "Geocache", false); },
        twice([](const auto&... a) { return magellan::mergeGeocaches(a...); },
              folder.fresh("g.gs")));
    measure(
        wanted, "geocaches, all equal", [](std::size_t n) { return records(n, "Geocache", true); },
        twice([](const auto&... a) { return magellan::mergeGeocaches(a...); },
              folder.fresh("e.gs")));
    measure(
        wanted, "routes, points in all", routes,
        twice([](const auto&... a) { return magellan::mergeRoutes(a...); }, folder.fresh("r.rte")));
    measure(
        wanted, "splitting, all different",
        [](std::size_t n) { return records(n, "Geocache", false); },
        [](const gps::Array& list) { (void)magellan::extractGeocachesFromList(list); });
    measure(
        wanted, "splitting, all equal", [](std::size_t n) { return records(n, "Geocache", true); },
        [](const gps::Array& list) { (void)magellan::extractGeocachesFromList(list); });
}
