// SPDX-License-Identifier: MIT
// Which entries of a folder tree reach a reader, and what ends the walk.

#include <gps/Value.h>
#include <plugin/common/FolderWalk.h>
#include <plugin/common/OperationAccount.h>
#include <plugin/common/OperationMonitor.h>
#include <support/AsNobody.h>
#include <support/LogCapture.h>
#include <support/RecordingReceiver.h>
#include <support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/stat.h>

namespace magellan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

/// The paths that the walk handed to its reader. A reader is a plain function, so this is global.
std::vector<std::string>& handedOver()
{
    static std::vector<std::string> paths;
    return paths;
}

std::optional<gps::Error> takeAll(gps::GPSOutputReceiver& /*status*/, const std::string& path,
                                  gps::FileAccount* /*account*/)
{
    handedOver().push_back(path);
    return std::nullopt;
}

std::optional<gps::Error> failAtB(gps::GPSOutputReceiver& status, const std::string& path,
                                  gps::FileAccount* account)
{
    (void)takeAll(status, path, account);
    return path.back() == 'b' ? std::optional{gps::Error{"domain", 42}} : std::nullopt;
}

std::optional<gps::Error> throwAtB(gps::GPSOutputReceiver& status, const std::string& path,
                                   gps::FileAccount* account)
{
    (void)takeAll(status, path, account);
    if (path.back() == 'b')
        throw gps::RangeError{"PMGNTRK", 7, 3};
    return std::nullopt;
}

std::optional<gps::Error> runOutOfMemory(gps::GPSOutputReceiver& /*status*/,
                                         const std::string& /*path*/, gps::FileAccount* /*account*/)
{
    throw std::bad_alloc{};
}

class FolderWalkTest : public testing::Test {
protected:
    FolderWalkTest() { handedOver().clear(); }

    std::optional<gps::Error> walk(Reader reader) { return walk(reader, folder_.path()); }
    std::optional<gps::Error> walk(Reader reader, const std::string& folder)
    {
        OperationAccount account{monitor_};
        return sendSelector(reader, status_, folder, {"tracks", monitor_, account});
    }

    /// The entries handed over, relative to the folder.
    [[nodiscard]] std::vector<std::string> entries() const
    {
        std::vector<std::string> relative;
        for (const auto& path : handedOver()) {
            EXPECT_THAT(path, StartsWith(folder_.path() + "/"));
            relative.push_back(path.substr(folder_.path().size() + 1));
        }
        return relative;
    }

    support::TemporaryFolder folder_;
    support::RecordingReceiver status_;
    OperationMonitor monitor_;
};

TEST_F(FolderWalkTest, AHiddenFolderIsSkippedWithItsContentsButAHiddenEntryDeeperDownIsNot)
{
    folder_.put(".Trashes/deleted.upt", "");
    folder_.put(".Trashes/501/old.upt", "");
    folder_.put(".hidden", "");
    folder_.put("sub/.hidden", "");
    folder_.put("sub/.folder/file", "");
    EXPECT_EQ(walk(takeAll), std::nullopt);
    EXPECT_THAT(entries(), ElementsAre("sub", "sub/.folder", "sub/.folder/file", "sub/.hidden"));
}

TEST_F(FolderWalkTest, EveryEntryReachesTheReaderInByteOrderAFolderBeforeItsContents)
{
    for (const auto* name : {"b.upt", "B.upt", "a/2", "a/1", "a.txt", "\xC3\xA9", "10", "9"})
        folder_.put(name, "");
    EXPECT_EQ(walk(takeAll), std::nullopt);
    EXPECT_THAT(entries(),
                ElementsAre("10", "9", "B.upt", "a", "a/1", "a/2", "a.txt", "b.upt", "\xC3\xA9"));
}

TEST_F(FolderWalkTest, AReadersErrorStopsTheWalkAndIsReturned)
{
    for (const auto* name : {"a", "b", "c"})
        folder_.put(name, "");
    const support::LogCapture log;
    EXPECT_EQ(walk(failAtB), (gps::Error{"domain", 42}));
    EXPECT_THAT(entries(), ElementsAre("a", "b"));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(FolderWalkTest, AnErrorForTheFirstFileLeavesTheLaterOnesUnread)
{
    folder_.put("b", "");
    folder_.put("c", "");
    EXPECT_TRUE(walk(failAtB));
    EXPECT_THAT(entries(), ElementsAre("b"));
}

TEST_F(FolderWalkTest, ARangeErrorEndsTheWalkLikeAnyErrorAndIsLogged)
{
    for (const auto* name : {"a", "b", "c"})
        folder_.put(name, "");
    const support::LogCapture log;
    const auto error = walk(throwAtB);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->domain(), "RangeError");
    EXPECT_EQ(error->path(), folder_.path("b"));
    EXPECT_THAT(entries(), ElementsAre("a", "b"));
    EXPECT_THAT(log.lines(), ElementsAre(StartsWith("MagellanGPSPlugin: ")));
    EXPECT_THAT(log.errors(), ElementsAre(*error));
}

TEST_F(FolderWalkTest, AnyExceptionOfAReaderEndsTheWalk)
{
    folder_.put("a", "");
    folder_.put("b", "");
    const support::LogCapture log;
    EXPECT_TRUE(walk(runOutOfMemory));
    EXPECT_THAT(log.lines(), SizeIs(1));
}

TEST_F(FolderWalkTest, AMissingFolderHasNoEntries)
{
    const support::LogCapture log;
    EXPECT_EQ(walk(takeAll, folder_.path("none")), std::nullopt);
    EXPECT_THAT(handedOver(), IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(FolderWalkTest, AFolderThatIsAFileHasNoEntriesAndIsLogged)
{
    const support::LogCapture log;
    EXPECT_EQ(walk(takeAll, folder_.put("file", "")), std::nullopt);
    EXPECT_THAT(handedOver(), IsEmpty());
    EXPECT_THAT(log.lines(), SizeIs(1));
}

TEST_F(FolderWalkTest, AFolderThatCannotBeListedHasNoEntriesAndIsLogged)
{
    folder_.put("a", "");
    std::filesystem::permissions(folder_.path(), std::filesystem::perms::none);
    {
        const support::AsNobody nobody;
        const support::LogCapture log;
        EXPECT_EQ(walk(takeAll), std::nullopt);
        EXPECT_THAT(handedOver(), IsEmpty());
        EXPECT_THAT(log.lines(), SizeIs(1));
    }
    std::filesystem::permissions(folder_.path(), std::filesystem::perms{0755});
}

TEST_F(FolderWalkTest, LinksAreEntriesOfTheirOwnAndALoopEnds)
{
    folder_.put("sub/file", "");
    std::filesystem::create_directory_symlink(folder_.path(), folder_.path("sub/loop"));
    std::filesystem::create_directory_symlink("self", folder_.path("self"));
    std::filesystem::create_directory_symlink(folder_.path("sub"), folder_.path("link"));
    EXPECT_EQ(walk(takeAll), std::nullopt);
    EXPECT_THAT(entries(), ElementsAre("link", "self", "sub", "sub/file", "sub/loop"));
}

TEST_F(FolderWalkTest, AFifoIsAnEntryLikeAnyOther)
{
    ASSERT_EQ(::mkfifo(folder_.path("fifo").c_str(), 0600), 0);
    EXPECT_EQ(walk(takeAll), std::nullopt);
    EXPECT_THAT(entries(), ElementsAre("fifo"));
}

TEST_F(FolderWalkTest, TheReaderGetsTheStatusObject)
{
    folder_.put("a", "");
    EXPECT_EQ(walk(
                  [](gps::GPSOutputReceiver& status, const std::string&, gps::FileAccount*) {
                      status.gpsStateChange(7);
                      return std::optional<gps::Error>{};
                  },
                  folder_.path()),
              std::nullopt);
    EXPECT_THAT(status_.calls(), ElementsAre("gpsStateChange 7"));
}

} // namespace
} // namespace magellan
