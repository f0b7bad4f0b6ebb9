// SPDX-License-Identifier: MIT
// The ends of commands that have no report: there was no device, memory ran out, or a signal came.
// Even then --json prints a document, which has all keys of its command. Stateless. [any]

#pragma once

#include "host/base/Sentences.h"
#include "host/cli/Console.h"
#include "host/cli/ExitStatus.h"
#include "host/operations/StopSignals.h"
#include "host/options/Options.h"
#include "host/words/Message.h"

#include <gps/Error.h>

#include <optional>
#include <string>
#include <utility>

namespace host {

/// How a command ended.
struct EarlyEnd {
    ExitStatus status;
    Message message;                   ///< what is printed on standard error
    std::optional<gps::Error> error{}; ///< nullopt: a signal stopped the command
    bool mayHaveBegun = false;         ///< whether it is not known what the command did
};

/// The document on one line, with its line end; empty without --json.
[[nodiscard]] std::string earlyDocument(const DownloadOptions& options, const EarlyEnd& end);
[[nodiscard]] std::string earlyDocument(const SendOptions& options, const EarlyEnd& end);
[[nodiscard]] std::string earlyDocument(const RestoreOptions& options, const EarlyEnd& end);

/// Empty: the documents of the other commands describe what there is, and not what was done.
[[nodiscard]] std::string earlyDocument(const GlobalOptions& options, const EarlyEnd& end);

/// Prints why a command has ended, and its document.
/// @return  the status; kFailed if the document cannot be written
[[nodiscard]] ExitStatus printEarlyEnd(const EarlyEnd& end, const std::string& document,
                                       const Console& console);

/// Ends a command because of an error, before it has done anything.
/// @param stop  from now on a signal changes nothing: the command has ended
template <typename Options>
[[nodiscard]] ExitStatus refuse(const Options& options, const gps::Error& error, ExitStatus status,
                                StopSignals& stop, const Console& console)
{
    stop.requestOnly();
    Message message{true, sentencesOf(error)};
    const EarlyEnd end{status, std::move(message), error};
    return printEarlyEnd(end, earlyDocument(options, end), console);
}

} // namespace host
