// SPDX-License-Identifier: MIT
// The formats that records can be written in. Whoever adds a format adds its writer and one row
// here. [any]

#pragma once

#include "host/files/Output.h"
#include "host/formats/Writer.h"

#include <memory>
#include <string>
#include <string_view>

namespace host {

struct Format {
    std::string_view name; ///< as `--format` and, after a ".", as a file's extension
    std::unique_ptr<Writer> (*make)(Output& output, const std::string& spoolFolder);
};

/// @return  null when there is no such format
[[nodiscard]] const Format* findFormat(std::string_view name);

/// The names of all formats, as a person lists them.
[[nodiscard]] std::string formatNames();

} // namespace host
