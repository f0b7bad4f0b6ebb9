// SPDX-License-Identifier: MIT

#include "host/transfer/RenamedTracks.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

namespace {

using Action = gps::PlannedFile::Action;
using Result = host::SentFile::Result;

// A send of two tracks to a folder with one file, planned as "1.log" and "2.log".
class RenamedTracks : public testing::Test {
protected:
    RenamedTracks()
    {
        folder_.put("tracks/0.log", "old");
        plan_.files = {track("1.log", "first"), track("2.log", "second")};
    }

    [[nodiscard]] gps::PlannedFile track(const std::string& name, const std::string& content) const
    {
        return {path(name), Action::kCreate, content, std::nullopt, "tracks"};
    }

    [[nodiscard]] std::string path(const std::string& name) const
    {
        return folder_.path("tracks/" + name);
    }

    void listFolders() { tracks_.emplace(plan_); }
    void put(const std::string& name, const std::string& content) const
    {
        folder_.put("tracks/" + name, content);
    }

    [[nodiscard]] std::vector<host::SentFile> check() const
    {
        auto files = host::checkFiles(plan_, {});
        tracks_->find(plan_, files);
        return files;
    }

    support::TemporaryFolder folder_;
    gps::SendPlan plan_;
    std::optional<host::RenamedTracks> tracks_;
};

TEST_F(RenamedTracks, TrackInAnotherNewFileIsFound)
{
    listFolders();
    put("2.log", "second");
    put("3.log", "first");
    const auto files = check();
    EXPECT_EQ(files[0].result, Result::kRenamed);
    EXPECT_EQ(files[0].path, path("1.log"));
    EXPECT_EQ(files[0].writtenPath, path("3.log"));
    EXPECT_EQ(files[1].result, Result::kWritten);
    EXPECT_EQ(files[1].writtenPath, "");
}

TEST_F(RenamedTracks, TracksThatHaveSwappedTheirNamesAreFound)
{
    listFolders();
    put("1.log", "second");
    put("2.log", "first");
    const auto files = check();
    EXPECT_EQ(files[0].result, Result::kRenamed);
    EXPECT_EQ(files[0].writtenPath, path("2.log"));
    EXPECT_EQ(files[1].result, Result::kRenamed);
    EXPECT_EQ(files[1].writtenPath, path("1.log"));
}

TEST_F(RenamedTracks, TrackIsFoundIfItsPlannedFileCannotBeRead)
{
    listFolders();
    folder_.makeFolder("tracks/1.log");
    put("3.log", "first");
    const auto files = check();
    EXPECT_EQ(files[0].result, Result::kRenamed);
    EXPECT_EQ(files[1].result, Result::kMissing);
}

TEST_F(RenamedTracks, EqualTracksNeedAFileEach)
{
    plan_.files[1].content = "first";
    listFolders();
    put("1.log", "first");
    EXPECT_EQ(check()[1].result, Result::kMissing) << "the file is the first track";
    put("3.log", "first");
    EXPECT_EQ(check()[1].writtenPath, path("3.log"));
    std::filesystem::remove(path("1.log"));
    const auto files = check();
    EXPECT_EQ(files[0].writtenPath, path("3.log"));
    EXPECT_EQ(files[1].result, Result::kMissing);
}

TEST_F(RenamedTracks, FileThatExistedBeforeTheSendIsNotTheTrack)
{
    put("3.log", "first");
    listFolders();
    EXPECT_EQ(check()[0].result, Result::kMissing);
}

TEST_F(RenamedTracks, FileWithOtherContentIsNotTheTrack)
{
    listFolders();
    put("3.log", "firs");
    EXPECT_EQ(check()[0].result, Result::kMissing);
    put("3.log", "first\r\n");
    EXPECT_EQ(check()[0].result, Result::kMissing);
}

TEST_F(RenamedTracks, FileThatTheDeviceDoesNotListAsATrackIsNotTheTrack)
{
    listFolders();
    put("3.tmp", "first");
    put(".3.log", "first");
    put("folder/3.log", "first");
    EXPECT_EQ(check()[0].result, Result::kMissing);
}

TEST_F(RenamedTracks, NothingIsFoundInAFolderThatCouldNotBeListedBefore)
{
    std::filesystem::remove_all(folder_.path("tracks"));
    folder_.put("tracks", "a file");
    listFolders();
    std::filesystem::remove(folder_.path("tracks"));
    put("3.log", "first");
    EXPECT_EQ(check()[0].result, Result::kMissing);
}

TEST_F(RenamedTracks, OnlyTracksInNewFilesAreLookedFor)
{
    plan_.files[0].kind = "waypoints";
    plan_.files[1].action = Action::kMerge;
    listFolders();
    put("3.log", "first");
    put("4.log", "second");
    const auto files = check();
    EXPECT_EQ(files[0].result, Result::kMissing);
    EXPECT_EQ(files[1].result, Result::kMissing);
}

} // namespace
