// SPDX-License-Identifier: MIT
// Message: one line for the person at the terminal. Made from the reports of transfer/ and
// watching/, printed by Console.

#pragma once

#include <string>

namespace host {

struct Message {
    bool isError = false; ///< otherwise a note, which --quiet leaves out
    std::string text{};

    friend bool operator==(const Message& a, const Message& b) = default;
};

} // namespace host
