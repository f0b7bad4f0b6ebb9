// SPDX-License-Identifier: MIT
// Output: buffers text on its way to an open file. Spool: a temporary output, for text that is
// needed later in the file. The format writers write to them. One thread at a time.

#pragma once

#include <gps/Error.h>
#include <platform/System/FileSystem.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Keeps the first failure and writes nothing more after it, so that writers need to check only
/// once, at the end.
class Output {
public:
    /// @param file   an open file descriptor; not owned
    /// @param name   for messages: a path, or "the standard output"
    /// @param files  the system to work on; must outlive this object
    Output(int file, std::string name, gps::FileSystem& files = gps::FileSystem::system());
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void write(std::string_view text)
    {
        if (text.size() > kBufferSize - used_)
            writePast(text);
        else
            used_ += text.copy(buffer_.get() + used_, text.size());
    }

    /// Writes the buffered text to the file. @return  the first failure since the start
    std::optional<gps::Error> flush();

    /// Appends the whole content of another open file.
    void writeFrom(int file);

    /// Records a failure, unless there is one already.
    void fail(const gps::Error& failure);

    [[nodiscard]] const std::string& name() const noexcept { return name_; }

protected:
    [[nodiscard]] int file() const noexcept { return file_; }
    [[nodiscard]] gps::FileSystem& files() const noexcept { return files_; }

private:
    void writePast(std::string_view text);
    void writeOut(std::string_view text);
    void fail(std::string_view what, int code);

    static constexpr std::size_t kBufferSize = std::size_t{64} << 10;

    gps::FileSystem& files_;
    int file_;
    std::string name_;
    std::unique_ptr<char[]> buffer_;
    std::size_t used_ = 0;
    std::optional<gps::Error> failure_;
};

/// A temporary file without a name. The system deletes it together with this object, even if the
/// process is killed.
class Spool : public Output {
public:
    /// @param folder  where the file uses space; if no file can be created there, the system's
    /// folder
    ///                for temporary files
    explicit Spool(const std::string& folder, gps::FileSystem& files = gps::FileSystem::system());
    ~Spool();

    /// Appends everything written so far to an output, and empties this one. A failure of the spool
    /// becomes a failure of that output.
    void moveTo(Output& output);
};

} // namespace host
