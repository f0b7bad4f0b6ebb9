// SPDX-License-Identifier: MIT
// OutputFile: a file that stands under its name only when it is whole. One at a time in the
// process. [host thread], but its output may be written on another thread meanwhile.

#pragma once

#include "host/files/Output.h"

#include <optional>
#include <string>

namespace host {

/// Writes beside the final name, under a hidden one, and renames. What is neither committed nor
/// kept is removed: with this object, or when a signal ends the process, which one that is ignored
/// does not. A device or a pipe under the final name is written to directly.
class OutputFile {
public:
    /// @param path  the final name; "-" is the standard output
    explicit OutputFile(std::string path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Creates the hidden file. @return  no such folder, no permission, a folder of that name
    [[nodiscard]] std::optional<gps::Error> open();

    /// Where to write. Precondition: open.
    [[nodiscard]] Output& output() noexcept { return *output_; }

    /// A folder on the same medium, for temporary data.
    [[nodiscard]] const std::string& folder() const noexcept { return folder_; }

    /// Flushes to the medium and gives the file its final name; an older file stays when this
    /// fails.
    [[nodiscard]] std::optional<gps::Error> commit();

    /// As commit, but under `partialPath`. What went out directly stays as it is.
    [[nodiscard]] std::optional<gps::Error> keepPartial();

    /// NAME.partial.EXT beside the final name; empty for what is written to directly.
    [[nodiscard]] std::string partialPath() const;

private:
    [[nodiscard]] std::optional<gps::Error> openDirectly();
    [[nodiscard]] std::optional<gps::Error> finishAs(const std::string& path);
    [[nodiscard]] gps::Error refusal(std::string_view what, int code) const;

    std::string path_;
    std::string folder_;
    std::string hiddenPath_; // empty: written to directly, or done
    int file_ = -1;
    std::optional<Output> output_;
};

} // namespace host
