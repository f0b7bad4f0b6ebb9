// SPDX-License-Identifier: MIT
// `watch` with the built program, on receivers that are connected from the start.

#include "system/Program.h"
#include "system/Receiver.h"
#include "system/Running.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/wait.h>

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

class WatchCommand : public testing::Test {
protected:
    /// `watch` with these arguments and a temporary state folder.
    [[nodiscard]] std::vector<std::string> words(const std::vector<std::string>& options) const
    {
        std::vector<std::string> all{"/usr/bin/env",
                                     "XDG_STATE_HOME=" + state_.path(),
                                     MAGELLAN_BIN_DIR "/magellangps",
                                     "watch",
                                     "--into",
                                     out_.path("gps")};
        all.insert(all.end(), options.begin(), options.end());
        return all;
    }

    /// Runs it until it has printed a text, then stops it. @return  everything it printed
    std::string watchUntil(std::string_view text, std::vector<std::string> options = {}) const
    {
        options.insert(options.end(), {"--test-folder", receiver_.path()});
        support::Running watching{words(options)};
        watching.readUntil(text);
        const int status = watching.end(SIGTERM);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
        return watching.readUntil("stopped: on request\n");
    }

    /// The names of the files that were written.
    [[nodiscard]] std::vector<std::string> files() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator{out_.path("gps")})
            names.push_back(entry.path().filename().string());
        const auto isHidden = [](const std::string& name) {
            return name.front() == '.';
        }; // the temporary file of a download
        names.erase(std::remove_if(names.begin(), names.end(), isHidden), names.end());
        return names;
    }

    support::Receiver receiver_;
    support::TemporaryFolder out_;
    support::TemporaryFolder state_;
};

TEST_F(WatchCommand, SavesAConnectedReceiverIntoItsOwnFileAndEndsWithStatus0)
{
    const auto printed = watchUntil("\nsaved: ");
    EXPECT_THAT(printed, StartsWith("watching: files are saved in " + out_.path("gps") +
                                    "\nappeared: Magellan device 42, " + receiver_.path() +
                                    "\nsaved: " + out_.path("gps/42-")));
    EXPECT_THAT(printed, HasSubstr(".gpx: 2 waypoints, 1 geocache, 1 route, 1 track (2 points)\n"));
    ASSERT_THAT(files(), SizeIs(1));
    EXPECT_THAT(files().front(), testing::MatchesRegex("42-[0-9]{8}T[0-9]{6}Z[.]gpx"));
    EXPECT_THAT(out_.read("gps/" + files().front()), HasSubstr("</gpx>"));
    EXPECT_TRUE(std::filesystem::is_empty(state_.path()))
        << "without --new-only nothing is remembered";
}

TEST_F(WatchCommand, EveryTerminatingSignalEndsIt)
{
    for (const int signal : {SIGINT, SIGHUP}) {
        support::Running watching{words({})};
        watching.readUntil("watching: ");
        const int status = watching.end(signal);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << signal;
        EXPECT_THAT(watching.readUntil("stopped"), HasSubstr("stopped: on request\n"));
    }
}

TEST_F(WatchCommand, MissingDriverIsReported)
{
    support::Running watching{words({"--driver", "magelan"})};
    EXPECT_THAT(watching.readUntil("note: "), HasSubstr("watching: "));
    EXPECT_THAT(watching.readUntil("are: "),
                HasSubstr("\nnote: There is no driver \"magelan\" so far. The drivers are: "));
    EXPECT_THAT(watchUntil("\nsaved: ", {"--driver", "magellan"}), Not(HasSubstr("note: ")));
}

TEST_F(WatchCommand, SignalIgnoredAtTheStartDoesNotEndIt)
{
    receiver_.put("Tracks/a.log", "\xFF\r\n"); // it cannot be read, so watch keeps trying
    auto ignoring = words({"--test-folder", receiver_.path()});
    ignoring.insert(ignoring.begin() + 1, "--ignore-signal=HUP");
    support::Running watching{ignoring};
    watching.readUntil(" Trying again.\n");
    watching.send(SIGHUP);
    receiver_.put("Tracks/a.log", support::sentences({support::kFirstFix}));
    EXPECT_THAT(watching.readUntil("\nsaved: "), HasSubstr("\nsaved: "));
    EXPECT_THAT(watching.read(), Not(HasSubstr("stopped")));
}

TEST_F(WatchCommand, FormatIsTheRequestedOne)
{
    (void)watchUntil("\nsaved: ", {"--format", "jsonl"});
    ASSERT_THAT(files(), SizeIs(1));
    EXPECT_THAT(files().front(), testing::EndsWith("Z.jsonl"));
    EXPECT_THAT(out_.read("gps/" + files().front()),
                HasSubstr(R"({"event":"newTrack","track":{"name":"Day 1"}})"));
}

TEST_F(WatchCommand, NewOnlySavesEachRecordOnce)
{
    (void)watchUntil("\nsaved: ", {"--new-only"});
    EXPECT_THAT(watchUntil("\nnothing new: ", {"--new-only"}),
                HasSubstr("\nnothing new: Magellan device 42, " + receiver_.path() + "\n"));
    EXPECT_THAT(files(), SizeIs(1));

    receiver_.put("Points/b.upt",
                  support::sentences({"PMGNWPL,4600.00000,N,00715.00000,E,0000000,M,Well,,a"}));
    EXPECT_THAT(watchUntil("\nsaved: ", {"--new-only", "--format", "jsonl"}),
                HasSubstr(".jsonl: 1 waypoint\n"));
    EXPECT_THAT(watchUntil("\nnothing new: ", {"--new-only"}), HasSubstr("\nnothing new: "));
}

TEST_F(WatchCommand, DamagedListOfKnownRecordsIsSetAsideAndEverythingIsNewAgain)
{
    (void)watchUntil("\nsaved: ", {"--new-only"});
    state_.put("magellangps/watch/42.txt", "damage");
    const auto printed = watchUntil("\nsaved: ", {"--new-only", "--format", "jsonl"});
    EXPECT_THAT(printed, HasSubstr("\nnote: The list of saved records is damaged, so every record "
                                   "counts as new."));
    EXPECT_THAT(printed,
                HasSubstr(".jsonl: 2 waypoints, 1 geocache, 1 route, 1 track (2 points)\n"));
    EXPECT_EQ(state_.read("magellangps/watch/42.txt.damaged"), "damage");
    EXPECT_THAT(watchUntil("\nnothing new: ", {"--new-only"}), Not(HasSubstr("note: ")));
}

TEST_F(WatchCommand, ListOfKnownRecordsThatCannotBeReadIsReportedAndKept)
{
    (void)watchUntil("\nsaved: ", {"--new-only"});
    const auto list = state_.path("magellangps/watch/42.txt");
    const auto away = state_.path("magellangps/watch/away");
    std::filesystem::rename(list, away);
    std::filesystem::create_symlink("42.txt", list); // a link to itself cannot be opened
    const auto printed = watchUntil("\nsaved: ", {"--new-only", "--format", "jsonl"});
    EXPECT_THAT(printed, HasSubstr("\nnote: The list of saved records cannot be read (Too many "
                                   "levels of symbolic links), so every record counts as new. "));
    EXPECT_THAT(printed,
                HasSubstr(".jsonl: 2 waypoints, 1 geocache, 1 route, 1 track (2 points)\n"));
    EXPECT_TRUE(std::filesystem::is_symlink(list));
    EXPECT_FALSE(std::filesystem::exists(list + ".damaged"));
    std::filesystem::rename(away, list);
    EXPECT_THAT(watchUntil("\nnothing new: ", {"--new-only"}), Not(HasSubstr("note: ")));
}

TEST_F(WatchCommand, EmptyReceiverMakesNoFile)
{
    for (const char* folder : {"Points", "Caches", "Ways", "Tracks"})
        std::filesystem::remove_all(receiver_.path(folder));
    EXPECT_THAT(watchUntil("\nnothing to save: "),
                HasSubstr("\nnothing to save: Magellan device 42, "));
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(WatchCommand, FilesThatCannotBeReadYetAreTriedAgain)
{
    receiver_.put("Tracks/a.log",
                  "\xFF\r\n"); // a volume that is still being filled may contain such bytes
    support::Running watching{words({"--test-folder", receiver_.path()})};
    EXPECT_THAT(watching.readUntil(" Trying again.\n"),
                HasSubstr("\nfailed: Magellan device 42, " + receiver_.path() + ": "));
    EXPECT_THAT(files(), IsEmpty());
    receiver_.put("Tracks/a.log", support::sentences({support::kFirstFix}));
    EXPECT_THAT(watching.readUntil("\nsaved: "), HasSubstr("\nsaved: "));
    EXPECT_THAT(watching.readUntil(" point)"), HasSubstr("1 track (1 point)"));
}

TEST_F(WatchCommand, ReadableRecordsAreKeptInTheEndAndOtherReceiversAreNotDelayed)
{
    const support::Receiver other;
    other.put("USBTRANS/UNIT_ID.DAT", "Serial Number=43\r\n");
    receiver_.put("Tracks/b.log", "\xFF\r\n");
    support::Running watching{
        words({"--new-only", "--test-folder", receiver_.path(), "--test-folder", other.path()})};
    EXPECT_THAT(watching.readUntil("gps/43-"),
                HasSubstr(" Trying again.\nsaved: " + out_.path("gps/43-")));
    EXPECT_THAT(watching.readUntil(".partial.gpx\n"), HasSubstr("Path: " + out_.path("gps/42-")));
    EXPECT_THAT(files(), SizeIs(2));
}

TEST_F(WatchCommand, FolderThatCannotBeWrittenIsAnErrorAtOnce)
{
    const auto ran = support::magellangps({"watch", "--into", "/proc/none"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("/proc/none"));
    EXPECT_THAT(ran.out, IsEmpty());
}

TEST_F(WatchCommand, FileOrNothingInPlaceOfAFolderIsAnErrorAtOnce)
{
    const auto file = out_.put("file", "");
    const auto ran = support::magellangps({"watch", "--into", file});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.err, "magellangps: A folder cannot be created: File exists. There is a file "
                       "where a folder is needed. Choose another one. Path: " +
                           file + '\n');
    const auto none = support::magellangps({"watch", "--into", ""});
    EXPECT_EQ(none.status, 2);
    EXPECT_THAT(none.err, HasSubstr("--into needs a folder; \".\" is the current one"));
}

TEST_F(WatchCommand, NewOnlyNeedsAStateFolder)
{
    const auto ran = support::run(
        {"/usr/bin/env", "-i", MAGELLAN_BIN_DIR "/magellangps", "watch", "--new-only"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("XDG_STATE_HOME"));
}

} // namespace
