// SPDX-License-Identifier: MIT
// RawOptions: what the parser stores, each option valid by itself. finish() checks the options
// together and picks those of the command. Reads no files. [host thread]

#pragma once

#include "host/options/Options.h"

#include <optional>
#include <string>

namespace host {

enum class Command { kInfo, kDevices, kAcquire, kImport, kOpen, kSend, kRestore, kWatch, kHelp };

struct RawOptions {
    Command command = Command::kInfo;
    GlobalOptions global;

    // The options of the command; those of the other commands keep their defaults.
    DevicesOptions devices;
    AcquireOptions acquire;
    ImportOptions import;
    OpenOptions open;
    SendOptions send;
    RestoreOptions restore;
    WatchOptions watch;

    std::optional<std::string> helpTopic; ///< of help: the name of a command
    std::optional<std::string> format;    ///< of acquire, import or watch; not looked up yet
};

/// Checks what was typed and completes the command's options. Precondition: it is not kHelp.
/// @param options  out: the command's options; unchanged after a mistake
/// @return         what is wrong, for the user to read; empty if nothing is
[[nodiscard]] std::string finish(const RawOptions& raw, std::optional<CommandOptions>& options);

/// Whether the output file's extension names a format, which a default must not override.
[[nodiscard]] bool isFormatNamedByExtension(const RawOptions& raw);

/// What is wrong with the name of a format, for the user to read; empty if nothing is.
[[nodiscard]] std::string formatMistake(const std::string& name);

} // namespace host
