// SPDX-License-Identifier: MIT
// Downloads from a serial line: the built program against the built simulator.

#include "support/PseudoTerminal.h"
#include "support/TemporaryFolder.h"
#include "system/StoredPorts.h"
#include "system/Terminal.h"
#include "system_serial/Simulator.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include <sys/file.h>
#include <sys/wait.h>

namespace {

using support::magellangps;
using support::PseudoTerminal;
using support::Running;
using support::Simulator;
using support::storePorts;
using support::TemporaryFolder;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

std::ptrdiff_t countOf(const std::string& text, const std::string& word)
{
    std::ptrdiff_t count = 0;
    for (auto at = text.find(word); at != std::string::npos; at = text.find(word, at + word.size()))
        ++count;
    return count;
}

TEST(Serial, DownloadHoldsEverythingThatTheReceiverHas)
{
    const TemporaryFolder folder;
    const Simulator simulator;
    const auto ran = magellangps(
        {"acquire", "--device", simulator.path(), "-o", folder.path("x.gpx"), "--summary"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_THAT(ran.err, IsEmpty());
    const auto gpx = folder.read("x.gpx");
    const auto mounted =
        magellangps({"acquire", "--device", MAGELLAN_SOURCE_DIR "/samples/receiver", "-o",
                     folder.path("mounted.gpx"), "--summary"});
    EXPECT_EQ(mounted.status, 0);
    EXPECT_EQ(countOf(gpx, "<trkpt "), countOf(folder.read("mounted.gpx"), "<trkpt "));
    EXPECT_EQ(countOf(gpx, "<rtept "), countOf(folder.read("mounted.gpx"), "<rtept "));
    EXPECT_GT(countOf(gpx, "<wpt "), 0);
}

TEST(Serial, EventsAreTheSessionsCallsInOrder)
{
    const Simulator simulator;
    const auto ran =
        magellangps({"acquire", "--device", simulator.path(), "--events", "--no-routes"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_THAT(ran.err, IsEmpty());
    EXPECT_THAT(
        ran.out,
        StartsWith(
            "{\"event\":\"gpsStateChange\",\"state\":1}\n{\"event\":\"startTransfer\",\"kind\":3}\n"
            "{\"event\":\"wayPoint\","));
    EXPECT_THAT(
        ran.out,
        HasSubstr(
            "{\"event\":\"endTransfer\",\"kind\":3}\n{\"event\":\"startTransfer\",\"kind\":1}\n"
            "{\"event\":\"newTrack\","));
    EXPECT_THAT(
        ran.out,
        EndsWith(
            "{\"event\":\"endTransfer\",\"kind\":1}\n{\"event\":\"gpsStateChange\",\"state\":0}\n"
            "{\"event\":\"result\",\"error\":null}\n"));
}

TEST(Serial, PortMayBeNamedByALink)
{
    const TemporaryFolder folder;
    const Simulator simulator{
        {"--link", folder.path("receiver"), "--speed", "115200", "--handshake", "on"}};
    const auto ran = magellangps(
        {"acquire", "--device", folder.path("receiver"), "--options", R"({"tracks":true})"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_THAT(ran.out, HasSubstr("Total"));
    EXPECT_THAT(ran.err, IsEmpty());
}

TEST(Serial, ReceiverThatIsUnpluggedLeavesAPartialFile)
{
    const TemporaryFolder folder;
    folder.put("x.gpx", "old");
    const Simulator simulator{{"--fault", "track-data:hang-up:3"}};
    const auto ran =
        magellangps({"acquire", "--device", simulator.path(), "-o", folder.path("x.gpx")});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, AllOf(HasSubstr("The connection to the receiver broke off"),
                               HasSubstr("The port is gone."), HasSubstr("x.partial.gpx")));
    EXPECT_EQ(folder.read("x.gpx"), "old");
    EXPECT_THAT(folder.read("x.partial.gpx"), AllOf(HasSubstr("<wpt "), EndsWith("</gpx>\n")));
}

/// The commands in a log of the simulator, each once for each time it was received.
std::string commandsAfterTracks(const std::string& log)
{
    std::string commands;
    for (auto at = log.find("PMGNCMD,TRACK"); at != std::string::npos;
         at = log.find("PMGNCMD,", at + 1))
        commands += log.substr(at, log.find_first_of("*\" \n", at) - at) + '\n';
    return commands;
}

TEST(Serial, SignalRestoresTheReceiverAndKeepsAPartialFile)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const TemporaryFolder folder;
        folder.put("x.gpx", "old");
        const Simulator simulator{
            {"--log", folder.path("log"), "--fault", "track-data:delay:120000"}};
        Running download{{MAGELLAN_BIN_DIR "/magellangps", "acquire", "--device", simulator.path(),
                          "--events", "-o", folder.path("x.gpx")}};
        EXPECT_THAT(download.readUntil("\"startTransfer\",\"kind\":1"), HasSubstr("\"kind\":1"));
        const auto start = std::chrono::steady_clock::now();
        const int status = download.end(signal);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds{8});
        ASSERT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), 128 + signal);
        EXPECT_EQ(folder.read("x.gpx"), "old");
        EXPECT_THAT(folder.read("x.partial.gpx"), AllOf(HasSubstr("<wpt "), EndsWith("</gpx>\n")));
        EXPECT_THAT(commandsAfterTracks(folder.read("log")),
                    AllOf(HasSubstr("PMGNCMD,TOFF\n"), HasSubstr("PMGNCMD,HANDOFF\n"),
                          HasSubstr("PMGNCMD,BAUD,4800\n")));
    }
}

/// A download from a simulated receiver that is suspended, as by Ctrl-Z, before the tracks arrive.
class SuspendedDownload {
public:
    SuspendedDownload()
    {
        download_.readUntil("\"startTransfer\",\"kind\":1"); // the first point follows later
        download_.send(SIGSTOP);
    }

    /// Waits until the simulator's log has a text so often. Nobody acknowledges the first track
    /// point, so the receiver repeats it and then gives up.
    void waitForLog(const std::string& text, std::ptrdiff_t times)
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds{30};
        while (countOf(folder_.read("log"), text) < times &&
               std::chrono::steady_clock::now() < deadline)
            simulator_.read();
    }

    /// Continues it. @return  its exit status
    int finish()
    {
        download_.send(SIGCONT);
        download_.readUntil("\"result\"");
        const int status = download_.end(0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    [[nodiscard]] std::string errors() const { return folder_.read("err"); }
    [[nodiscard]] const TemporaryFolder& folder() const { return folder_; }

private:
    TemporaryFolder folder_;
    Simulator simulator_{{"--log", folder_.path("log"), "--fault", "track-data:delay:2000"}};
    Running download_{{"/bin/sh", "-c", "exec \"$0\" \"$@\" 2>" + folder_.path("err"),
                       MAGELLAN_BIN_DIR "/magellangps", "acquire", "--device", simulator_.path(),
                       "--events", "-o", folder_.path("x.gpx")}};
};

TEST(Serial, SuspendedDownloadHasNothingTwice)
{
    SuspendedDownload download;
    download.waitForLog("\"text\":\"PMGNTRK", 3);
    EXPECT_EQ(download.finish(), 0);
    EXPECT_THAT(download.errors(), HasSubstr("the repeats were left out: 2 track points."));
    const TemporaryFolder folder;
    const Simulator simulator;
    ASSERT_EQ(
        magellangps({"acquire", "--device", simulator.path(), "-o", folder.path("x.gpx")}).status,
        0);
    const auto withoutTime = [](const std::string& gpx) { return gpx.substr(gpx.find("<bounds")); };
    EXPECT_EQ(withoutTime(download.folder().read("x.gpx")), withoutTime(folder.read("x.gpx")));
}

TEST(Serial, DownloadThatWasSuspendedForTooLongSaysWhatIsMissing)
{
    SuspendedDownload download;
    download.folder().put("x.gpx", "old");
    download.waitForLog("\"gave-up\"", 1);
    EXPECT_EQ(download.finish(), 1);
    EXPECT_THAT(download.errors(), HasSubstr("while tracks were read"));
    EXPECT_EQ(download.folder().read("x.gpx"), "old");
    EXPECT_EQ(countOf(download.folder().read("x.partial.gpx"), "<trkpt "), 1);
}

TEST(Serial, PositionSentencesAreRecognisedWithinTenSeconds)
{
    const PseudoTerminal line;
    std::atomic<bool> isOver = false;
    std::thread unit{[&] {
        while (!isOver) {
            (void)line.writeSome("$GPGLL,4630.00,N,00715.00,E,100000,A*29\r\n");
            std::this_thread::sleep_for(std::chrono::milliseconds{20}); // about its speed
        }
    }};
    const auto start = std::chrono::steady_clock::now();
    const auto ran = magellangps({"acquire", "--device", line.path()});
    const auto elapsed = std::chrono::steady_clock::now() - start;
    isOver = true;
    unit.join();
    EXPECT_EQ(ran.status, 1);
    EXPECT_LT(elapsed, std::chrono::seconds{10});
    EXPECT_THAT(ran.err, StartsWith("magellangps: The unit at " + line.path() +
                                    " sends position sentences (NMEA) instead of answering."));
    EXPECT_THAT(ran.out, IsEmpty());
}

TEST(Serial, TerminalShowsThePhasesAndTheSpeed)
{
    const TemporaryFolder folder;
    const support::Terminal terminal;
    const Simulator simulator{{"--fault", "version:delay:500", "--fault", "track-data:delay:600"}};
    const auto ran =
        magellangps({"acquire", "--device", simulator.path(), "-o", folder.path("x.gpx")},
                    terminal.forErrors());
    EXPECT_EQ(ran.status, 0);
    EXPECT_THAT(terminal.readTo("\r\033[K"),
                AllOf(HasSubstr("looking for a receiver at " + simulator.path() + ": 0 s, "),
                      HasSubstr(" bytes at 4800 bit/s"), HasSubstr("tracks: 0 s, "),
                      HasSubstr(" at 115200 bit/s")));
}

TEST(Serial, SilentLineIsReported)
{
    const PseudoTerminal line;
    const auto ran = magellangps({"acquire", "--device", line.path(), "--options", "{}"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, StartsWith("magellangps: No receiver answered at " + line.path() + "."));
}

TEST(Serial, SendIsRunOnADriverThatCannotSend)
{
    const TemporaryFolder folder;
    const PseudoTerminal line;
    const auto file = folder.put(
        "d.json", R"({"waypoint":[{"name":"A","point":{"latitude":46.5,"longitude":7.25}}]})");
    const auto ran = magellangps({"send", "--data", file, "--device", line.path(), "--events"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(
        ran.out,
        "{\"event\":\"gpsStateChange\",\"state\":0}\n{\"event\":\"result\",\"error\":null}\n");
    EXPECT_EQ(
        ran.err,
        "note: The driver magellan-serial cannot send: nothing will be written to the device.\n"
        "magellangps: The driver magellan-serial cannot send. Connect a receiver that mounts as a "
        "disk, or name its location "
        "with --device. Missing: waypoints.\n");
}

TEST(Serial, PortHasNoBackups)
{
    const PseudoTerminal line;
    const auto ran = magellangps({"restore", "--device", line.path()});
    EXPECT_EQ(ran.status, 3);
    EXPECT_THAT(ran.out, IsEmpty());
}

struct Refusal {
    const char* what;
    std::string port;
    const char* why;
};

TEST(Serial, ReasonForAFailedOpenIsTheOnlyMessage)
{
    const PseudoTerminal busy;
    ASSERT_EQ(::flock(busy.otherProgram(), LOCK_EX), 0);
    for (const auto& [what, port, why] :
         std::vector<Refusal>{{"busy", busy.path(), "Another program has the port open: "},
                              {"gone", "/dev/tty-of-magellan-tests", "The port is gone."},
                              {"no port", "/dev/null", "This is not a serial port."}}) {
        const auto ran = magellangps({"acquire", "--device", port, "--events"});
        EXPECT_EQ(ran.status, 1) << what;
        EXPECT_THAT(ran.out, AllOf(HasSubstr("{\"event\":\"error\",\"error\":{\"domain\":"),
                                   Not(HasSubstr("startTransfer"))));
        EXPECT_THAT(ran.err, StartsWith(std::string{"magellangps: "} + why)) << what;
        EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), 1) << ran.err;
    }
}

TEST(Serial, DevicesListAPortNamedByTheUser)
{
    const TemporaryFolder home;
    const PseudoTerminal line;
    const auto ran = magellangps({"devices"}, {.environment = {storePorts(home, {line.path()})}});
    EXPECT_EQ(ran.status, 0);
    EXPECT_THAT(ran.out, AllOf(HasSubstr("magellan-serial"), HasSubstr(line.path())));
}

TEST(Serial, DevicesAskANamedPortForModelAndFirmware)
{
    const Simulator simulator;
    const auto ran = magellangps({"devices", "--ask", "--device", simulator.path()});
    EXPECT_EQ(ran.status, 0);
    EXPECT_THAT(ran.err, IsEmpty());
    EXPECT_THAT(ran.out, AllOf(HasSubstr("Model"), HasSubstr("SIMULATED RECEIVER  1.00")));
    const auto json = magellangps({"devices", "--ask", "--device", simulator.path(), "--json"});
    EXPECT_THAT(json.out, HasSubstr("\"model\":\"SIMULATED RECEIVER\",\"firmware\":\"1.00\"}"));
}

TEST(Serial, DevicesAskAReceiverThatExpectsAcknowledgements)
{
    const Simulator simulator{{"--handshake", "on"}};
    const auto ran = magellangps({"devices", "--ask", "--device", simulator.path()});
    EXPECT_EQ(ran.status, 0);
    EXPECT_THAT(ran.out, HasSubstr("SIMULATED RECEIVER  1.00"));
}

TEST(Serial, WhatDownloadsNeedDoesNotMatterToTheQuestion)
{
    const Simulator simulator{{"--fault", "ton:silence"}};
    const auto ran = magellangps({"devices", "--ask", "--device", simulator.path()});
    EXPECT_EQ(ran.status, 0);
    EXPECT_THAT(ran.err, IsEmpty());
    EXPECT_THAT(ran.out, HasSubstr("SIMULATED RECEIVER  1.00"));
}

TEST(Serial, DevicesSayWhichReceiverWasNotRestored)
{
    const Simulator simulator{{"--fault", "toff:silence"}};
    const auto ran = magellangps({"devices", "--ask", "--device", simulator.path()});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, AllOf(HasSubstr("did not acknowledge the command TOFF"),
                               EndsWith("Path: " + simulator.path() + "\n")));
    EXPECT_THAT(ran.out, HasSubstr("SIMULATED RECEIVER  1.00"));
}

TEST(Serial, DevicesAskAllPortsOfTheUserAndKeepTheSelectedOne)
{
    const TemporaryFolder home;
    const Simulator first;
    const Simulator second;
    const auto ran =
        magellangps({"devices", "--ask", "--json"},
                    {.environment = {storePorts(home, {first.path(), second.path()})}});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(countOf(ran.out, "\"model\":\"SIMULATED RECEIVER\""), 2);
    EXPECT_THAT(ran.out, HasSubstr(",\"selected\":0}"));
}

TEST(Serial, DevicesSayWhichReceiverDoesNotAnswerAndListAllOfThem)
{
    const TemporaryFolder home;
    const Simulator simulator;
    const std::vector<std::string> ports{"/dev/tty-of-magellan-tests", simulator.path()};
    const auto ran = magellangps({"devices", "--ask"}, {.environment = {storePorts(home, ports)}});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, AllOf(StartsWith("magellangps: The port is gone."), HasSubstr(ports[0])));
    EXPECT_THAT(ran.out, AllOf(HasSubstr(ports[0]), HasSubstr("SIMULATED RECEIVER")));
}

TEST(Serial, SignalEndsTheQuestionWithTheListAndItsStatus)
{
    const PseudoTerminal silent;
    Running running{
        {MAGELLAN_BIN_DIR "/magellangps", "devices", "--ask", "--device", silent.path()}};
    EXPECT_THAT(silent.read(8), HasSubstr("PMGN"));
    const int status = running.end(SIGINT);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 128 + SIGINT);
    EXPECT_THAT(running.readToEnd(), HasSubstr(silent.path()));
}

} // namespace
