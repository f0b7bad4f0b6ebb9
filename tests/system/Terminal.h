// SPDX-License-Identifier: MIT
// A pseudo-terminal as a program's standard error stream, and what the program shows there.

#pragma once

#include "support/PseudoTerminal.h"
#include "system/Program.h"

#include <string>
#include <string_view>

namespace support {

class Terminal : public PseudoTerminal {
public:
    /// A descriptor for a program's standard error stream, valid as long as this object.
    [[nodiscard]] How forErrors() const
    {
        return {.environment = {}, .standardError = path().c_str()};
    }

    /// Everything shown up to and including the next occurrence of a text, or up to the end of the
    /// output.
    [[nodiscard]] std::string readTo(std::string_view text) const
    {
        std::string shown;
        while (!shown.ends_with(text)) {
            const auto next = read(1);
            if (next.empty())
                break;
            shown += next;
        }
        return shown;
    }
};

} // namespace support
