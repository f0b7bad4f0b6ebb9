// SPDX-License-Identifier: MIT
// Archives of other programs, damaged ones, and some that are made to do harm.

#include "host/files/ZipArchive.h"

#include "host/files/ZipWriter.h"
#include "host/formats/Written.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <string>
#include <vector>

#include <zlib.h>

namespace {

using testing::HasSubstr;

constexpr char kDamaged[] = "the archive is damaged or cut short";
constexpr std::size_t kMost = std::size_t{1} << 30;

std::string number(std::uint32_t value, int bytes)
{
    std::string text;
    for (; bytes > 0; --bytes, value >>= 8)
        text += static_cast<char>(value & 0xFF);
    return text;
}

struct File {
    std::string name;
    std::string data;
    std::uint32_t method = 0;
    std::uint32_t flags = 0;
    std::uint32_t size = static_cast<std::uint32_t>(data.size());
    std::uint32_t checksum = static_cast<std::uint32_t>(
        crc32_z(0, reinterpret_cast<const Bytef*>(data.data()), data.size()));
    std::string extra{};
};

std::string archiveOf(const std::vector<File>& files, const std::string& comment = {})
{
    std::string archive;
    std::string directory;
    for (const auto& file : files) {
        const auto header = static_cast<std::uint32_t>(archive.size());
        const auto fields =
            number(20, 2) + number(file.flags, 2) + number(file.method, 2) + number(0, 4) +
            number(file.checksum, 4) + number(static_cast<std::uint32_t>(file.data.size()), 4) +
            number(file.size, 4) + number(static_cast<std::uint32_t>(file.name.size()), 2) +
            number(static_cast<std::uint32_t>(file.extra.size()), 2);
        archive += "PK\3\4" + fields + file.name + file.extra + file.data;
        directory += "PK\1\2" + number(20, 2) + fields + number(0, 2) + number(0, 2) +
                     number(0, 2) + number(0, 4) + number(header, 4) + file.name + file.extra;
    }
    const auto count = number(static_cast<std::uint32_t>(files.size()), 2);
    return archive + directory + "PK\5\6" + number(0, 4) + count + count +
           number(static_cast<std::uint32_t>(directory.size()), 4) +
           number(static_cast<std::uint32_t>(archive.size()), 4) +
           number(static_cast<std::uint32_t>(comment.size()), 2) + comment;
}

std::string problemOf(const std::string& archive, std::size_t most = kMost)
{
    std::string text;
    return host::extractFromZip(archive, ".kml", most, text);
}

std::string extracted(const std::string& archive)
{
    std::string text;
    EXPECT_EQ(host::extractFromZip(archive, ".kml", kMost, text), "");
    return text;
}

std::string compressed(const std::string& text)
{
    support::Written written;
    host::ZipWriter archive{written.output(), "a.kml"};
    archive.write(text);
    archive.finish();
    return written.text();
}

TEST(ZipArchive, FirstFileOfTheExtensionIsExtracted)
{
    EXPECT_EQ(extracted(archiveOf({{"files/icon.png", "x"},
                                   {"doc.kml.txt", "y"},
                                   {"folder/Trip.KML", "<kml/>"},
                                   {"doc.kml", "second"}})),
              "<kml/>");
    EXPECT_EQ(extracted(archiveOf({{.name = "a.kml", .data = "z", .extra = "more"}}, "comment")),
              "z");
    EXPECT_EQ(extracted(archiveOf({{"a.kml", ""}})), "");
}

TEST(ZipArchive, ArchiveWithoutSuchAFileSaysSo)
{
    for (const auto& archive : {archiveOf({}), archiveOf({{"a.txt", "x"}, {"kml", "y"}})})
        EXPECT_EQ(problemOf(archive), "the archive holds no .kml file");
}

TEST(ZipArchive, ArchiveThatIsCutAnywhereIsDamaged)
{
    const auto archive = compressed("some text of a document");
    for (std::size_t size = 0; size < archive.size(); ++size)
        EXPECT_EQ(problemOf(archive.substr(0, size)), kDamaged) << size;
}

// The rest of the headers does not matter to the text.
TEST(ZipArchive, ByteThatIsChangedIsNoticedOrDoesNotMatter)
{
    const auto archive = compressed("some text of a document");
    for (std::size_t i = 0; i < archive.size(); ++i) {
        for (const int change : {0x01, 0x80, 0xFF}) {
            auto changed = archive;
            changed[i] = static_cast<char>(changed[i] ^ change);
            std::string text;
            if (host::extractFromZip(changed, ".kml", kMost, text).empty()) {
                EXPECT_EQ(text, "some text of a document") << i;
            }
        }
    }
}

TEST(ZipArchive, WrongChecksumOrSizeIsDamage)
{
    EXPECT_EQ(problemOf(archiveOf({{.name = "a.kml", .data = "x", .checksum = 1}})), kDamaged);
    EXPECT_EQ(problemOf(archiveOf({{.name = "a.kml", .data = "x", .size = 2}})), kDamaged);
    EXPECT_EQ(problemOf(archiveOf({{.name = "a.kml", .data = "xy", .size = 1}})), kDamaged);
}

TEST(ZipArchive, EncryptedFileAndUnknownMethodAreNamed)
{
    EXPECT_EQ(problemOf(archiveOf({{.name = "a.kml", .data = "x", .flags = 1}})),
              "the archive is encrypted");
    EXPECT_EQ(problemOf(archiveOf({{.name = "a.kml", .data = "x", .method = 12}})),
              "the archive is compressed in an unknown way");
}

TEST(ZipArchive, FileUpToTheLimitIsExtractedAndALargerOneRefused)
{
    const auto archive = archiveOf({{"a.kml", std::string(100, 'x')}});
    EXPECT_EQ(problemOf(archive, 100), "");
    EXPECT_THAT(problemOf(archive, 99), HasSubstr("too large"));
    EXPECT_THAT(problemOf(archiveOf({{.name = "a.kml", .data = "x", .size = 0xFFFFFFFF}})),
                HasSubstr("too large"));
}

TEST(ZipArchive, TextThatIsCompressedMoreThanAnyMapIsRefusedBeforeItIsExtracted)
{
    constexpr std::size_t kHarmless = std::size_t{16} << 20;
    EXPECT_EQ(extracted(compressed(std::string(kHarmless, ' '))).size(), kHarmless);
    EXPECT_THAT(problemOf(compressed(std::string(kHarmless + 200, ' '))),
                HasSubstr("its 16 MB are compressed to 163"));
}

} // namespace
