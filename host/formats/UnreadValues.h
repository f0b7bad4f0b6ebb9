// SPDX-License-Identifier: MIT
// UnreadValues: counts the elevations and times of one map file that cannot be read, or that count
// as unknown. One thread at a time.

#pragma once

#include "host/formats/PointValues.h"

#include <cstddef>
#include <string>
#include <vector>

namespace host {

class XmlFile;

class UnreadValues {
public:
    /// Adds what one point has.
    /// @param offset     of its element in the document
    /// @param moreLines  from there to the point
    void add(const UnreadTexts& texts, std::ptrdiff_t offset, std::size_t moreLines = 0);

    [[nodiscard]] bool isEmpty() const noexcept
    {
        return elevations_.count + times_.count + uncountedTimes_.count == 0;
    }

    /// A sentence for each kind of value: how many there are, which is the first, and its line.
    [[nodiscard]] std::vector<std::string> sentences(const XmlFile& file) const;

private:
    struct Kind {
        std::size_t count = 0;
        std::string first{};
        std::ptrdiff_t offset = 0;
        std::size_t moreLines = 0;

        void add(const std::string& text, std::ptrdiff_t at, std::size_t linesBelow);
    };

    Kind elevations_;
    Kind times_;
    Kind uncountedTimes_;
};

} // namespace host
