// SPDX-License-Identifier: MIT
// What is made is a PNG file again, because the library's map takes nothing else. It is compressed
// little: it is decompressed at once.

#include "host/window/map/ScaledTile.h"

#include <algorithm>
#include <memory>
#include <utility>

#include <gdk-pixbuf/gdk-pixbuf.h>

namespace host {
namespace {

constexpr int kSide = 256;             // pixels of a tile that is made
constexpr int kMostEnlargedLevels = 8; // a pixel fills the tile then

using Picture = std::shared_ptr<GdkPixbuf>;

// Null if the tile is damaged.
Picture pictureOf(const TileFile::Bytes& bytes)
{
    const std::shared_ptr<GdkPixbufLoader> loader{gdk_pixbuf_loader_new(), g_object_unref};
    const bool isWhole =
        gdk_pixbuf_loader_write(loader.get(), bytes.data(), bytes.size(), nullptr) != FALSE;
    const bool isClosed = gdk_pixbuf_loader_close(loader.get(), nullptr) != FALSE;
    auto* const picture =
        isWhole && isClosed ? gdk_pixbuf_loader_get_pixbuf(loader.get()) : nullptr;
    return picture != nullptr
               ? Picture{static_cast<GdkPixbuf*>(g_object_ref(picture)), g_object_unref}
               : nullptr;
}

Picture emptyPicture()
{
    Picture picture{gdk_pixbuf_new(GDK_COLORSPACE_RGB, TRUE, 8, kSide, kSide), g_object_unref};
    gdk_pixbuf_fill(picture.get(), 0);
    return picture;
}

std::optional<TileFile::Bytes> bytesOf(const Picture& picture)
{
    gchar* data = nullptr;
    gsize size = 0;
    if (gdk_pixbuf_save_to_buffer(picture.get(), &data, &size, "png", nullptr, "compression", "1",
                                  nullptr) == FALSE)
        return std::nullopt;
    const std::unique_ptr<gchar, decltype(&g_free)> owned{data, g_free};
    return TileFile::Bytes{data, data + size};
}

/// A square in the tile that is made.
struct Area {
    int x;
    int y;
    int side;
};

// Draws a picture, of which the area shows the part from a position on, in the area's own pixels.
void drawIn(const Area& area, const Picture& picture, const Picture& made, int scaledSide,
            std::pair<int, int> from)
{
    const double width = gdk_pixbuf_get_width(picture.get());
    const double height = gdk_pixbuf_get_height(picture.get());
    gdk_pixbuf_scale(picture.get(), made.get(), area.x, area.y, area.side, area.side,
                     area.x - from.first, area.y - from.second, scaledSide / width,
                     scaledSide / height, GDK_INTERP_BILINEAR);
}

std::optional<TileFile::Bytes> enlargedTile(TileFile& file, int zoom, int column, int row)
{
    const auto& levels = file.description();
    const int least = std::max(levels.leastZoom, zoom - kMostEnlargedLevels);
    for (int level = std::min(zoom - 1, levels.mostZoom); level >= least; --level) {
        const int up = zoom - level;
        const auto bytes = file.tile(level, column >> up, row >> up);
        const auto picture = bytes ? pictureOf(*bytes) : nullptr;
        if (!picture)
            continue;
        const int mask = (1 << up) - 1;
        const auto made = emptyPicture();
        drawIn({0, 0, kSide}, picture, made, kSide << up,
               {(column & mask) * kSide, (row & mask) * kSide});
        return bytesOf(made);
    }
    return std::nullopt;
}

std::optional<TileFile::Bytes> joinedTile(TileFile& file, int zoom, int column, int row)
{
    const int down = file.description().leastZoom - zoom;
    if (down > kMostLevelsBefore)
        return std::nullopt;
    const int count = 1 << down; // of tiles on each side
    const int side = kSide / count;
    const auto made = emptyPicture();
    bool isEmpty = true;
    for (int i = 0; i < count * count; ++i) {
        const int x = i % count;
        const int y = i / count;
        const auto bytes = file.tile(zoom + down, column * count + x, row * count + y);
        const auto picture = bytes ? pictureOf(*bytes) : nullptr;
        if (!picture)
            continue;
        drawIn({x * side, y * side, side}, picture, made, side, {0, 0});
        isEmpty = false;
    }
    return isEmpty ? std::nullopt : bytesOf(made);
}

} // namespace

std::optional<TileFile::Bytes> scaledTile(TileFile& file, int zoom, int column, int row)
{
    if (auto bytes = file.tile(zoom, column, row))
        return bytes;
    if (zoom < 0 || zoom > TileFile::kMostZoom)
        return std::nullopt;
    return zoom < file.description().leastZoom ? joinedTile(file, zoom, column, row)
                                               : enlargedTile(file, zoom, column, row);
}

} // namespace host
