// SPDX-License-Identifier: MIT
// Each query may take a limited number of steps: a file can define what looks like a table and
// never ends.

#include "host/window/map/TileFile.h"

#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"

#include <gps/NumberText.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <system_error>
#include <utility>

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <sqlite3.h>

namespace host {
namespace {

constexpr int kMostBytes = 8 << 20;      // of a tile or a text
constexpr int kStepsAtOnce = 100'000;    // of the database's machine
constexpr int kMostTimes = 100;          // that many steps
constexpr std::size_t kMostOfText = 200; // characters of a name or an attribution

/// A query, and the limit of its steps.
class TileQuery {
public:
    TileQuery(sqlite3* database, const char* text) : database_(database)
    {
        sqlite3_progress_handler(database_, kStepsAtOnce, &TileQuery::isTooLong, this);
        sqlite3_prepare_v2(database_, text, -1, &statement_, nullptr);
    }
    ~TileQuery()
    {
        sqlite3_finalize(statement_);
        sqlite3_progress_handler(database_, 0, nullptr, nullptr);
    }
    TileQuery(const TileQuery&) = delete;
    TileQuery& operator=(const TileQuery&) = delete;

    void bind(int index, int value) { sqlite3_bind_int(statement_, index, value); }
    void bind(int index, std::string_view value)
    {
        sqlite3_bind_text(statement_, index, value.data(), static_cast<int>(value.size()),
                          SQLITE_TRANSIENT);
    }

    // Whether there is a row, with a value in its first column.
    [[nodiscard]] bool findRow()
    {
        return sqlite3_step(statement_) == SQLITE_ROW &&
               sqlite3_column_type(statement_, 0) != SQLITE_NULL;
    }
    [[nodiscard]] int number() const { return sqlite3_column_int(statement_, 0); }
    [[nodiscard]] TileFile::Bytes bytes() const
    {
        const auto* const data =
            static_cast<const std::uint8_t*>(sqlite3_column_blob(statement_, 0));
        const int size = sqlite3_column_bytes(statement_, 0);
        return data != nullptr ? TileFile::Bytes{data, data + size} : TileFile::Bytes{};
    }

private:
    static int isTooLong(void* query)
    {
        return ++static_cast<TileQuery*>(query)->times_ > kMostTimes;
    }

    sqlite3* database_;
    sqlite3_stmt* statement_ = nullptr;
    int times_ = 0;
};

std::string notAMap(const std::string& path)
{
    return trFormat("{}: this is not a map file. Choose an .mbtiles file with PNG or JPEG tiles.",
                    displayText(path));
}

// Attributions are written for web pages. What is between angle brackets is left out.
std::string withoutMarkup(const std::string& text)
{
    std::string plain;
    bool isInTag = false;
    for (const char character : text) {
        isInTag = character == '<' || (isInTag && character != '>');
        if (!isInTag && character != '>')
            plain += character;
    }
    return plain;
}

} // namespace

std::shared_ptr<TileFile> TileFile::open(const std::string& path, std::string& failure)
{
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored)) { // a pipe would never answer
        failure = trFormat("{}: there is no such file.", displayText(path));
        return nullptr;
    }
    sqlite3* opened = nullptr;
    const int status =
        sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX, nullptr);
    Database database{opened, sqlite3_close};
    if (status != SQLITE_OK) {
        failure = trFormat("{}: the file cannot be read.", displayText(path));
        return nullptr;
    }
    sqlite3_limit(opened, SQLITE_LIMIT_LENGTH, kMostBytes);
    sqlite3_db_config(opened, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(opened, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    std::shared_ptr<TileFile> file{new TileFile{std::move(database)}};
    file->description_.name = std::filesystem::path{path}.stem().string();
    if (!file->describe()) {
        failure = notAMap(path);
        return nullptr;
    }
    return file;
}

bool TileFile::describe()
{
    TileQuery sample{database_.get(), "SELECT tile_data FROM tiles LIMIT 1"};
    if (!sample.findRow() || !isTilePicture(sample.bytes()))
        return false;
    if (const auto name = metadata("name"); !name.empty())
        description_.name = name;
    description_.name = displayText(description_.name, kMostOfText);
    description_.attribution = displayText(withoutMarkup(metadata("attribution")), kMostOfText);
    description_.leastZoom = zoomLevel("minzoom", "SELECT min(zoom_level) FROM tiles");
    description_.mostZoom =
        std::max(zoomLevel("maxzoom", "SELECT max(zoom_level) FROM tiles"), description_.leastZoom);
    return true;
}

std::string TileFile::metadata(std::string_view name) const
{
    TileQuery query{database_.get(), "SELECT value FROM metadata WHERE name = ? LIMIT 1"};
    query.bind(1, name);
    if (!query.findRow())
        return {};
    const auto bytes = query.bytes();
    return {bytes.begin(), bytes.end()};
}

int TileFile::zoomLevel(std::string_view name, const char* text) const
{
    if (const auto level = gps::wholeInteger(metadata(name)))
        return static_cast<int>(std::clamp<std::int64_t>(*level, 0, kMostZoom));
    TileQuery query{database_.get(), text};
    return query.findRow() ? std::clamp(query.number(), 0, kMostZoom) : 0;
}

// The file counts rows from the south.
std::optional<TileFile::Bytes> TileFile::tile(int zoom, int column, int row)
{
    if (zoom < 0 || zoom > kMostZoom)
        return std::nullopt;
    const std::lock_guard lock{mutex_};
    TileQuery query{database_.get(), "SELECT tile_data FROM tiles WHERE zoom_level = ? AND "
                                     "tile_column = ? AND tile_row = ? LIMIT 1"};
    query.bind(1, zoom);
    query.bind(2, column);
    query.bind(3, (1 << zoom) - 1 - row);
    if (!query.findRow())
        return std::nullopt;
    auto bytes = query.bytes();
    return isTilePicture(bytes) ? std::optional{std::move(bytes)} : std::nullopt;
}

// The loader tells the size before it takes memory for the picture, and gives up at a size of 0.
bool isTilePicture(const TileFile::Bytes& bytes)
{
    struct Size {
        bool isGood = false;
    } size;
    const std::shared_ptr<GdkPixbufLoader> loader{gdk_pixbuf_loader_new(), g_object_unref};
    g_signal_connect(loader.get(), "size-prepared",
                     G_CALLBACK(+[](GdkPixbufLoader* self, int width, int height, Size* found) {
                         found->isGood = width > 0 && width <= TileFile::kMostSide && height > 0 &&
                                         height <= TileFile::kMostSide;
                         gdk_pixbuf_loader_set_size(self, 0, 0);
                     }),
                     &size);
    gdk_pixbuf_loader_write(loader.get(), bytes.data(), bytes.size(), nullptr);
    gdk_pixbuf_loader_close(loader.get(), nullptr);
    return size.isGood;
}

} // namespace host
