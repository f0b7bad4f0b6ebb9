// SPDX-License-Identifier: MIT
// Archives of other programs, damaged ones, and some that are made to do harm.

#include "host/files/ZipArchive.h"

#include "host/Archives.h"
#include "host/files/ZipWriter.h"
#include "host/formats/Written.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using support::archiveOf;
using testing::HasSubstr;

constexpr char kDamaged[] = "the archive is damaged or cut short";
constexpr std::size_t kMost = std::size_t{1} << 30;

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
