// SPDX-License-Identifier: MIT
// Message: one line for the user. Made from the reports of transfer/ and watching/; the command
// line prints it, a window shows it.

#pragma once

#include <string>

namespace host {

struct Message {
    bool isError = false; ///< otherwise a note, which --quiet leaves out
    std::string text{};

    friend bool operator==(const Message& a, const Message& b) = default;
};

} // namespace host
