// SPDX-License-Identifier: MIT
// Console: what the program says to the person at the terminal, on standard error. [host thread]

#pragma once

#include "host/words/Message.h"

#include <gps/Error.h>

#include <string_view>
#include <vector>

namespace host {

class Console {
public:
    /// @param isQuiet  whether only errors are printed
    explicit Console(bool isQuiet) : isQuiet_(isQuiet) {}

    /// Prints one line: the description, the recovery suggestion and the path, as far as the error
    /// has them.
    void error(const gps::Error& error) const;

    /// Prints one line. Control characters in it are replaced.
    void error(std::string_view sentence) const;

    /// Prints one line unless quiet. Control characters in it are replaced.
    void note(std::string_view sentence) const;

    /// Prints each message as an error or a note.
    void messages(const std::vector<Message>& messages) const;

    /// Prints lines as they are, unless quiet.
    /// Precondition: the text is free of control characters except for the line ends.
    void lines(std::string_view text) const;

private:
    bool isQuiet_;
};

} // namespace host
