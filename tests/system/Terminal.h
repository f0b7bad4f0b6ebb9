// SPDX-License-Identifier: MIT
// A terminal that a program has its errors on, and what it shows there.

#pragma once

#include "support/PseudoTerminal.h"
#include "system/Program.h"

#include <string>
#include <string_view>

namespace support {

class Terminal : public PseudoTerminal {
public:
    /// A program's standard error stream on this terminal. Lasts as long as it.
    [[nodiscard]] How forErrors() const
    {
        return {.environment = {}, .standardError = path().c_str()};
    }

    /// What has been shown, up to the next place with this text and with it, or as far as anything
    /// comes.
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
