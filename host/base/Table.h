// SPDX-License-Identifier: MIT
// Table: rows of texts in columns, for a terminal. One thread at a time.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace host {

class Table {
public:
    enum class Align { kLeft, kRight };

    struct Column {
        std::string title;
        Align align = Align::kLeft;
        std::size_t widest =
            40; ///< characters, what is longer is cut; std::string::npos: nothing is
    };

    explicit Table(std::vector<Column> columns);

    /// Adds a row: one text a column. The texts are shown harmlessly, each cut to its column's
    /// width.
    void add(const std::vector<std::string>& row);

    /// The title line and the rows, each with its line end; the widths are counted in characters.
    [[nodiscard]] std::string text() const;

private:
    [[nodiscard]] std::string line(const std::vector<std::string>& row) const;

    std::vector<Column> columns_;
    std::vector<std::size_t> widths_;
    std::vector<std::vector<std::string>> rows_;
};

} // namespace host
