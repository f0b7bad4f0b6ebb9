// SPDX-License-Identifier: MIT
// TileFile: an .mbtiles file, which is a database with the tiles of a map. Such files come from
// anywhere: nothing in them is trusted.
// Source: MBTiles Specification 1.3.

#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct sqlite3;

namespace host {

class TileFile {
public:
    using Bytes = std::vector<std::uint8_t>;

    struct Description {
        std::string name{};
        std::string attribution{}; ///< a text, without markup
        int leastZoom = 0;
        int mostZoom = 0;
    };

    static constexpr int kMostZoom = 22;   ///< deeper tiles are ignored
    static constexpr int kMostSide = 1024; ///< pixels of a tile

    /// Opens a file. Takes time: not on the main loop's thread. [any]
    /// @param failure  out: why the file cannot be shown, and what to do
    [[nodiscard]] static std::shared_ptr<TileFile> open(const std::string& path,
                                                        std::string& failure);

    [[nodiscard]] const Description& description() const noexcept { return description_; }

    /// The picture of a tile, of a size that can be shown.
    /// @param row  from the north
    /// @return     nullopt: there is none, or it cannot be read [any]
    [[nodiscard]] std::optional<Bytes> tile(int zoom, int column, int row);

private:
    using Database = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;

    explicit TileFile(Database database) : database_(std::move(database)) {}
    [[nodiscard]] bool describe();
    [[nodiscard]] std::string metadata(std::string_view name) const;
    [[nodiscard]] int zoomLevel(std::string_view name, const char* text) const;

    std::mutex mutex_;
    Database database_; // under mutex_, once the file is open
    Description description_;
};

/// Whether the bytes begin like a picture that the toolkit can read, of at most TileFile::kMostSide
/// on each side. Does not decode it. [any]
[[nodiscard]] bool isTilePicture(const TileFile::Bytes& bytes);

} // namespace host
