// SPDX-License-Identifier: MIT
// Key-value lines, the unit file, and the folder dictionary with its default.

#include <platform/System/FileError.h>
#include <plugin/fsdevice/KeyValueFile.h>
#include <support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/stat.h>

namespace magellan {
namespace {

using support::TemporaryFolder;

std::string parsed(std::string_view text)
{
    return gps::describe(parseKeyValueText(text));
}

TEST(KeyValueText, KeysAndValuesAreSeparatedByTheFirstEqualsSign)
{
    EXPECT_EQ(parsed("Serial Number=12345\r\n"), "{Serial Number = \"12345\"}");
    EXPECT_EQ(parsed("a=b=c\r\nd==\r\n"), "{a = \"b=c\", d = \"=\"}");
}

TEST(KeyValueText, SpacesAroundTheEqualsSignBelongToTheKeyAndTheValue)
{
    EXPECT_EQ(parsed("Serial Number = 12345 \r\n"), "{Serial Number  = \" 12345 \"}");
}

TEST(KeyValueText, WhiteSpaceBeforeAKeyIsSkipped)
{
    EXPECT_EQ(parsed(" \t\v\fa=1\r\n\n\rb=2"), "{a = \"1\", b = \"2\"}");
}

TEST(KeyValueText, ALineWithoutAnEqualsSignIsAKeyWithAnEmptyValue)
{
    EXPECT_EQ(parsed("lonely\r\nempty=\r\nlast one"),
              "{lonely = \"\", empty = \"\", last one = \"\"}");
}

TEST(KeyValueText, ALineWithoutAKeyIsIgnored)
{
    for (const auto* text :
         {"", "\r\n", "\r\n\r\n", "  \t ", "=value", "=", "  =value", "==", "\n=value"})
        EXPECT_EQ(parsed(text), "{}") << testing::PrintToString(text);
}

TEST(KeyValueText, BareLineFeedsMakeOneLineAndBelongToItsValue)
{
    EXPECT_EQ(parsed("a=1\nb=2\n"), "{a = \"1\nb=2\n\"}");
    EXPECT_EQ(parsed("a=1\rb=2"), "{a = \"1\rb=2\"}");
}

TEST(KeyValueText, ALaterLineReplacesTheValueAndKeepsThePosition)
{
    EXPECT_EQ(parsed("a=1\r\nb=2\r\na=3\r\n"), "{a = \"3\", b = \"2\"}");
}

TEST(KeyValueText, ANulByteIsACharacterLikeAnyOther)
{
    EXPECT_EQ(parseKeyValueText({"a\0b=c\0d", 7}),
              (gps::Dictionary{{std::string("a\0b", 3), std::string("c\0d", 3)}}));
}

TEST(KeyValueFile, AFileIsParsedLikeItsText)
{
    const TemporaryFolder folder;
    gps::Dictionary dictionary{{"old", 1}};
    EXPECT_EQ(readMagellanDictionaryFromPath(folder.put("f", "a=1\r\nb=2"), dictionary),
              std::nullopt);
    EXPECT_EQ(gps::describe(dictionary), "{a = \"1\", b = \"2\"}");
}

TEST(KeyValueFile, AnEmptyFileIsAnEmptyDictionary)
{
    const TemporaryFolder folder;
    gps::Dictionary dictionary{{"old", 1}};
    EXPECT_EQ(readMagellanDictionaryFromPath(folder.put("f", ""), dictionary), std::nullopt);
    EXPECT_TRUE(dictionary.empty());
}

TEST(KeyValueFile, AReadErrorIsReturnedAndLeavesTheDictionaryUnchanged)
{
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo(folder.path("fifo").c_str(), 0600), 0);
    for (const auto& [path, code] :
         std::vector<std::pair<std::string, int>>{{folder.path("none"), 260},
                                                  {folder.put("f", "a=\x80"), 261},
                                                  {folder.path(), 256},
                                                  {folder.path("fifo"), 256}}) {
        gps::Dictionary dictionary{{"old", 1}};
        const auto error = readMagellanDictionaryFromPath(path, dictionary);
        ASSERT_TRUE(error) << path;
        EXPECT_EQ(error->domain(), "NSCocoaErrorDomain");
        EXPECT_EQ(error->code(), code) << path;
        EXPECT_EQ(gps::describe(dictionary), "{old = 1}") << path;
    }
}

TEST(UnitFile, IsInTheTransferFolderOfAVolume)
{
    EXPECT_EQ(unitFilePath("/media/GPS"), "/media/GPS/USBTRANS/UNIT_ID.DAT");
    EXPECT_EQ(unitFilePath("/media/GPS/"), "/media/GPS/USBTRANS/UNIT_ID.DAT");
    const TemporaryFolder folder;
    folder.put("USBTRANS/UNIT_ID.DAT", "Serial Number=7\r\n");
    gps::Dictionary unit;
    EXPECT_EQ(readMagellanUnitIDFromPath(folder.path(), unit), std::nullopt);
    EXPECT_EQ(gps::describe(unit), "{Serial Number = \"7\"}");
}

constexpr char kDefault[] = "{MyPOIs = \"My POIs\", Geocaches = \"Geocaches\", Routes = "
                            "\"Routes\", TrackLogs = \"Track Logs\"}";

TEST(FolderDictionary, IsReadFromTheLanguageFile)
{
    const TemporaryFolder folder;
    folder.put("USBTRANS/LANGUAGE.DAT", "MyPOIs=Meine Orte\r\nRoutes=Routen\r\n");
    EXPECT_EQ(gps::describe(readMagellanFolderDictionaryFromPath(folder.path()).value()),
              "{MyPOIs = \"Meine Orte\", Routes = \"Routen\"}");
}

TEST(FolderDictionary, ALanguageFileWithoutFolderKeysIsUsedUnchanged)
{
    const TemporaryFolder folder;
    folder.put("USBTRANS/LANGUAGE.DAT", "Language=English\r\n");
    EXPECT_EQ(gps::describe(readMagellanFolderDictionaryFromPath(folder.path()).value()),
              "{Language = \"English\"}");
    folder.put("USBTRANS/LANGUAGE.DAT", "");
    EXPECT_EQ(gps::describe(readMagellanFolderDictionaryFromPath(folder.path()).value()), "{}");
}

TEST(FolderDictionary, IsTheDefaultWhenTheLanguageFileCannotBeRead)
{
    const TemporaryFolder folder;
    EXPECT_EQ(gps::describe(readMagellanFolderDictionaryFromPath(folder.path()).value()), kDefault);
    folder.put("USBTRANS/LANGUAGE.DAT", "MyPOIs=\xC3\xA9\r\n");
    EXPECT_EQ(gps::describe(readMagellanFolderDictionaryFromPath(folder.path()).value()), kDefault);
    std::filesystem::remove(folder.path("USBTRANS/LANGUAGE.DAT"));
    folder.makeFolder("USBTRANS/LANGUAGE.DAT");
    EXPECT_EQ(gps::describe(readMagellanFolderDictionaryFromPath(folder.path()).value()), kDefault);
}

TEST(KeyValueFile, OnlyAFileWhoseBytesWereNotReadMayBeReadLater)
{
    const auto mayBe = [](gps::FileErrorCode code) {
        return mayBeReadLater(gps::makeFileError(code, "/a"));
    };
    EXPECT_FALSE(mayBe(gps::FileErrorCode::kReadNoSuchFile));
    EXPECT_FALSE(mayBe(gps::FileErrorCode::kReadNotAscii));
    EXPECT_TRUE(mayBe(gps::FileErrorCode::kReadUnknown));
    EXPECT_TRUE(mayBe(gps::FileErrorCode::kReadNoPermission));
}

TEST(KeyValueFile, OneOfUpToAMebibyteIsRead)
{
    const TemporaryFolder folder;
    gps::Dictionary dictionary;
    const auto path = folder.put("f", "a=" + std::string((1U << 20) - 2, 'b'));
    EXPECT_EQ(readMagellanDictionaryFromPath(path, dictionary), std::nullopt);
    folder.put("f", "a=" + std::string((1U << 20) - 1, 'b'));
    EXPECT_EQ(readMagellanDictionaryFromPath(path, dictionary)->code(), 256);
}

} // namespace
} // namespace magellan
