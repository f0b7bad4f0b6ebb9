// SPDX-License-Identifier: MIT
// Table: lays out rows of texts in columns, for the terminal. Used by the commands that list
// things. One thread at a time.

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
        std::size_t widest = 40; ///< characters; longer texts are cut, unless it is npos
    };

    explicit Table(std::vector<Column> columns);

    /// Adds a row with one text for each column. Control characters are replaced, and each text is
    /// cut to its column's widest width.
    /// Precondition: the row has as many texts as the table has columns.
    void add(const std::vector<std::string>& row);

    /// The title line and the rows, each with its line end. Columns are aligned by characters.
    [[nodiscard]] std::string text() const;

private:
    [[nodiscard]] std::string line(const std::vector<std::string>& row) const;

    std::vector<Column> columns_;
    std::vector<std::size_t> widths_;
    std::vector<std::vector<std::string>> rows_;
};

} // namespace host
