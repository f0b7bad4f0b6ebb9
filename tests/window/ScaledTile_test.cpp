// SPDX-License-Identifier: MIT

#include "host/window/map/ScaledTile.h"

#include "window/MadeTileFile.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include <gdk-pixbuf/gdk-pixbuf.h>

namespace {

using Picture = std::shared_ptr<GdkPixbuf>;

constexpr std::uint32_t kRed = 0xFF0000FF; // with its opacity
constexpr std::uint32_t kGreen = 0x00FF00FF;
constexpr std::uint32_t kBlue = 0x0000FFFF;
constexpr std::uint32_t kGray = 0x808080FF;
constexpr std::uint32_t kNothing = 0;
constexpr int kSide = 256;

// A tile whose quarters have colours of their own: from left to right, then from top to bottom.
std::string tileOf(std::uint32_t first, std::uint32_t second, std::uint32_t third,
                   std::uint32_t fourth)
{
    const Picture picture{gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, kSide, kSide),
                          g_object_unref};
    int i = 0;
    for (const auto color : {first, second, third, fourth}) {
        constexpr int kHalf = kSide / 2;
        const Picture quarter{
            gdk_pixbuf_new_subpixbuf(picture.get(), i % 2 * kHalf, i / 2 * kHalf, kHalf, kHalf),
            g_object_unref};
        gdk_pixbuf_fill(quarter.get(), color);
        ++i;
    }
    gchar* data = nullptr;
    gsize size = 0;
    gdk_pixbuf_save_to_buffer(picture.get(), &data, &size, "png", nullptr, nullptr);
    const std::unique_ptr<gchar, decltype(&g_free)> owned{data, g_free};
    return {data, size};
}

std::string tileOf(std::uint32_t color)
{
    return tileOf(color, color, color, color);
}

Picture pictureOf(const std::optional<host::TileFile::Bytes>& tile)
{
    const std::shared_ptr<GdkPixbufLoader> loader{gdk_pixbuf_loader_new(), g_object_unref};
    if (tile)
        gdk_pixbuf_loader_write(loader.get(), tile->data(), tile->size(), nullptr);
    gdk_pixbuf_loader_close(loader.get(), nullptr);
    auto* const picture = gdk_pixbuf_loader_get_pixbuf(loader.get());
    return picture != nullptr ? Picture{gdk_pixbuf_copy(picture), g_object_unref} : nullptr;
}

std::uint32_t colorAt(const Picture& picture, int x, int y)
{
    const int channels = gdk_pixbuf_get_n_channels(picture.get());
    const auto* const pixel = gdk_pixbuf_read_pixels(picture.get()) +
                              y * gdk_pixbuf_get_rowstride(picture.get()) + x * channels;
    std::uint32_t color = 0;
    for (int i = 0; i < 4; ++i)
        color = color << 8 | (i < channels ? pixel[i] : 0xFFU);
    return color;
}

class ScaledTile : public window_test::MadeTileFile {};

TEST_F(ScaledTile, OfTheFileIsAsItIs)
{
    makeTables();
    const auto bytes = tileOf(kRed);
    putTile(1, 0, 1, bytes);
    const auto tile = host::scaledTile(*open(), 1, 0, 0);
    ASSERT_TRUE(tile);
    EXPECT_EQ((std::string{tile->begin(), tile->end()}), bytes);
}

TEST_F(ScaledTile, BeyondTheDeepestLevelIsAPartOfTheDeepestEnlarged)
{
    makeTables();
    putTile(0, 0, 0, tileOf(kRed, kGreen, kBlue, kGray));
    const auto file = open();
    int i = 0;
    for (const auto color : {kRed, kGreen, kBlue, kGray}) {
        const auto picture = pictureOf(host::scaledTile(*file, 1, i % 2, i / 2));
        ASSERT_TRUE(picture) << i;
        EXPECT_EQ(gdk_pixbuf_get_width(picture.get()), kSide);
        EXPECT_EQ(colorAt(picture, kSide / 2, kSide / 2), color) << i;
        ++i;
    }
    const auto corner = pictureOf(host::scaledTile(*file, 8, 255, 255));
    ASSERT_TRUE(corner);
    EXPECT_EQ(colorAt(corner, 0, 0), kGray);
    EXPECT_FALSE(host::scaledTile(*file, 9, 0, 0)); // less than a pixel of the tile
}

TEST_F(ScaledTile, ThatIsMissingBetweenLevelsIsMadeOfTheNextShallowerOne)
{
    makeTables();
    putTile(0, 0, 0, tileOf(kRed));
    putTile(1, 0, 1, tileOf(kGreen));
    putTile(3, 7, 0, tileOf(kBlue));
    const auto file = open();
    EXPECT_EQ(colorAt(pictureOf(host::scaledTile(*file, 2, 0, 0)), 128, 128), kGreen);
    EXPECT_EQ(colorAt(pictureOf(host::scaledTile(*file, 2, 3, 3)), 128, 128), kRed);
}

TEST_F(ScaledTile, BeforeTheFirstLevelIsMadeOfTheTilesThatItCovers)
{
    makeTables();
    putTile(3, 0, 7, tileOf(kRed)); // the northwestern corner of the world
    putTile(3, 7, 0, tileOf(kGreen));
    const auto file = open();
    const auto half = pictureOf(host::scaledTile(*file, 2, 0, 0));
    ASSERT_TRUE(half);
    EXPECT_EQ(colorAt(half, 64, 64), kRed);
    EXPECT_EQ(colorAt(half, 192, 64), kNothing);
    const auto world = pictureOf(host::scaledTile(*file, 0, 0, 0));
    ASSERT_TRUE(world);
    EXPECT_EQ(colorAt(world, 16, 16), kRed);
    EXPECT_EQ(colorAt(world, 240, 240), kGreen);
    EXPECT_EQ(colorAt(world, 128, 128), kNothing);
}

TEST_F(ScaledTile, ManyLevelsBeforeTheFirstIsNotMade)
{
    makeTables();
    putTile(5, 0, 31, tileOf(kRed));
    const auto file = open();
    EXPECT_TRUE(host::scaledTile(*file, 5 - host::kMostLevelsBefore, 0, 0));
    EXPECT_FALSE(host::scaledTile(*file, 5 - host::kMostLevelsBefore - 1, 0, 0));
}

TEST_F(ScaledTile, WhereTheFileHasNothingIsNotMade)
{
    makeTables();
    putTile(2, 0, 3, tileOf(kRed));
    const auto file = open();
    EXPECT_FALSE(host::scaledTile(*file, 2, 3, 3));
    EXPECT_FALSE(host::scaledTile(*file, 4, 15, 15));
    EXPECT_FALSE(host::scaledTile(*file, 1, 1, 1));
    EXPECT_FALSE(host::scaledTile(*file, -1, 0, 0));
    EXPECT_FALSE(host::scaledTile(*file, host::TileFile::kMostZoom + 1, 0, 0));
}

TEST_F(ScaledTile, IsNotMadeOfADamagedOne)
{
    makeTables();
    putTile(0, 0, 0, tileOf(kRed));
    auto bytes = tileOf(kGreen);
    bytes[bytes.size() / 2] ^= 0x55;
    putTile(1, 0, 1, bytes);
    EXPECT_EQ(colorAt(pictureOf(host::scaledTile(*open(), 2, 0, 0)), 128, 128), kRed);
}

} // namespace
