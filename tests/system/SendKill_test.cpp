// SPDX-License-Identifier: MIT
// Sends that are killed at random times. Whatever the time, each file on the device is the complete
// old one or the complete new one, and each backup that is listed brings back a state that the
// device was in before a send.
//
// A time is chosen as a number of file events, not as a duration: how long a send takes depends on
// what else the machine does.

#include "system/Program.h"
#include "system/Receiver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <limits>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <poll.h>
#include <sys/inotify.h>
#include <sys/syscall.h>

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int kKills = 200;
constexpr int kMostRounds = 4 * kKills; // a send that ended before its kill does not count
constexpr int kMostEvents = 1'000'000;  // more than a send causes
constexpr int kWaypoints = 300;
constexpr unsigned kSeed = 20260830;

// Counts what happens in some folders: each time that a file is opened, read, written, closed,
// created, renamed or removed.
class FileEvents {
public:
    explicit FileEvents(const std::vector<std::string>& folders)
        : queue_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        for (const auto& folder : folders) {
            if (::inotify_add_watch(queue_, folder.c_str(), IN_ALL_EVENTS) < 0)
                throw std::runtime_error{"cannot watch " + folder};
        }
    }
    ~FileEvents() { ::close(queue_); }
    FileEvents(const FileEvents&) = delete;
    FileEvents& operator=(const FileEvents&) = delete;

    // How many there were since the last call.
    [[nodiscard]] int take() const
    {
        int count = 0;
        alignas(inotify_event) std::array<char, 65536> events{};
        for (ssize_t size = 0; (size = ::read(queue_, events.data(), events.size())) > 0;) {
            for (ssize_t at = 0; at < size; ++count)
                at += static_cast<ssize_t>(
                    sizeof(inotify_event) +
                    reinterpret_cast<const inotify_event*>(&events.at(static_cast<std::size_t>(at)))
                        ->len);
        }
        return count;
    }

    // Waits for a number of events, or for the end of the process. @return  how many there were
    [[nodiscard]] int waitFor(int count, pid_t child) const
    {
        const auto process = static_cast<int>(::syscall(SYS_pidfd_open, child, 0));
        std::array<pollfd, 2> ready{{{queue_, POLLIN, 0}, {process, POLLIN, 0}}};
        int seen = 0;
        while (seen < count && ready[1].revents == 0) {
            ::poll(ready.data(), ready.size(), -1);
            seen += take();
        }
        ::close(process);
        return seen;
    }

private:
    int queue_;
};

using Files = std::map<std::string, std::string>;

// The data files without hidden ones: those that a receiver lists.
Files visibleFiles(const std::string& folder)
{
    Files files;
    for (const auto& entry : fs::recursive_directory_iterator{folder}) {
        if (entry.is_directory() || entry.path().filename().string().starts_with('.'))
            continue;
        std::ifstream file{entry.path(), std::ios::binary};
        files[entry.path().lexically_relative(folder).string()] = {
            std::istreambuf_iterator<char>{file}, {}};
    }
    return files;
}

// Whether a send writes this file. One that starts from what another left adds its tracks under
// further names.
bool isNew(const std::string& name, const std::string& content, const Files& old,
           const Files& fresh)
{
    if (fresh.contains(name))
        return fresh.at(name) == content;
    return std::any_of(fresh.begin(), fresh.end(), [&](const auto& file) {
        return !old.contains(file.first) && file.second == content;
    });
}

// Many waypoints and geocaches, a route of them all, and three tracks.
std::string manyRecords()
{
    std::string waypoints;
    std::string points;
    for (int i = 0; i < kWaypoints; ++i) {
        const auto number = std::to_string(i);
        const auto position =
            R"("point":{"latitude":46.)" + number + R"(,"longitude":7.)" + number + "}}";
        waypoints += (i > 0 ? R"(,{"name":"W)" : R"({"name":"W)") + number + R"(",)" + position;
        waypoints += R"(,{"name":"G)" + number + R"(","symbol":"Geocache",)" + position;
        points += (i > 0 ? R"(,{"name":"P)" : R"({"name":"P)") + number + R"(",)" + position;
    }
    const auto track = R"({"points":[)" + points + "]}";
    return R"({"waypoint":[)" + waypoints + R"(],"route":[{"name":"R","points":[)" + points +
           R"(]}],"track":[)" + track + ',' + track + ',' + track + "]}";
}

class SendKill : public testing::Test {
protected:
    SendKill() { data_.put("d.json", manyRecords()); }

    pid_t start() const
    {
        const std::vector<std::string> words{MAGELLAN_BIN_DIR "/magellangps",
                                             "send",
                                             "--data",
                                             data_.path("d.json"),
                                             "--device",
                                             receiver_.path(),
                                             "--backup",
                                             data_.path("kept"),
                                             "--keep-backups",
                                             "1000",
                                             "-q"};
        std::vector<char*> arguments;
        for (const auto& word : words)
            arguments.push_back(const_cast<char*>(word.c_str()));
        arguments.push_back(nullptr);
        const std::string home = "HOME=" + data_.path();
        char* environment[] = {const_cast<char*>(home.c_str()), nullptr};
        posix_spawn_file_actions_t files;
        ::posix_spawn_file_actions_init(&files);
        for (const int stream : {0, 1, 2})
            ::posix_spawn_file_actions_addopen(&files, stream, "/dev/null", O_RDWR, 0);
        pid_t child = 0;
        const int failure = ::posix_spawn(&child, arguments.front(), &files, nullptr,
                                          arguments.data(), environment);
        ::posix_spawn_file_actions_destroy(&files);
        EXPECT_EQ(failure, 0);
        return child;
    }

    static int waitFor(pid_t child)
    {
        int status = 0;
        while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
        }
        return status;
    }

    void reset(const Files& old) const
    {
        for (const auto& [name, content] : visibleFiles(receiver_.path())) {
            if (!old.contains(name))
                fs::remove(receiver_.path(name));
        }
        for (const auto& [name, content] : old)
            receiver_.put(name, content);
    }

    // The files that make the folder a receiver. A backup does not have them.
    Files unitFiles() const
    {
        auto files = visibleFiles(receiver_.path());
        std::erase_if(files, [](const auto& file) { return !file.first.starts_with("USBTRANS"); });
        return files;
    }

    // The paths of the backups that are listed.
    std::vector<std::string> backups() const
    {
        const auto ran = support::magellangps(
            {"restore", "--device", receiver_.path(), "--backup", data_.path("kept")});
        EXPECT_EQ(ran.status, 0) << ran.err;
        std::vector<std::string> paths;
        std::istringstream lines{ran.out};
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with('2')) // a year
                paths.push_back(data_.path("kept/42/" + line.substr(0, line.find(' '))));
        }
        return paths;
    }

    // Restores each backup that is listed, and expects that it brings back one of these states.
    // @return  how many there are
    std::size_t restoreAll(const std::set<Files>& states) const
    {
        const auto all = backups();
        for (const auto& backup : all) {
            reset(unitFiles());
            const auto ran = support::magellangps({"restore", "--device", receiver_.path(),
                                                   "--backup", data_.path("restoring"), backup});
            EXPECT_EQ(ran.status, 0) << backup << ": " << ran.err;
            EXPECT_TRUE(states.contains(visibleFiles(receiver_.path()))) << backup;
        }
        return all.size();
    }

    support::Receiver receiver_;
    support::TemporaryFolder data_;
};

TEST_F(SendKill, EachFileIsOldOrNewAndNothingStrayIsSeen)
{
    receiver_.put("Points/Default POI File.upt",
                  support::sentences({support::kCamp, support::kHut}));
    receiver_.put("Caches/Default Geocache File.gs", support::sentences({support::kCache}));
    receiver_.put("Ways/Default Route File.rte",
                  support::sentences({support::kCamp, support::kHut, support::kLoop}));
    const auto old = visibleFiles(receiver_.path());
    const FileEvents events{{receiver_.path("USBTRANS"), receiver_.path("Points"),
                             receiver_.path("Caches"), receiver_.path("Ways"),
                             receiver_.path("Tracks"), data_.makeFolder("kept/42")}};
    const auto first = start();
    const int eventsOfASend = events.waitFor(std::numeric_limits<int>::max(), first);
    ASSERT_EQ(waitFor(first), 0);
    ASSERT_GT(eventsOfASend, 50);
    const auto fresh = visibleFiles(receiver_.path());
    // The driver gives the points of a route new names if they are sent exactly as before.
    ASSERT_EQ(waitFor(start()), 0);
    const auto twice = visibleFiles(receiver_.path());

    std::mt19937 random{kSeed};
    std::uniform_int_distribution<int> killTime{0, eventsOfASend};
    std::uniform_real_distribution<> part{0, 1};
    std::set<Files> states{old, fresh};
    int killed = 0;
    int between = 0;
    for (int round = 0; killed < kKills && round < kMostRounds; ++round) {
        // Every fourth send starts from what the last kill left.
        if (round % 4 != 3)
            reset(old);
        states.insert(visibleFiles(receiver_.path()));
        const int time = killTime(random);
        (void)events.take(); // those of this test
        const auto begin = Clock::now();
        const auto child = start();
        const int seen = events.waitFor(time, child);
        // Not always at an event: up to the mean time between two of them later.
        std::this_thread::sleep_for((Clock::now() - begin) / (seen + 1) * part(random));
        ::kill(child, SIGKILL);
        killed += WIFSIGNALED(waitFor(child)) ? 1 : 0;
        const auto present = visibleFiles(receiver_.path());
        for (const auto& [name, content] : present) {
            const bool isOld = old.contains(name) && old.at(name) == content;
            EXPECT_TRUE(isOld || isNew(name, content, old, fresh) ||
                        (round % 4 == 3 && isNew(name, content, old, twice)))
                << name << " after " << time << " events, round " << round << ", seed " << kSeed;
        }
        for (const auto& [name, content] : old)
            EXPECT_TRUE(present.contains(name)) << name;
        between += present != old && present != fresh ? 1 : 0;
    }
    EXPECT_EQ(killed, kKills);
    EXPECT_GT(between, kKills / 10) << "too few kills hit a send while it wrote";
    RecordProperty("between", between);

    // Leftovers do not prevent the next send.
    reset(old);
    EXPECT_EQ(waitFor(start()), 0);
    EXPECT_EQ(visibleFiles(receiver_.path()), fresh);
    for (const auto& entry : fs::recursive_directory_iterator{receiver_.path()})
        EXPECT_FALSE(entry.path().filename().string().starts_with('.')) << entry.path();

    // At least two backups, wherever the kills happened.
    reset(old);
    receiver_.put("Points/other.upt", support::sentences({support::kHut}));
    states.insert(visibleFiles(receiver_.path()));
    EXPECT_EQ(waitFor(start()), 0);
    EXPECT_GT(restoreAll(states), 1U);
}

} // namespace
