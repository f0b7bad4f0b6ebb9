// SPDX-License-Identifier: MIT
// Output: text on its way to an open file, through a buffer. One thread at a time.

#pragma once

#include <gps/Error.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Keeps the first failure and writes nothing after it, so that only the end of a text need ask.
class Output {
public:
    /// @param file  an open file descriptor; not owned
    /// @param name  what messages call it: a path, "the standard output"
    Output(int file, std::string name);
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void write(std::string_view text)
    {
        if (text.size() > kBufferSize - used_)
            writePast(text);
        else
            used_ += text.copy(buffer_.get() + used_, text.size());
    }

    /// Hands everything written so far to the system. @return  the first failure ever
    std::optional<gps::Error> flush();

    /// Appends all of another open file, from its start.
    void writeFrom(int file);

    /// Counts as this output's failure, unless it has one already.
    void fail(const gps::Error& failure);

    [[nodiscard]] const std::string& name() const noexcept { return name_; }

protected:
    [[nodiscard]] int file() const noexcept { return file_; }

private:
    void writePast(std::string_view text);
    void writeOut(std::string_view text);
    void fail(std::string_view what, int code);

    static constexpr std::size_t kBufferSize = std::size_t{64} << 10;

    int file_;
    std::string name_;
    std::unique_ptr<char[]> buffer_;
    std::size_t used_ = 0;
    std::optional<gps::Error> failure_;
};

/// A file without a name, for a part of a text whose place comes later. Gone with this object.
class Spool : public Output {
public:
    /// @param folder  where the system keeps its content; the system's folder for temporary files
    /// when that cannot be
    explicit Spool(const std::string& folder);
    ~Spool();

    /// Appends everything written to an output and begins anew. What went wrong here becomes that
    /// output's failure.
    void moveTo(Output& output);
};

} // namespace host
