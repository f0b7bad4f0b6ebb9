// SPDX-License-Identifier: MIT
// NamedLines: the record lines of a waypoint or geocache file by name. Downloads, snapshots and
// merges keep one record per name of files that may have millions of lines. So this keeps where
// the lines are, and decodes a line when its record is needed. Not thread-safe. [any]

#pragma once

#include "../common/NameTable.h"
#include "../common/RecordKind.h"

#include <gps/GPSTransferAccount.h>
#include <gps/Value.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace magellan {

class SentenceFields;

/// A kind whose files hold one record per line, identified by name.
struct NamedKind {
    RecordKind kind;
    std::string_view sentence; ///< the first field of its lines
    void (*read)(const SentenceFields& fields, gps::GPSPoint& point, gps::Dictionary* record);
    std::optional<std::string_view> (*nameIn)(const SentenceFields& fields);

    /// Whether a line is as it would be written after it was read.
    bool (*isAsWritten)(const SentenceFields& fields);

    /// Appends the line of a record to a text; false if there must be no file.
    bool (*appendLine)(const gps::Value& element, std::string& text);
};

extern const NamedKind kWayPointLines;
extern const NamedKind kGeoCacheLines;

class NamedLines {
public:
    /// Finds the last line of each name, and records what becomes of each line.
    /// Precondition: the text outlives this object.
    /// @throws gps::RangeError  a sentence is truncated
    NamedLines(const NamedKind& kind, std::string_view text, gps::LineAccount& account);

    /// How many names the lines have. Their indices are below it, in order of first appearance.
    [[nodiscard]] std::size_t count() const noexcept { return lines_.size(); }

    [[nodiscard]] const NamedKind& kind() const noexcept { return kind_; }

    /// Returns the index of a name; nullopt if no line has it.
    [[nodiscard]] std::optional<std::size_t> find(std::string_view name) const
    {
        return names_.find(name);
    }

    /// Returns the name of an index. Precondition: `index` is below count().
    [[nodiscard]] std::string_view nameOf(std::size_t index) const { return names_.at(index); }

    /// Appends the last line of a name to a text, with its line end, if it is as it would be
    /// written after it was read. Precondition: `index` is below count().
    /// @return  whether it is. If not, the text is unchanged
    [[nodiscard]] bool appendAsWritten(std::size_t index, std::string& text) const;

    /// Decodes the last line of a name.
    /// Precondition: `index` is below count().
    /// @param record  gets the line's keys, without "point"
    void read(std::size_t index, gps::GPSPoint& point, gps::Dictionary& record) const;

    /// The same, with "point".
    void read(std::size_t index, gps::Dictionary& record) const;

private:
    /// Files have at most 2 GiB, and a line has at least two bytes.
    struct Line {
        const char* body;
        std::uint32_t length;
        std::uint32_t number;
    };

    const NamedKind& kind_;
    NameTable names_;
    std::vector<Line> lines_; // by index in names_
};

} // namespace magellan
