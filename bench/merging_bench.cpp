// SPDX-License-Identifier: MIT
// Merging n records into a file of n records, for n up to a million: how much longer ten times as many take. No step may grow
// faster than the records.

#include <gps/Value.h>
#include <plugin/fsdevice/DeviceFileWriters.h>
#include <plugin/fsdevice/GeocacheSplit.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kSmallest = 1'000;
constexpr std::size_t kLargest = 1'000'000;

gps::Dictionary record(const std::string& name, const char* symbol)
{
    return {{"name", name}, {"comment", "by the lake"}, {"symbol", symbol}, {"point", gps::GPSPoint{46.5, 7.25, 1200, 0, 0}}};
}

gps::Array records(std::size_t count, const char* symbol, bool allEqual)
{
    gps::Array list;
    list.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        list.emplace_back(record(allEqual ? "Oak" : "Point " + std::to_string(i), symbol));
    return list;
}

/// Routes of ten points each; every point is a waypoint of its own.
gps::Array routes(std::size_t count)
{
    constexpr std::size_t kPoints = 10;
    gps::Array list;
    for (std::size_t i = 0; i < count / kPoints; ++i) {
        gps::Array points;
        for (std::size_t p = 0; p < kPoints; ++p)
            points.emplace_back(record("Point " + std::to_string(i * kPoints + p), "Flag"));
        list.emplace_back(gps::Dictionary{{"name", "Route " + std::to_string(i)}, {"points", std::move(points)}});
    }
    return list;
}

template <typename Work> double secondsOf(Work work)
{
    const auto start = Clock::now();
    work();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// Prints the time for each size, and how it grew since the size before.
template <typename Make, typename Work> void measure(const char* what, Make make, Work work)
{
    double before = 0;
    for (std::size_t count = kSmallest; count <= kLargest; count *= 10) {
        const gps::Array list = make(count);
        const double seconds = secondsOf([&] { work(list); });
        std::printf("%-28s %8zu  %9.3f ms", what, count, seconds * 1e3);
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
        std::string name = std::filesystem::exists("/dev/shm") ? "/dev/shm/bench-XXXXXX" : "/tmp/bench-XXXXXX";
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

int main()
{
    const Folder folder;
    // Twice: into nothing, and into what the first merge wrote.
    const auto twice = [](auto merge, const std::string& path) {
        return [merge, path](const gps::Array& list) {
            std::filesystem::remove(path);
            (void)merge(list, path);
            (void)merge(list, path);
        };
    };
    measure(
        "waypoints", [](std::size_t n) { return records(n, "Flag", false); },
        twice(magellan::mergeWaypoints, folder.fresh("w.upt")));
    measure(
        "geocaches, all different", [](std::size_t n) { return records(n, "Geocache", false); },
        twice(magellan::mergeGeocaches, folder.fresh("g.gs")));
    measure(
        "geocaches, all equal", [](std::size_t n) { return records(n, "Geocache", true); },
        twice(magellan::mergeGeocaches, folder.fresh("e.gs")));
    measure("routes, points in all", routes, twice(magellan::mergeRoutes, folder.fresh("r.rte")));
    measure(
        "splitting, all different", [](std::size_t n) { return records(n, "Geocache", false); },
        [](const gps::Array& list) { (void)magellan::extractGeocachesFromList(list); });
    measure(
        "splitting, all equal", [](std::size_t n) { return records(n, "Geocache", true); },
        [](const gps::Array& list) { (void)magellan::extractGeocachesFromList(list); });
}
