// SPDX-License-Identifier: MIT
// Broken receivers and files: a clear error or an empty result, never a crash, a hang or a
// half-written file.

#include "system/Program.h"
#include "system/Receiver.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;
using support::acquire;
using support::magellangps;
using support::Ran;
using support::Receiver;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr char kClosing[] =
    "{\"event\":\"gpsStateChange\",\"state\":0}\n{\"event\":\"result\",\"error\":null}\n";

// A copy of the program with all that it needs, in a folder where an unprivileged user can run it.
class Copy : public support::TemporaryFolder {
public:
    Copy()
    {
        for (const char* name : {"magellangps", "libgpsplatform.so.1", "MagellanGPSPlugin.bundle"})
            fs::copy(fs::path{MAGELLAN_BIN_DIR} / name, path(name), fs::copy_options::recursive);
    }

    Ran runAsNobody(std::vector<std::string> words) const
    {
        words.insert(words.begin(), path("magellangps"));
        if (::geteuid() == 0)
            words.insert(words.begin(),
                         {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"});
        return support::run(words, {.environment = {"LD_LIBRARY_PATH=" + path()}});
    }
};

class BadFile : public testing::TestWithParam<const char*> {
protected:
    // One kind of broken file, and its name.
    static void put(const support::TemporaryFolder& folder, const std::string& name)
    {
        const std::string sort = GetParam();
        if (sort == "not ASCII")
            folder.put(name, "\xFF\xFE");
        else if (sort == "link loop")
            fs::create_symlink(fs::path{name}.filename(), folder.path(name));
        else if (sort == "dangling link")
            fs::create_symlink("gone", folder.path(name));
        else if (sort == "FIFO")
            ASSERT_EQ(::mkfifo(folder.path(name).c_str(), 0666), 0);
        else
            folder.makeFolder(name);
    }
};

TEST_P(BadFile, AmongTheWaypointsCostsOnlyTheRestOfTheWaypoints)
{
    const Receiver receiver;
    put(receiver, "Points/b.upt");
    receiver.put("trip.gpx", "old");
    const auto ran = acquire(receiver, {"-o", receiver.path("trip.gpx")});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("was continued with: routes, tracks."));
    EXPECT_THAT(ran.err, HasSubstr("Points/b.upt"));
    EXPECT_THAT(ran.err, Not(HasSubstr("make sure your Magellan device is connected")));
    EXPECT_THAT(ran.err, HasSubstr("trip.partial.gpx"));
    EXPECT_EQ(receiver.read("trip.gpx"), "old");
    EXPECT_THAT(receiver.read("trip.partial.gpx"), HasSubstr("<name>Camp</name>"));
    EXPECT_THAT(receiver.read("trip.partial.gpx"), HasSubstr("<trkpt "));
    EXPECT_THAT(receiver.read("trip.partial.gpx"), HasSubstr("<name>Loop</name>"));
    EXPECT_THAT(receiver.read("trip.partial.gpx"), HasSubstr("</gpx>"));
}

TEST_P(BadFile, AmongTheWaypointsIsNoticedWhenNothingElseWasRequested)
{
    const Receiver receiver;
    put(receiver, "Points/b.upt");
    const auto ran =
        acquire(receiver, {"--no-routes", "--no-tracks", "-o", receiver.path("trip.gpx")});
    EXPECT_EQ(ran.status, 1);
    EXPECT_FALSE(fs::exists(receiver.path("trip.gpx")));
    EXPECT_THAT(receiver.read("trip.partial.gpx"), HasSubstr("<name>Camp</name>"));
}

TEST_P(BadFile, AmongTheTracksCostsOnlyItselfAndKeepsTheOlderFile)
{
    const Receiver receiver;
    put(receiver, "Tracks/0.log");
    receiver.put("trip.gpx", "old");
    const auto ran = acquire(receiver, {"-o", receiver.path("trip.gpx"), "--split-gap", "off"});
    const bool isFolder = std::string{GetParam()} == "folder";
    EXPECT_EQ(ran.status, isFolder ? 0 : 1) << ran.err;
    EXPECT_THAT(receiver.read(isFolder ? "trip.gpx" : "trip.partial.gpx"), HasSubstr("<trkpt "));
    EXPECT_THAT(ran.err,
                isFolder ? testing::Matcher<std::string>(IsEmpty()) : HasSubstr("Tracks/0.log"));
    EXPECT_EQ(receiver.read("trip.gpx") == "old", !isFolder);
}

TEST_P(BadFile, ImportedAsWaypointsIsTheReadersError)
{
    const support::TemporaryFolder folder;
    put(folder, "a.upt");
    const auto ran =
        magellangps({"import", folder.path("a.upt"), "--events", "-o", folder.path("out.gpx")});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(
        ran.out,
        HasSubstr("{\"event\":\"gpsStateChange\",\"state\":0}\n{\"event\":\"result\",\"error\":{"));
    EXPECT_THAT(ran.err, HasSubstr("a.upt"));
    EXPECT_FALSE(fs::exists(folder.path("out.gpx")));
}

TEST_P(BadFile, ImportedAsATrackIsNoticed)
{
    const support::TemporaryFolder folder;
    put(folder, "a.log");
    const auto ran = magellangps({"import", folder.path("a.log"), "--events"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("a.log"));
}

TEST_P(BadFile, AsALanguageFileGivesTheDefaultFoldersAndIsNotTheSameAsNone)
{
    const Receiver receiver;
    fs::remove(receiver.path("USBTRANS/LANGUAGE.DAT"));
    put(receiver, "USBTRANS/LANGUAGE.DAT");
    const auto ran = acquire(receiver, {"--events"});
    EXPECT_THAT(ran.out, testing::EndsWith(kClosing));
    EXPECT_THAT(ran.out, Not(HasSubstr("wayPoint")));
    const bool isAbsent = std::string{GetParam()} == "dangling link";
    EXPECT_EQ(ran.status, isAbsent ? 0 : 1) << ran.err;
    EXPECT_EQ(ran.err.find("LANGUAGE.DAT") == std::string::npos, isAbsent) << ran.err;
}

INSTANTIATE_TEST_SUITE_P(Each, BadFile,
                         testing::Values("not ASCII", "link loop", "dangling link", "FIFO",
                                         "folder"),
                         [](const auto& row) {
                             std::string name = row.param;
                             std::erase(name, ' ');
                             return name;
                         });

TEST(BadInput, TrackFileWithoutPermissionFailsTheDownload)
{
    const Copy copy;
    const Receiver receiver;
    fs::permissions(receiver.path("Tracks/a.log"), fs::perms::none);
    const auto ran = copy.runAsNobody({"acquire", "--test-folder", receiver.path(), "--events"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.out, Not(HasSubstr("trackPoint")));
    EXPECT_THAT(ran.err, HasSubstr("could not be read because permission was refused"));
    EXPECT_THAT(ran.err, HasSubstr("Tracks/a.log"));
}

TEST(BadInput, UnitFileWithoutPermissionMakesTheDeviceUnauthorized)
{
    const Copy copy;
    const Receiver receiver;
    fs::permissions(receiver.path("USBTRANS/UNIT_ID.DAT"), fs::perms::none);
    EXPECT_THAT(copy.runAsNobody({"devices", "--json", "--test-folder", receiver.path()}).out,
                HasSubstr("\"authorized\":false"));
    EXPECT_EQ(copy.runAsNobody({"acquire", "--device", receiver.path()}).status, 3);
}

TEST(BadInput, OutputFolderWithoutPermissionIsAnError)
{
    const Copy copy;
    const Receiver receiver;
    const auto ran =
        copy.runAsNobody({"acquire", "--test-folder", receiver.path(), "-o", "/proc/a.gpx"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("/proc/a.gpx"));
}

TEST(BadInput, ShortSentenceEndsAnImportWithARangeError)
{
    const support::TemporaryFolder folder;
    folder.put("a.log",
               support::sentences({support::kFirstFix, support::kShortFix, support::kSecondFix}));
    folder.put("out.gpx", "old");
    const auto ran =
        magellangps({"import", folder.path("a.log"), "--events", "-o", folder.path("out.gpx")});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(
        ran.out,
        HasSubstr(
            "{\"event\":\"endTransfer\",\"kind\":1}\n{\"event\":\"gpsStateChange\",\"state\":0}\n"
            "{\"event\":\"result\",\"error\":{\"domain\":\"RangeError\",\"code\":0,\"description\":"
            "\""));
    EXPECT_THAT(ran.out, HasSubstr("PMGNTRK"));
    EXPECT_EQ(folder.read("out.gpx"), "old");
    EXPECT_THAT(folder.read("out.partial.gpx"), HasSubstr("<trkpt lat=\"46.5\""));
}

TEST(BadInput, ShortSentenceEndsADownload)
{
    const Receiver receiver;
    receiver.put("Points/b.upt", support::sentences({"PMGNWPL,4630.00000"}));
    const auto ran = acquire(receiver, {"--events"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("Missing: routes, tracks"));
    EXPECT_THAT(ran.err, HasSubstr("PMGNWPL"));
    EXPECT_THAT(ran.out, testing::EndsWith(kClosing));
}

TEST(BadInput, ShortSentenceInTheLastKindIsNoticedWhenNoKindIsMissing)
{
    const Receiver receiver;
    receiver.put("Tracks/a.log", support::sentences({support::kFirstFix, support::kShortFix}));
    receiver.put("trip.gpx", "old");
    const auto ran = acquire(receiver, {"-o", receiver.path("trip.gpx")});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("PMGNTRK"));
    EXPECT_THAT(ran.err, HasSubstr("Tracks/a.log"));
    EXPECT_EQ(receiver.read("trip.gpx"), "old");
    EXPECT_THAT(receiver.read("trip.partial.gpx"), HasSubstr("<trkpt lat=\"46.5\""));
}

TEST(BadInput, NulBytesAndBrokenLinesAreSkipped)
{
    const Receiver receiver;
    receiver.put("Tracks/a.log", std::string("\0\0$PMGNTRK\0\r\n$*00\r\n$PMGNTRK,x*00\r\n", 34) +
                                     support::sentences({support::kFirstFix}) + "$PMGNTRK,4645.0");
    const auto ran = acquire(receiver, {"--events", "--no-waypoints", "--no-routes"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.out, HasSubstr("\"latitude\":46.5"));
    EXPECT_THAT(ran.out, Not(HasSubstr("\"latitude\":46.75")));
}

TEST(BadInput, EmptyReceiverIsAnEmptyResult)
{
    const support::TemporaryFolder receiver;
    receiver.put("USBTRANS/UNIT_ID.DAT", "");
    const auto ran = acquire(receiver, {"-o", receiver.path("a.gpx")});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(receiver.read("a.gpx"), Not(HasSubstr("<wpt")));
}

TEST(BadInput, LinkedFolderIsNotDescendedInto)
{
    const Receiver receiver;
    fs::create_directory_symlink("..", receiver.path("Tracks/loop"));
    const auto ran = acquire(receiver, {"--events"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.out, testing::EndsWith(kClosing));
}

TEST(BadInput, VolumeThatVanishesInTheMiddleEndsTheDownloadAndKeepsWhatArrived)
{
    // More records than the event queue holds, so that the plug-in still has files to read when the
    // first event arrives.
    std::string points;
    for (int i = 0; i < 5'000; ++i)
        points += support::sentences(
            {"PMGNWPL,4630.00000,N,00715.00000,E,0001200,M,P" + std::to_string(i) + ",,ab"});
    const Receiver receiver;
    for (int i = 0; i < 20; ++i)
        receiver.put("Points/" + std::to_string(i) + ".upt", points);
    const support::TemporaryFolder output;
    const auto ran =
        support::run({"sh", "-c",
                      "{ \"$0\" acquire --events --test-folder \"$1\" -o \"$2/trip.gpx\"; echo $? "
                      ">\"$2/status\"; } | "
                      "{ head -n 1; rm -r \"$1\"; tail -n 2; }",
                      MAGELLAN_BIN_DIR "/magellangps", receiver.path(), output.path()});
    EXPECT_EQ(ran.out, std::string{"{\"event\":\"gpsStateChange\",\"state\":1}\n"} + kClosing);
    EXPECT_THAT(ran.err, HasSubstr("Missing: routes, tracks"));
    EXPECT_THAT(ran.err, HasSubstr(".upt"));
    EXPECT_EQ(output.read("status"), "1\n");
    EXPECT_FALSE(fs::exists(output.path("trip.gpx")));
    EXPECT_THAT(output.read("trip.partial.gpx"), HasSubstr("</gpx>"));
}

TEST(BadInput, VeryManyFilesAreRead)
{
    constexpr int kMany = MAGELLAN_SANITIZED ? 10000 : 100000;
    const Receiver receiver;
    for (int i = 0; i < kMany; ++i)
        receiver.put("Tracks/" + std::to_string(i) + ".log", "");
    const auto ran = acquire(receiver, {"--events"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.out, testing::EndsWith(kClosing));
}

// More than the thousand errors that are kept.
TEST(BadInput, ThousandsOfUnreadableFilesAreAFewLines)
{
    const Receiver receiver;
    for (int i = 0; i < 3000; ++i)
        receiver.put("Tracks/" + std::to_string(i) + ".log", "\xFF");
    const auto ran = acquire(receiver, {"--events"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_LE(std::count(ran.err.begin(), ran.err.end(), '\n'), 11);
    EXPECT_THAT(ran.err, HasSubstr("And 2990 more"));
}

#if !MAGELLAN_SANITIZED // the gigabyte would take minutes
TEST(BadInput, FileOfOneLineOfAGigabyteIsReadWhateverItsKind)
{
    const Receiver receiver;
    {
        std::ofstream file{receiver.path("Tracks/a.log"), std::ios::binary};
        const std::string piece(std::size_t{1} << 20, 'x');
        for (int i = 0; i < 1024; ++i)
            file << piece;
        ASSERT_TRUE(file.good());
    }
    for (const char* name : {"Points/b.upt", "Caches/b.gs", "Ways/b.rte"})
        fs::create_hard_link(receiver.path("Tracks/a.log"), receiver.path(name));
    const auto ran = acquire(receiver, {"--events"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.out, HasSubstr("\"name\":\"Loop\""));
    EXPECT_THAT(ran.out, testing::EndsWith(kClosing));
}
#endif

TEST(BadInput, FullOutputIsAnErrorAndLeavesNothing)
{
    const Receiver receiver;
    EXPECT_EQ(acquire(receiver, {"-o", "/dev/full", "--format", "gpx"}).status, 1);
    for (const char* option : {"--events", "-q"}) {
        const auto ran = magellangps({"acquire", "--test-folder", receiver.path(), option},
                                     {.standardOutput = "/dev/full"});
        EXPECT_EQ(ran.status, 1);
        EXPECT_THAT(ran.err, HasSubstr("No space left on device"));
    }
    EXPECT_EQ(magellangps({"info"}, {.standardOutput = "/dev/full"}).status, 1);
    EXPECT_EQ(magellangps({"--help"}, {.standardOutput = "/dev/full"}).status, 1);
}

TEST(BadInput, MissingOutputFolderIsAnError)
{
    const Receiver receiver;
    const auto ran = acquire(receiver, {"-o", receiver.path("no/a.gpx")});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("No such file or directory"));
}

TEST(BadInput, BrokenPlugInIsStatus3)
{
    const support::TemporaryFolder folder;
    for (const auto& bundle :
         {folder.path("none.bundle"), folder.path(), std::string{"/dev/null"}}) {
        const auto ran = magellangps({"--plugin", bundle, "info"});
        EXPECT_EQ(ran.status, 3);
        EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), 1) << ran.err;
    }
    fs::copy(MAGELLAN_BIN_DIR "/MagellanGPSPlugin.bundle", folder.path("copy.bundle"),
             fs::copy_options::recursive);
    fs::remove_all(folder.path("copy.bundle/Contents/Linux"));
    EXPECT_EQ(magellangps({"--plugin", folder.path("copy.bundle"), "info"}).status, 3);
}

TEST(BadInput, MissingPlugInIsStatus3)
{
    const support::TemporaryFolder folder;
    for (const char* name : {"magellangps", "libgpsplatform.so.1"})
        fs::copy(fs::path{MAGELLAN_BIN_DIR} / name, folder.path(name));
    const auto ran = support::run({folder.path("magellangps"), "devices"},
                                  {.environment = {"LD_LIBRARY_PATH=" + folder.path()}});
    EXPECT_EQ(ran.status, 3);
    EXPECT_THAT(ran.err, HasSubstr("--plugin"));
}

TEST(BadInput, PlugInWithoutAnyDriverIsStatus3OnlyWhenOneIsNeeded)
{
    const support::TemporaryFolder folder;
    fs::copy(MAGELLAN_BIN_DIR "/MagellanGPSPlugin.bundle", folder.path("copy.bundle"),
             fs::copy_options::recursive);
    for (const auto& entry :
         fs::directory_iterator{folder.path("copy.bundle/Contents/Resources")}) {
        if (entry.path().filename().string().ends_with("GPS.plist"))
            fs::remove(entry.path());
    }
    EXPECT_THAT(magellangps({"--plugin", folder.path("copy.bundle"), "info", "--json"}).out,
                HasSubstr("\"drivers\":[]"));
    EXPECT_EQ(magellangps({"--plugin", folder.path("copy.bundle"), "acquire"}).status, 3);
    EXPECT_EQ(magellangps({"--plugin", folder.path("copy.bundle"), "import", "a.log"}).status, 3);
}

} // namespace
