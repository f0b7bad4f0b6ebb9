// SPDX-License-Identifier: MIT
// The table of output formats. A new format needs a Writer and one row in Formats.cpp. [any]

#pragma once

#include "host/files/Output.h"
#include "host/formats/RecordOrigin.h"
#include "host/formats/Writer.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace host {

struct Format {
    std::string_view name; ///< what `--format` takes, and the file extension without its "."

    /// @param spoolFolder  where the writer may keep temporary files
    std::unique_ptr<Writer> (*make)(Output& output, const std::string& spoolFolder,
                                    const RecordOrigin& origin);
};

/// All formats. They live as long as the program.
[[nodiscard]] std::span<const Format> formats();

/// @return  a format that lives as long as the program; null if there is none of that name
[[nodiscard]] const Format* findFormat(std::string_view name);

/// The names of all formats, separated by ", ".
[[nodiscard]] std::string formatNames();

} // namespace host
