// SPDX-License-Identifier: MIT
// The diagnostic log. Lines go to the system log, to the standard error stream if enabled, and to
// all listeners. [any]

#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace gps {

class Error;

/// Writes one line. Control characters are replaced by spaces. In the system log, lines have the
/// name that the host has chosen with openlog(), or the program's name. [any]
void logLine(std::string_view line);

/// Writes "source: error". Listeners also get the error itself. [any]
void logError(std::string_view source, const Error& error);

/// Makes a line safe to show on a terminal.
using LogFilter = std::string (*)(std::string_view line);

/// Whether lines are also written to the standard error stream; off at first. [any]
/// @param filter  null: control characters are replaced by spaces
void setLogToStandardError(bool on, LogFilter filter = nullptr);

/// Receives one line, and the error that it reports or null. Both are valid during the call only.
using LogListener = std::function<void(std::string_view line, const Error* error)>;

/// Calls a listener for every line until destroyed, on the thread that writes the line. No call is
/// running or follows once the destructor has returned. [any]
///
/// Precondition: the listener does not write to the log.
class LogSubscription {
public:
    explicit LogSubscription(LogListener listener);
    ~LogSubscription();
    LogSubscription(const LogSubscription&) = delete;
    LogSubscription& operator=(const LogSubscription&) = delete;

private:
    unsigned long id_;
};

} // namespace gps
