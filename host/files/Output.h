// SPDX-License-Identifier: MIT
// Output: buffers text on its way to an open file. Spool: a temporary output, for text that is
// needed later in the file. The format writers write to them. One thread at a time.

#pragma once

#include <gps/Error.h>
#include <platform/System/FileSystem.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace host {

/// Keeps the first failure and writes nothing more after it, so that writers need to check only
/// once, at the end.
class Output {
public:
    enum class Kind {
        kStream, ///< whatever can be written to, from wherever it stands
        kFile,   ///< an empty regular file, open for reading and writing, that nobody else writes
    };

    /// @param file   an open file descriptor; not owned
    /// @param name   for messages: a path, or "the standard output"
    /// @param files  the system to work on; must outlive this object
    Output(int file, std::string name, gps::FileSystem& files = gps::FileSystem::system(),
           Kind kind = Kind::kStream);
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void write(std::string_view text)
    {
        if (text.size() > kBufferSize - used_)
            writePast(text);
        else
            used_ += text.copy(buffer_.get() + used_, text.size());
    }

    /// Where up to `size` characters, at most kMostRoom, can be written directly. Call setEnd()
    /// afterwards, and nothing else before.
    [[nodiscard]] char* room(std::size_t size)
    {
        if (size > kBufferSize - used_)
            flush();
        return buffer_.get() + used_;
    }

    /// @param end  behind the last character that was written at room()
    void setEnd(const char* end) noexcept { used_ = static_cast<std::size_t>(end - buffer_.get()); }

    static constexpr std::size_t kMostRoom = std::size_t{16} << 10;

    /// Writes the buffered text to the file. @return  the first failure since the start
    std::optional<gps::Error> flush();

    /// Appends the whole content of another open file.
    void writeFrom(int file);

    /// Whether text can be inserted into what was written, and replace it: in a kFile only.
    [[nodiscard]] bool canInsert() const noexcept { return kind_ == Kind::kFile; }

    /// How many bytes were written, buffered ones included.
    [[nodiscard]] off_t size() const noexcept { return written_ + static_cast<off_t>(used_); }

    /// Inserts the first bytes of another open file at an offset of this one.
    /// Precondition: canInsert(), and the offset is at most size().
    void insertFrom(int file, off_t count, off_t offset);

    /// Replaces what was written at an offset by a text of the same length.
    /// Precondition: canInsert(), and the text ends at size() or before.
    void overwrite(off_t offset, std::string_view text);

    /// Records a failure, unless there is one already.
    void fail(const gps::Error& failure);

    [[nodiscard]] const std::string& name() const noexcept { return name_; }

protected:
    [[nodiscard]] int file() const noexcept { return file_; }
    [[nodiscard]] gps::FileSystem& files() const noexcept { return files_; }
    void countFromZero() noexcept { written_ = 0; } ///< after the file was emptied

    /// Calls a function with each piece of another open file, or of this one after a flush.
    void forEachPiece(int file, const std::function<void(std::string_view)>& use);

private:
    void writePast(std::string_view text);
    void writeOut(std::string_view text);
    void moveTail(off_t offset, off_t distance);
    [[nodiscard]] std::size_t readPiece(int file, off_t offset, std::size_t most);
    void writePiece(std::size_t count, off_t offset);
    void fail(std::string_view what, int code);

    static constexpr std::size_t kBufferSize = std::size_t{64} << 10;

    gps::FileSystem& files_;
    int file_;
    std::string name_;
    Kind kind_;
    off_t written_ = 0;              // without what is in the buffer
    std::unique_ptr<char[]> buffer_; // empty whenever other files are read into it
    std::size_t used_ = 0;
    std::optional<gps::Error> failure_;
};

/// A temporary file without a name. The system deletes it together with this object, even if the
/// process is killed.
class Spool : public Output {
public:
    /// @param folder  where the file uses space; if no file can be created there, the system's
    ///                folder for temporary files
    explicit Spool(const std::string& folder, gps::FileSystem& files = gps::FileSystem::system());
    ~Spool();

    /// Appends everything written so far to an output, and empties this one. A failure of the spool
    /// becomes a failure of that output.
    void moveTo(Output& output);

    /// The same, but inserts it. Precondition: output.canInsert().
    void insertInto(Output& output, off_t offset);

    /// Calls a function with each piece of what was written so far.
    /// @param output  a failure of the spool becomes a failure of this one
    void readBack(Output& output, const std::function<void(std::string_view)>& use);

private:
    [[nodiscard]] bool isReadable(Output& output);
    void clear(Output& output);
};

} // namespace host
