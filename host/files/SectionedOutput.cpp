// SPDX-License-Identifier: MIT
// Inserting moves every byte behind the place, so a section pays only if its text comes late.

#include "host/files/SectionedOutput.h"

#include <utility>

namespace host {

SectionedOutput::SectionedOutput(Output& output, std::size_t count, std::string spoolFolder)
    : output_(output), spoolFolder_(std::move(spoolFolder)), sections_(count)
{}

Output& SectionedOutput::outputForOther(std::size_t section)
{
    auto& chosen = sections_[section];
    if (section > current_ && output_.canInsert()) {
        current_ = section;
        chosen.start = output_.size();
        return output_;
    }
    if (!chosen.waiting)
        chosen.waiting.emplace(spoolFolder_);
    return *chosen.waiting;
}

void SectionedOutput::finish()
{
    if (output_.canInsert())
        return insertWaiting();
    for (auto& section : sections_) {
        if (section.waiting)
            section.waiting->moveTo(output_);
    }
}

// From the last section to the first, so that the places of those before do not move.
void SectionedOutput::insertWaiting()
{
    for (auto section = current_; section > 0;) {
        --section;
        auto& [start, waiting] = sections_[section];
        if (!waiting)
            continue;
        const auto end = endOf(section);
        waiting->insertInto(output_, end);
        start = start.value_or(end);
    }
}

// Where the next section starts. There is one: text waits only if a later section was written.
off_t SectionedOutput::endOf(std::size_t section) const
{
    auto next = section + 1;
    while (!sections_[next].start)
        ++next;
    return *sections_[next].start;
}

} // namespace host
