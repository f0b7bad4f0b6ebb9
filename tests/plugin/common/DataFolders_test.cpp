// SPDX-License-Identifier: MIT
// Which folder names of a receiver are accepted.

#include <gps/Value.h>
#include <plugin/common/DataFolders.h>
#include <support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace magellan {
namespace {

TEST(FolderKey, IsThatOfTheFolderDictionary)
{
    EXPECT_EQ(folderKey(RecordKind::kTracks), "TrackLogs");
    EXPECT_EQ(folderKey(RecordKind::kWaypoints), "MyPOIs");
    EXPECT_EQ(folderKey(RecordKind::kGeocaches), "Geocaches");
    EXPECT_EQ(folderKey(RecordKind::kRoutes), "Routes");
}

TEST(DataFolderPath, JoinsTheVolumeAndTheName)
{
    EXPECT_EQ(dataFolderPath({{"MyPOIs", "My POIs"}}, RecordKind::kWaypoints, "/media/GPS"),
              "/media/GPS/My POIs");
    EXPECT_EQ(dataFolderPath({{"MyPOIs", "data/points"}}, RecordKind::kWaypoints, "/media/GPS/"),
              "/media/GPS/data/points");
}

TEST(DataFolderPath, AMissingOrEmptyNameOrOneThatIsNotATextHasNoPath)
{
    EXPECT_EQ(dataFolderPath({{"Routes", "Routes"}}, RecordKind::kWaypoints, "/media/GPS"),
              std::nullopt);
    EXPECT_EQ(dataFolderPath({{"MyPOIs", ""}}, RecordKind::kWaypoints, "/media/GPS"), std::nullopt);
    EXPECT_EQ(dataFolderPath({{"MyPOIs", 7}}, RecordKind::kWaypoints, "/media/GPS"), std::nullopt);
}

TEST(DataFolderPath, ANameThatLeadsOutOfTheVolumeHasNoPath)
{
    for (const auto* name : {"..", "../x", "x/..", "x/../y", "/..", "x/../../y", "../"})
        EXPECT_EQ(dataFolderPath({{"MyPOIs", name}}, RecordKind::kWaypoints, "/media/GPS"),
                  std::nullopt)
            << name;
    for (const auto* name : {"..x", "x..", "...", "x/..y"})
        EXPECT_EQ(dataFolderPath({{"MyPOIs", name}}, RecordKind::kWaypoints, "/media/GPS"),
                  "/media/GPS/" + std::string{name})
            << name;
}

TEST(DataFolderPath, ANameWithANulByteHasNoPathSinceTheSystemWouldReadOnlyTheTextBeforeIt)
{
    using namespace std::string_view_literals;
    for (const auto name : {"..\0"sv, "..\0x"sv, "x/..\0/y"sv, "My POIs\0"sv, "\0"sv})
        EXPECT_EQ(dataFolderPath({{"MyPOIs", name}}, RecordKind::kWaypoints, "/media/GPS"),
                  std::nullopt)
            << name;
}

TEST(DataFolderPath, ANameThatBeginsWithASlashIsJoinedLikeAnyOther)
{
    EXPECT_EQ(dataFolderPath({{"MyPOIs", "/x"}}, RecordKind::kWaypoints, "/media/GPS"),
              "/media/GPS/x");
    EXPECT_EQ(dataFolderPath({{"MyPOIs", "/etc/passwd"}}, RecordKind::kWaypoints, "/media/GPS"),
              "/media/GPS/etc/passwd");
}

TEST(DataFolderPath, ALinkIsFollowedOnlyWithinTheVolume)
{
    const support::TemporaryFolder folder;
    const auto volume = folder.makeFolder("volume");
    folder.makeFolder("volume/Points");
    std::filesystem::create_symlink("Points", volume + "/inside");
    std::filesystem::create_symlink(folder.makeFolder("home"), volume + "/outside");
    const auto path = [&](const char* name) {
        return dataFolderPath({{"MyPOIs", name}}, RecordKind::kWaypoints, volume);
    };
    EXPECT_EQ(path("inside"), volume + "/inside");
    EXPECT_EQ(path("outside"), std::nullopt);
    EXPECT_EQ(path("outside/deeper"), std::nullopt);

    const auto obstacle = [&](const char* name) {
        return dataFolderObstacle({{"MyPOIs", name}}, RecordKind::kWaypoints, volume);
    };
    EXPECT_EQ(obstacle("inside"), std::nullopt);
    EXPECT_EQ(obstacle("missing"), std::nullopt);
    EXPECT_EQ(obstacle("../home"), std::nullopt) << "not a name of a folder";
    ASSERT_TRUE(obstacle("outside/deeper"));
    EXPECT_EQ(obstacle("outside/deeper")->path(), volume + "/outside/deeper");
}

} // namespace
} // namespace magellan
