// SPDX-License-Identifier: MIT
// Console: what the program says to the person at the terminal, on the standard error stream. [host
// thread]

#pragma once

#include <gps/Error.h>

#include <string>
#include <string_view>
#include <vector>

namespace host {

class Console {
public:
    /// @param quiet  whether notes are left unsaid
    /// @param errors  gets the bad news, a text each, instead of the error stream; null: they are
    /// printed
    explicit Console(bool quiet, std::vector<std::string>* errors = nullptr)
        : quiet_(quiet), errors_(errors)
    {}

    /// One line: the description, the recovery suggestion and the path, as far as there are any.
    void error(const gps::Error& error) const;

    /// One line of bad news.
    void error(std::string_view sentence) const;

    /// One line that may go unread.
    void note(std::string_view sentence) const;

    /// Lines that may go unread, each harmless and with its line end already.
    void lines(std::string_view text) const;

private:
    bool quiet_;
    std::vector<std::string>* errors_;
};

} // namespace host
