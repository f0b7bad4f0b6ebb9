// SPDX-License-Identifier: MIT
// Output: text on its way to an open file, through a buffer. One thread at a time.

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include <gps/Error.h>

namespace host {

/// Keeps the first failure and writes nothing after it, so that only the end of a text need ask.
class Output {
public:
    /// @param file  an open file descriptor; not owned
    /// @param name  what messages call it: a path, "the standard output"
    Output(int file, std::string name);
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void write(std::string_view text);

    /// Hands everything written so far to the system. @return  the first failure ever
    std::optional<gps::Error> flush();

    /// Appends all of another open file, from its start.
    void writeFrom(int file);

    [[nodiscard]] const std::string& name() const noexcept { return name_; }

private:
    void writeOut(std::string_view text);
    void fail(std::string_view what, int code);

    static constexpr std::size_t kBufferSize = std::size_t{64} << 10;

    int file_;
    std::string name_;
    std::string buffer_;
    std::optional<gps::Error> failure_;
};

/// A file without a name, for a part of a text whose place comes later. Gone with this object.
class Spool {
public:
    /// @param folder  where the system keeps its content; the system's folder for temporary files when that cannot be
    explicit Spool(const std::string& folder);
    ~Spool();
    Spool(const Spool&) = delete;
    Spool& operator=(const Spool&) = delete;

    void write(std::string_view text) { output_.write(text); }

    /// Appends everything written. @return  what went wrong here; failures of `output` stay with it
    [[nodiscard]] std::optional<gps::Error> copyTo(Output& output);

private:
    int file_;
    Output output_;
};

} // namespace host
