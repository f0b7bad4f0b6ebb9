// SPDX-License-Identifier: MIT

#include "host/backup/Manifest.h"

#include "host/files/Hash.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace {

bool isAccepted(const std::string& text)
{
    const support::TemporaryFolder folder;
    folder.put(host::kManifestName, text);
    host::Manifest manifest{.device = "before", .folders = {}};
    const bool accepted = !host::readManifest(folder.path(), manifest);
    EXPECT_TRUE(accepted || manifest.device == "before") << "changed by a failure: " << text;
    return accepted;
}

std::string withFolder(const std::string& path)
{
    return R"({"device":"/d","folders":[")" + path + R"("],"files":[]})";
}

std::string withFile(const std::string& path)
{
    return R"({"device":"/d","folders":[],"files":[{"path":")" + path +
           R"(","size":1,"hash":"a"}]})";
}

TEST(Manifest, IsReadAsItWasWritten)
{
    const support::TemporaryFolder folder;
    const host::Manifest written{
        "/media/GPS", {"Points", "Ways"}, {{"Points/a", 5, "00ff"}, {"Ways/100%\n\xFF", 0, "0"}}};
    folder.put(host::kManifestName, host::manifestText(written));
    host::Manifest read;
    ASSERT_FALSE(host::readManifest(folder.path(), read));
    EXPECT_EQ(read.device, written.device);
    EXPECT_EQ(read.folders, written.folders);
    ASSERT_EQ(read.files.size(), 2U);
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(read.files[i].path, written.files[i].path);
        EXPECT_EQ(read.files[i].size, written.files[i].size);
        EXPECT_EQ(read.files[i].hash, written.files[i].hash);
    }
}

TEST(Manifest, TextIsPlainAsciiJson)
{
    EXPECT_EQ(
        host::manifestText({"/d", {"a%b"}, {{"\xC3\xBC\"", 7, "0a"}}}),
        R"({"device":"/d","folders":["a%25b"],"files":[{"path":"%c3%bc\"","size":7,"hash":"0a"}]})"
        "\n");
}

TEST(Manifest, UnfinishedFilesThatOlderVersionsBackedUpAreLeftOut)
{
    const support::TemporaryFolder folder;
    folder.put(host::kManifestName,
               host::manifestText({"/d",
                                   {"Points"},
                                   {{"Points/.~write.tmp", 1, host::hashOf("x")},
                                    {"Points/a", 1, host::hashOf("x")},
                                    {"Points/.magellangps-1-0", 1, host::hashOf("x")}}}));
    host::Manifest read;
    ASSERT_FALSE(host::readManifest(folder.path(), read));
    ASSERT_EQ(read.files.size(), 1U);
    EXPECT_EQ(read.files.front().path, "Points/a");
}

TEST(Manifest, PathsInsideTheDeviceAreAccepted)
{
    for (const std::string path :
         {"Points", "Points/deep/b", "..pois", "a/..b", ".hidden", "%2E%2Ea", "%", "%4", "%4g"}) {
        EXPECT_TRUE(isAccepted(withFolder(path))) << path;
        EXPECT_TRUE(isAccepted(withFile(path))) << path;
    }
}

TEST(Manifest, PathsThatLeadOutOfTheDeviceAreRejected)
{
    for (const std::string path :
         {"", "..", "../x", "a/../x", "a/..", "/etc", "%2e%2E/x", "%2fetc", "a%00"}) {
        EXPECT_FALSE(isAccepted(withFolder(path))) << path;
        EXPECT_FALSE(isAccepted(withFile(path))) << path;
    }
}

TEST(Manifest, IncompleteManifestIsRejected)
{
    for (const char* text :
         {"", "{", "[]", "{}", R"({"folders":[]})", R"({"files":[]})",
          R"({"folders":"a","files":[]})", R"({"folders":[1],"files":[]})",
          R"({"folders":[],"files":[1]})", R"({"folders":[],"files":[{"size":1,"hash":"a"}]})",
          R"({"folders":[],"files":[{"path":"x","hash":"a"}]})",
          R"({"folders":[],"files":[{"path":"x","size":"1","hash":"a"}]})",
          R"({"folders":[],"files":[{"path":"x","size":1}]})"})
        EXPECT_FALSE(isAccepted(text)) << text;
    EXPECT_TRUE(isAccepted(R"({"folders":[],"files":[]})")) << "the device is only a note";
}

TEST(Manifest, MissingFileIsNotABackup)
{
    const support::TemporaryFolder folder;
    host::Manifest manifest;
    const auto failure = host::readManifest(folder.path(), manifest);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->path(), folder.path());
    EXPECT_THAT(*failure->description(), testing::HasSubstr("not a complete backup"));
}

} // namespace
