// SPDX-License-Identifier: MIT
// MadeTileFile: a fixture with a tile file that a test fills.

#pragma once

#include "host/window/map/TileFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include <sqlite3.h>
#include <stdlib.h>

namespace window_test {

inline std::string hex(const std::string& bytes)
{
    static constexpr const char* kDigits = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) {
        text += kDigits[static_cast<unsigned char>(byte) / 16];
        text += kDigits[static_cast<unsigned char>(byte) % 16];
    }
    return text;
}

class MadeTileFile : public testing::Test {
protected:
    MadeTileFile()
    {
        std::string pattern = std::filesystem::temp_directory_path() / "tiles-XXXXXX";
        folder_ = mkdtemp(pattern.data());
        path_ = folder_ / "map.mbtiles";
    }
    ~MadeTileFile() override { std::filesystem::remove_all(folder_); }

    void execute(const std::string& text)
    {
        sqlite3* opened = nullptr;
        ASSERT_EQ(sqlite3_open(path_.c_str(), &opened), SQLITE_OK);
        const std::unique_ptr<sqlite3, int (*)(sqlite3*)> database{opened, sqlite3_close};
        ASSERT_EQ(sqlite3_exec(opened, text.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
            << sqlite3_errmsg(opened);
    }

    void makeTables()
    {
        execute("CREATE TABLE metadata (name text, value text);"
                "CREATE TABLE tiles (zoom_level int, tile_column int, tile_row int, tile_data "
                "blob);");
    }

    void putTile(int zoom, int column, int row, const std::string& data)
    {
        execute("INSERT INTO tiles VALUES (" + std::to_string(zoom) + ',' + std::to_string(column) +
                ',' + std::to_string(row) + ",x'" + hex(data) + "')");
    }

    std::shared_ptr<host::TileFile> open() { return host::TileFile::open(path_, failure_); }

    std::filesystem::path folder_;
    std::filesystem::path path_;
    std::string failure_;
};

} // namespace window_test
