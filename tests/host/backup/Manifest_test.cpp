// SPDX-License-Identifier: MIT

#include "host/backup/Manifest.h"

#include "host/files/Hash.h"
#include "platform/System/OneFault.h"
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

constexpr std::string_view kHash = "af63dc4c8601ec8c";

std::string withMembers(const std::string& members)
{
    return R"({"device":"/d","folders":[],"files":[{)" + members + "}]}";
}

std::string withFile(const std::string& path)
{
    return withMembers(R"("path":")" + path + R"(","size":1,"hash":")" + std::string{kHash} + '"');
}

std::string withSize(const std::string& size)
{
    return withMembers(R"("path":"x","size":)" + size + R"(,"hash":")" + std::string{kHash} + '"');
}

TEST(Manifest, IsReadAsItWasWritten)
{
    const support::TemporaryFolder folder;
    const host::Manifest written{
        "/media/GPS",
        {"Points", "Ways"},
        {{"Points/a", 5, host::hashOf("a")}, {"Ways/100%\n\xFF", 0, host::hashOf("")}}};
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
        R"({"device":"/d","folders":["a%25b"],"files":[{"path":"%c3%bc\"","size":7,"hash":"0a"}],"sequence":0})"
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
         {"", "..", "../x", "a/../x", "a/..", "/etc", "%2e%2E/x", "%2fetc", "a%00", R"(..\u0000)",
          R"(\u0000)", R"(a\u0000b)", R"(..\u0000/x)", "..%00", "a/..%00"}) {
        EXPECT_FALSE(isAccepted(withFolder(path))) << path;
        EXPECT_FALSE(isAccepted(withFile(path))) << path;
    }
}

TEST(Manifest, IncompleteManifestIsRejected)
{
    for (const char* text : {"", "{", "[]", "{}", R"({"folders":[]})", R"({"files":[]})",
                             R"({"folders":"a","files":[]})", R"({"folders":[1],"files":[]})",
                             R"({"folders":[],"files":[1]})",
                             R"({"folders":[],"files":[{"size":1,"hash":"af63dc4c8601ec8c"}]})",
                             R"({"folders":[],"files":[{"path":"x","hash":"af63dc4c8601ec8c"}]})",
                             R"({"folders":[],"files":[{"path":"x","size":1}]})"})
        EXPECT_FALSE(isAccepted(text)) << text;
    EXPECT_TRUE(isAccepted(R"({"folders":[],"files":[]})")) << "the device is only a note";
}

TEST(Manifest, MembersOfAnotherTypeOrFormAreRejected)
{
    EXPECT_TRUE(isAccepted(withFile("x")));
    for (const char* text :
         {R"({"device":1,"folders":[],"files":[]})", R"({"device":null,"folders":[],"files":[]})",
          R"({"device":"/d\u0000","folders":[],"files":[]})", R"({"folders":{},"files":[]})",
          R"({"folders":[["a"]],"files":[]})", R"({"folders":[],"files":{}})",
          R"({"folders":[],"files":[[]]})", R"({"folders":[],"files":[]}x)"})
        EXPECT_FALSE(isAccepted(text)) << text;
    for (const char* members :
         {R"("path":1,"size":1,"hash":"af63dc4c8601ec8c")",
          R"("path":["x"],"size":1,"hash":"af63dc4c8601ec8c")", R"("path":"x","size":1,"hash":1)",
          R"("path":"x","size":1,"hash":"af63dc4c8601ec8")",
          R"("path":"x","size":1,"hash":"AF63DC4C8601EC8C")"})
        EXPECT_FALSE(isAccepted(withMembers(members))) << members;
}

TEST(Manifest, SizeIsThatOfAFileThatCanBeRead)
{
    for (const char* size : {"0", "1", "2147483648"})
        EXPECT_TRUE(isAccepted(withSize(size))) << size;
    for (const char* size : {"-1", "1.0", "1e3", "\"1\"", "true", "null", "2147483649",
                             "18446744073709551615", "99999999999999999999"})
        EXPECT_FALSE(isAccepted(withSize(size))) << size;
}

TEST(Manifest, SequenceIsReadAndMayBeMissing)
{
    const support::TemporaryFolder folder;
    host::Manifest manifest;
    for (const std::uint64_t sequence : {std::uint64_t{1}, host::kLargestSequence}) {
        ASSERT_FALSE(host::writeManifest(
            folder.path(),
            host::Manifest{.device = "/d", .folders = {}, .files = {}, .sequence = sequence}));
        ASSERT_FALSE(host::readManifest(folder.path(), manifest));
        EXPECT_EQ(manifest.sequence, sequence);
    }
    folder.put(host::kManifestName, withFolder("Points"));
    ASSERT_FALSE(host::readManifest(folder.path(), manifest));
    EXPECT_EQ(manifest.sequence, 0U);
    for (const char* sequence : {"-1", "1.0", "\"1\"", "null", "9007199254740993"})
        EXPECT_FALSE(
            isAccepted(R"({"folders":[],"files":[],"sequence":)" + std::string{sequence} + '}'))
            << sequence;
}

TEST(Manifest, NotesAreReadAndMayBeMissing)
{
    const support::TemporaryFolder folder;
    host::Manifest manifest;
    ASSERT_FALSE(host::writeManifest(folder.path(), {.device = "/d",
                                                     .folders = {},
                                                     .sequence = 3,
                                                     .firstSequence = 2,
                                                     .day = "20260101",
                                                     .identifier = "a%\xFF"}));
    ASSERT_FALSE(host::readManifest(folder.path(), manifest));
    EXPECT_EQ(manifest.firstSequence, 2U);
    EXPECT_EQ(manifest.day, "20260101");
    EXPECT_EQ(manifest.identifier, "a%\xFF");
    folder.put(host::kManifestName, withFolder("Points"));
    ASSERT_FALSE(host::readManifest(folder.path(), manifest));
    EXPECT_EQ(manifest.firstSequence, 0U);
    EXPECT_EQ(manifest.day, "");
    EXPECT_EQ(manifest.identifier, std::nullopt);
    for (const char* member :
         {R"("day":1)", R"("identifier":null)", R"("firstSequence":-1)", R"("day":"a\u0000")"})
        EXPECT_FALSE(isAccepted(R"({"folders":[],"files":[],)" + std::string{member} + '}'))
            << member;
}

TEST(Manifest, PathsAreAtMostAsLongAsTheSystemAllows)
{
    std::string path = "a";
    while (path.size() + 2 <= 4095)
        path += "/a";
    ASSERT_EQ(path.size(), 4095U);
    EXPECT_TRUE(isAccepted(withFolder(path)));
    EXPECT_TRUE(isAccepted(withFile(path)));
    EXPECT_FALSE(isAccepted(withFolder(path + 'a')));
    EXPECT_FALSE(isAccepted(withFile(path + 'a')));
}

TEST(Manifest, LargestOneIsReadAndALargerOneIsNot)
{
    auto text = withFolder("Points");
    text.append(host::kLargestManifest - text.size(), ' ');
    EXPECT_TRUE(isAccepted(text));
    EXPECT_FALSE(isAccepted(text + ' '));
}

TEST(Manifest, LargestOneIsWrittenAndALargerOneIsNot)
{
    const support::TemporaryFolder folder;
    host::Manifest manifest{.device = "", .folders = {}};
    manifest.device.assign(host::kLargestManifest - host::manifestText(manifest).size(), 'x');
    EXPECT_FALSE(host::writeManifest(folder.path(), manifest));
    EXPECT_EQ(folder.read(host::kManifestName).size(), host::kLargestManifest);
    manifest.device += 'x';
    const auto failure = host::writeManifest(folder.path(), manifest);
    ASSERT_TRUE(failure);
    EXPECT_THAT(*failure->suggestion(), testing::HasSubstr("--no-backup"));
    EXPECT_EQ(folder.read(host::kManifestName).size(), host::kLargestManifest);
}

TEST(Manifest, HostileShapesAreReadWithoutMuchMemoryOrTime)
{
    constexpr std::size_t kLength = host::kLargestManifest / (MAGELLAN_SANITIZED ? 8 : 1);
    std::string keys = "{";
    while (keys.size() < kLength / 4)
        keys += "\"" + std::to_string(keys.size()) + "\":0,";
    EXPECT_TRUE(isAccepted(keys + R"("folders":[],"files":[]})"));
    EXPECT_FALSE(isAccepted(std::string(kLength, '[')));
    const std::string nested = std::string(1000, '[') + std::string(1000, ']');
    EXPECT_FALSE(isAccepted(R"({"folders":)" + nested + R"(,"files":[]})"));
    EXPECT_TRUE(isAccepted(R"({"folders":[],"files":[],"later":)" + nested + '}'));
}

TEST(Manifest, MissingFileIsNotABackup)
{
    const support::TemporaryFolder folder;
    host::Manifest manifest;
    const auto failure = host::readManifest(folder.path(), manifest);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->path(), folder.path());
    EXPECT_THAT(*failure->description(), testing::HasSubstr("not a complete backup"));
    EXPECT_FALSE(host::mayBeReadLater(*failure));
}

TEST(Manifest, FileThatCannotBeReadMayBeReadLater)
{
    const support::TemporaryFolder folder;
    folder.put(host::kManifestName, host::manifestText({}));
    host::Manifest manifest;
    support::OneFault files{"read", EIO};
    const auto failure = host::readManifest(folder.path(), manifest, files);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->path(), folder.path(host::kManifestName));
    EXPECT_TRUE(host::mayBeReadLater(*failure));
}

} // namespace
