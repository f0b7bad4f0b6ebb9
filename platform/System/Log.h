// SPDX-License-Identifier: MIT
// The diagnostic log: the system log, the standard error stream when asked, and whoever listens.
// [any] thread.

#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace gps {

class Error;

/// Writes one line.
void logLine(std::string_view line);

/// Writes "source: error" and lets listeners see the error itself.
void logError(std::string_view source, const Error& error);

/// Whether lines go to the standard error stream too. Off at first.
void setLogToStandardError(bool on);

/// One line, and the error that it tells of (null: none). Both last for the call alone.
using LogListener = std::function<void(std::string_view line, const Error* error)>;

/// Hears every line, on the thread that writes it, until destroyed. Nothing is heard of after the
/// destructor. A listener must not write to the log itself.
class LogListening {
public:
    explicit LogListening(LogListener listener);
    ~LogListening();
    LogListening(const LogListening&) = delete;
    LogListening& operator=(const LogListening&) = delete;

private:
    unsigned long id_;
};

} // namespace gps
