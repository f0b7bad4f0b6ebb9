// SPDX-License-Identifier: MIT

#include "host/window/map/TileFile.h"

#include "window/MadeTileFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

using host::TileFile;
using window_test::hex;

// The first bytes of a PNG file with a picture of this size, up to its colours.
std::string png(int width, int height)
{
    std::string text{"\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16};
    for (const int number : {width, height}) {
        for (const int shift : {24, 16, 8, 0})
            text += static_cast<char>(number >> shift & 0xFF);
    }
    text += std::string{"\x08\x02\0\0\0", 5};
    unsigned crc = ~0U;
    for (std::size_t i = 12; i < text.size(); ++i) {
        crc ^= static_cast<unsigned char>(text[i]);
        for (int bit = 0; bit < 8; ++bit)
            crc = crc >> 1 ^ (crc % 2 != 0 ? 0xEDB88320U : 0U);
    }
    for (const int shift : {24, 16, 8, 0})
        text += static_cast<char>(~crc >> shift & 0xFF);
    return text + std::string{"\0\0\0\0IDAT", 8};
}

class TileFileTest : public window_test::MadeTileFile {};

TEST_F(TileFileTest, RowsAreCountedFromTheNorth)
{
    makeTables();
    putTile(2, 1, 3, png(256, 256)); // the northernmost row, counted from the south
    const auto file = open();
    ASSERT_TRUE(file) << failure_;
    ASSERT_TRUE(file->tile(2, 1, 0));
    EXPECT_EQ(file->tile(2, 1, 0)->size(), png(256, 256).size());
    EXPECT_FALSE(file->tile(2, 1, 3));
    EXPECT_FALSE(file->tile(2, 0, 0));
    EXPECT_FALSE(file->tile(-1, 0, 0));
    EXPECT_FALSE(file->tile(TileFile::kMostZoom + 1, 0, 0));
}

TEST_F(TileFileTest, DescriptionIsThatOfTheMetadata)
{
    makeTables();
    putTile(3, 0, 0, png(256, 256));
    execute("INSERT INTO metadata VALUES ('name', 'Alps'), ('minzoom', '2'), ('maxzoom', '9'), "
            "('attribution', '<a href=\"x\">Who &amp; Co</a>')");
    const auto file = open();
    ASSERT_TRUE(file) << failure_;
    EXPECT_EQ(file->description().name, "Alps");
    EXPECT_EQ(file->description().attribution, "Who &amp; Co");
    EXPECT_EQ(file->description().leastZoom, 2);
    EXPECT_EQ(file->description().mostZoom, 9);
}

TEST_F(TileFileTest, FileWithoutMetadataIsNamedAfterItselfAndHasTheZoomLevelsOfItsTiles)
{
    execute("CREATE TABLE tiles (zoom_level int, tile_column int, tile_row int, tile_data blob)");
    putTile(3, 0, 0, png(256, 256));
    putTile(5, 0, 0, png(256, 256));
    const auto file = open();
    ASSERT_TRUE(file) << failure_;
    EXPECT_EQ(file->description().name, "map");
    EXPECT_EQ(file->description().leastZoom, 3);
    EXPECT_EQ(file->description().mostZoom, 5);
}

TEST_F(TileFileTest, ZoomLevelsThatCannotBeAreLimited)
{
    makeTables();
    putTile(0, 0, 0, png(256, 256));
    execute("INSERT INTO metadata VALUES ('minzoom', '-5'), ('maxzoom', '99999')");
    const auto file = open();
    ASSERT_TRUE(file) << failure_;
    EXPECT_EQ(file->description().leastZoom, 0);
    EXPECT_EQ(file->description().mostZoom, TileFile::kMostZoom);
}

TEST_F(TileFileTest, PictureMayBeAsLargeAsATileAndNoLarger)
{
    makeTables();
    putTile(1, 0, 1, png(TileFile::kMostSide, TileFile::kMostSide));
    putTile(1, 1, 1, png(TileFile::kMostSide + 1, 1));
    putTile(1, 0, 0, png(1, TileFile::kMostSide + 1));
    putTile(1, 1, 0, "no picture");
    const auto file = open();
    ASSERT_TRUE(file) << failure_;
    EXPECT_TRUE(file->tile(1, 0, 0));
    EXPECT_FALSE(file->tile(1, 1, 0));
    EXPECT_FALSE(file->tile(1, 0, 1));
    EXPECT_FALSE(file->tile(1, 1, 1));
}

TEST_F(TileFileTest, MissingFileAndFolderAreNamed)
{
    EXPECT_FALSE(open());
    EXPECT_EQ(failure_, path_.string() + ": there is no such file.");
    EXPECT_FALSE(TileFile::open(folder_, failure_));
    EXPECT_EQ(failure_, folder_.string() + ": there is no such file.");
}

TEST_F(TileFileTest, FileThatIsNoMapIsRejectedWithAReason)
{
    const auto expected =
        path_.string() +
        ": this is not a map file. Choose an .mbtiles file with PNG or JPEG tiles.";
    for (const std::string text : {"", "not a database", "SQLite format 3"}) {
        std::ofstream{path_} << text;
        EXPECT_FALSE(open()) << text;
        EXPECT_EQ(failure_, expected);
    }
    std::filesystem::remove(path_);
    execute("CREATE TABLE other (a)");
    EXPECT_FALSE(open());
    EXPECT_EQ(failure_, expected);
    makeTables();
    EXPECT_FALSE(open()) << "no tiles";
    putTile(0, 0, 0, "\x1f\x8b vectors");
    EXPECT_FALSE(open());
    EXPECT_EQ(failure_, expected);
}

TEST_F(TileFileTest, DamagedFileDoesNotEndTheProgram)
{
    makeTables();
    for (int i = 0; i < 200; ++i)
        putTile(8, i, 0, png(256, 256));
    std::fstream file{path_, std::ios::in | std::ios::out | std::ios::binary};
    const auto size = std::filesystem::file_size(path_);
    for (std::size_t at = 4000; at < size; at += 37)
        file.seekp(static_cast<std::streamoff>(at)).put('\xFF');
    file.close();
    if (const auto opened = open()) {
        for (int i = 0; i < 200; ++i)
            (void)opened->tile(8, i, 255);
    }
}

TEST_F(TileFileTest, TableThatNeverEndsIsGivenUp)
{
    execute("CREATE VIEW tiles AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
            "SELECT 0 AS zoom_level, i AS tile_column, 0 AS tile_row, x'" +
            hex(png(256, 256)) + "' AS tile_data FROM n");
    const auto file = open(); // no zoom levels in the metadata: all rows are looked at
    ASSERT_TRUE(file);
    EXPECT_FALSE(file->tile(0, 0, 0));
}

} // namespace
