// SPDX-License-Identifier: MIT
// SectionedOutput: an output of sections in a fixed order, whose texts arrive in any order. GPX
// demands such an order, and receivers deliver in another. One thread at a time.

#pragma once

#include "host/files/Output.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// Text that arrives in the order of the sections is written to the output at once. Text of a
/// section before the last one written waits in a temporary file until the end, when it is inserted
/// at its place; whatever follows is moved there. Into a stream nothing can be inserted, so only
/// its first section is written at once.
class SectionedOutput {
public:
    /// @param output       gets all texts; must outlive this object
    /// @param count        the number of sections
    /// @param spoolFolder  where temporary files are made, if any are needed
    SectionedOutput(Output& output, std::size_t count, std::string spoolFolder);

    /// Appends text to a section. Precondition: `section` is below the count.
    void write(std::size_t section, std::string_view text) { outputFor(section).write(text); }

    /// Where the text of a section goes. Valid until another section is written.
    [[nodiscard]] Output& outputFor(std::size_t section)
    {
        return section == current_ ? output_ : outputForOther(section);
    }

    /// Puts all waiting text in its place; the output then ends with the last section.
    void finish();

private:
    struct Section {
        std::optional<off_t> start; // in the output; not used of the first one
        std::optional<Spool> waiting;
    };

    [[nodiscard]] Output& outputForOther(std::size_t section);
    void insertWaiting();
    [[nodiscard]] off_t endOf(std::size_t section) const;

    Output& output_;
    std::string spoolFolder_;
    std::vector<Section> sections_;
    std::size_t current_ = 0; // the one that is written at once
};

} // namespace host
