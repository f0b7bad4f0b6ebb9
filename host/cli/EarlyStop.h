// SPDX-License-Identifier: MIT
// How commands end at a signal that comes before they have read or written anything: with one
// message, and at once, because the host thread may be waiting for a slow device. [any]

#pragma once

#include "host/options/Options.h"

namespace host {

/// Ends the process with the status of the signal. Removes the progress line and prints the
/// message; with --json, the document too.
/// Precondition: nothing has been written, and no other thread writes to the standard output.
[[noreturn]] void endEarly(int signal, const DownloadOptions& options);
[[noreturn]] void endEarly(int signal, const SendOptions& options);
[[noreturn]] void endEarly(int signal, const RestoreOptions& options);

} // namespace host
