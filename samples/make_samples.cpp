// SPDX-License-Identifier: MIT
// make_samples FOLDER: writes the sample files, a receiver's folder tree and single files, to a
// folder. Each run writes the same bytes, so that a test can compare them with the committed files.

#include "places.h"
#include "sentences.h"
#include "tracks.h"

#include <cstdint>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iostream>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace samples {
namespace {

Lines operator+(Lines first, Lines second)
{
    first.insert(first.end(), std::make_move_iterator(second.begin()),
                 std::make_move_iterator(second.end()));
    return first;
}

class Writer {
public:
    explicit Writer(std::filesystem::path folder) : folder_(std::move(folder)) {}

    /// A file of sentences, separated by CR LF, the closing sentence last.
    void sentences(std::string_view name, const Lines& lines) const
    {
        std::string text;
        for (const auto& line : lines)
            text += line + "\r\n";
        write(name, text + sentence("PMGNCMD,END"));
    }

    /// A key-value file: each line ends in CR LF.
    void keyValues(std::string_view name,
                   std::initializer_list<std::pair<std::string_view, std::string_view>> pairs) const
    {
        std::string text;
        for (const auto& [key, value] : pairs)
            text.append(key).append("=").append(value).append("\r\n");
        write(name, text);
    }

private:
    void write(std::string_view name, std::string_view text) const
    {
        const auto path = folder_ / name;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream file{path, std::ios::binary};
        file.exceptions(std::ios::badbit | std::ios::failbit);
        file.write(text.data(), static_cast<std::streamsize>(text.size()));
        file.close();
    }

    std::filesystem::path folder_;
};

constexpr std::int64_t kSummerMorning = 1218435348; // 2008-08-11 06:15:48 UTC
constexpr std::int64_t kSpringNoon =
    1210018992; // 2008-05-05 20:23:12 UTC: shortly after noon on the coast
constexpr std::int64_t kSaddleDay =
    1263674407; // 2010-01-16 20:40:07 UTC: local morning of the 17th
constexpr std::int64_t kFjordEvening = 1229645011; // 2008-12-19 00:03:31 UTC: local evening before
constexpr std::int64_t kAutumn = 1223187664;       // 2008-10-05 06:21:04 UTC

void writeReceiver(const Writer& out)
{
    out.keyValues("USBTRANS/UNIT_ID.DAT", {{"Unit Type", "Handheld receiver"},
                                           {"Serial Number", "0417002219"},
                                           {"Software Version", "2.35"},
                                           {"Map Version", "1.08"},
                                           {"Language", "English"}});
    out.keyValues("USBTRANS/LANGUAGE.DAT", {{"MyPOIs", "My POIs"},
                                            {"Geocaches", "Geocaches"},
                                            {"Routes", "Routes"},
                                            {"TrackLogs", "Track Logs"}});

    out.sentences("My POIs/Hinterau.upt", wayPoints(mountains(), mountains().stops));
    out.sentences("My POIs/Gull Point.upt", wayPoints(coast(), coast().stops));
    out.sentences("My POIs/South.upt",
                  wayPoints(saddle(), saddle().stops) + wayPoints(fjord(), fjord().stops));

    out.sentences("Geocaches/Home.gs", geocaches(mountains()));
    out.sentences("Geocaches/Travels.gs",
                  geocaches(coast()) + geocaches(saddle()) + geocaches(fjord()));

    out.sentences(
        "Routes/Spitzhorn.rte",
        wayPoints(mountains(), mountains().stops) +
            routeSentences(mountains(),
                           {"Spitzhorn", "Long day: start early", 1, {0, 1, 2, 3, 4, 5, 6}}) +
            routeSentences(mountains(), {"Lake and Chapel", "", 2, {11, 10, 9, 8, 9, 10, 11, 0}}));
    out.sentences("Routes/Coast Walk.rte",
                  wayPoints(coast(), std::span{coast().stops}.first(8)) +
                      routeSentences(coast(), {"Coast Walk", "", 1, {0, 1, 2, 3, 4, 5, 6, 7, 0}}));
    out.sentences(
        "Routes/South.rte",
        wayPoints(saddle(), saddle().stops) + wayPoints(fjord(), fjord().stops) +
            routeSentences(saddle(),
                           {"Kea Saddle", "Check the river first", 1, {0, 1, 2, 3, 4, 5}}) +
            routeSentences(saddle(), {"Lake Way Back", "", 2, {5, 6, 7, 8, 9}}) +
            routeSentences(fjord(),
                           {"Fjord Round", "Wind: go before 10", 3, {0, 1, 2, 3, 4, 5, 6, 7, 0}}));

    out.sentences(
        "Track Logs/TKLG001.log",
        track(mountains(), {{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 0}, kSummerMorning, ""}));
    out.sentences("Track Logs/TKLG002.log", track(coast(), {.stops = {0, 1, 2, 3, 4, 5, 6, 7, 0},
                                                            .start = kSpringNoon,
                                                            .name = "",
                                                            .feet = true,
                                                            .everyDate = false,
                                                            .firstDate = false}));
    out.sentences(
        "Track Logs/Kea Saddle.log",
        track(saddle(), {{0, 1, 2, 3, 4, 5}, kSaddleDay, "Up to the saddle"}) +
            track(saddle(), {{5, 6, 7, 8, 9, 10, 0}, kSaddleDay + 25200, "Lake way back"}) +
            track(saddle(), {{0, 1, 2}, kSaddleDay + 86000, "Up to the saddle"}));
    out.sentences("Track Logs/Fjord.log", track(fjord(), {.stops = {0, 1, 2, 3, 4, 5, 6, 7, 0},
                                                          .start = kFjordEvening,
                                                          .name = "Kayak round",
                                                          .everyDate = false}));
}

void writeFiles(const Writer& out)
{
    out.sentences("trip.log", track(mountains(), {{0, 11, 10, 9, 8}, kAutumn, "Autumn walk"}));
    out.sentences("points.upt", wayPoints(mountains(), std::span{mountains().stops}.last(6)));
    out.sentences("caches.gs", geocaches(saddle()) + geocaches(fjord()));

    // A route file can be imported only if its first line is a route sentence, and a route finds
    // only waypoints that precede its lists. So the message comes first and the waypoints follow
    // it.
    const auto route = routeSentences(
        mountains(), {"Lake Loop", "Swim at the far end", 1, {11, 10, 9, 8, 4, 3, 2, 0}, true});
    out.sentences("loop.rte", Lines{route.front()} + wayPoints(mountains(), mountains().stops) +
                                  Lines(route.begin() + 1, route.end()));
}

} // namespace
} // namespace samples

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: make_samples FOLDER\n";
        return 2;
    }
    try {
        const std::filesystem::path folder{argv[1]};
        samples::writeReceiver(samples::Writer{folder / "receiver"});
        samples::writeFiles(samples::Writer{folder / "files"});
    } catch (const std::exception& failure) {
        std::cerr << "make_samples: " << failure.what() << '\n';
        return 1;
    }
    return EXIT_SUCCESS;
}
