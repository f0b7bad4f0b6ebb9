// SPDX-License-Identifier: MIT
// Texts are made safe when they are added, since the widths must be those of the texts shown.

#include "host/base/Table.h"

#include "host/base/Text.h"

#include <algorithm>
#include <utility>

namespace host {

Table::Table(std::vector<Column> columns) : columns_(std::move(columns))
{
    for (const auto& column : columns_)
        widths_.push_back(characterCount(column.title));
}

void Table::add(const std::vector<std::string>& row)
{
    auto& shown = rows_.emplace_back();
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        shown.push_back(displayText(row[i], columns_[i].widest));
        widths_[i] = std::max(widths_[i], characterCount(shown.back()));
    }
}

std::string Table::text() const
{
    std::vector<std::string> titles;
    for (const auto& column : columns_)
        titles.push_back(column.title);
    std::string text = line(titles);
    for (const auto& row : rows_)
        text += line(row);
    return text;
}

// Counts characters, not columns of the screen, so rows with wide characters are not aligned.
std::string Table::line(const std::vector<std::string>& row) const
{
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const std::string padding(widths_[i] - characterCount(row[i]), ' ');
        if (i > 0)
            line += "  ";
        line += columns_[i].align == Align::kRight ? padding + row[i] : row[i] + padding;
    }
    // An empty last column would leave a line that ends in spaces.
    line.erase(line.find_last_not_of(' ') + 1);
    return line + '\n';
}

} // namespace host
