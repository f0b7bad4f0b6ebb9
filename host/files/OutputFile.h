// SPDX-License-Identifier: MIT
// OutputFile: a file that gets its name only when it is complete. A download writes into one.
// One thread at a time; each thread may have its own. A signal handler removes those that are open,
// at most four in the process.

#pragma once

#include "host/files/Output.h"

#include <platform/System/AtomicFile.h>
#include <platform/System/OpenFile.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Writes a hidden file beside the final one, and renames it. A file that is neither committed nor
/// kept as partial is removed: by the destructor, or by a signal that ends the process. A signal
/// that the process ignores is not handled. A device or a pipe is written directly.
class OutputFile {
public:
    /// @param path   the final name; "-" is the standard output. The file that a link leads to is
    ///               replaced, not the link
    /// @param files  the system to work on; must outlive this object
    explicit OutputFile(std::string path, gps::FileSystem& files = gps::FileSystem::system());
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Creates the hidden file, after removing those that killed processes left in its folder.
    /// @return  why it cannot be created
    [[nodiscard]] std::optional<gps::Error> open();

    /// Where to write. Precondition: open() succeeded.
    [[nodiscard]] Output& output() noexcept { return *output_; }

    /// A folder on the same medium, for temporary data.
    [[nodiscard]] const std::string& folder() const noexcept { return folder_; }

    /// Whether it would replace a larger file.
    [[nodiscard]] bool replacesMore() const;

    /// Flushes the file to the medium and gives it its final name. If that fails before the rename,
    /// an older file of that name is unchanged.
    [[nodiscard]] std::optional<gps::Error> commit();

    /// Like commit(), but the file gets the name partialPath(). Does nothing if the file is written
    /// directly.
    [[nodiscard]] std::optional<gps::Error> keepPartial();

    /// NAME.partial.EXT beside the final name; empty if the file is written directly.
    [[nodiscard]] std::string partialPath() const;

private:
    [[nodiscard]] std::optional<gps::Error> openDirectly();
    [[nodiscard]] std::optional<gps::Error> finishAs(const std::string& path);
    [[nodiscard]] gps::Error errorFor(std::string_view what, int code) const;

    gps::FileSystem& files_;
    std::string path_;
    std::string folder_;
    gps::AtomicFile file_;
    gps::OpenFile device_; // written directly
    std::optional<Output> output_;
    std::optional<std::size_t> unfinished_; // its number for the signal handler
};

} // namespace host
