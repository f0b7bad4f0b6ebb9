// SPDX-License-Identifier: MIT

#include "Log.h"

#include <gps/Error.h>

#include <map>
#include <mutex>
#include <utility>

#include <syslog.h>
#include <unistd.h>

namespace gps {
namespace {

constexpr std::size_t kLongestSystemLogLine =
    1000; ///< bytes; what a system log carries in one piece

struct Log {
    Log() { ::openlog("magellangps", LOG_PID, LOG_USER); }

    std::mutex mutex; // guards what follows, and keeps the lines in one order everywhere
    bool toStandardError = false;
    unsigned long lastId = 0;
    std::map<unsigned long, LogListener> listeners;
};

/// Never destroyed: workers write until the process is gone.
Log& theLog()
{
    static Log& log = *new Log;
    return log;
}

/// What a device sends may hold line breaks and terminal commands; neither belongs in a line.
std::string printable(std::string_view line)
{
    std::string text{line};
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7F')
            c = ' ';
    }
    return text;
}

/// A line's front as the system log takes it, cut between two characters.
std::string_view frontForSystemLog(std::string_view line)
{
    if (line.size() <= kLongestSystemLogLine)
        return line;
    std::size_t end = kLongestSystemLogLine;
    while (end > 0 && (static_cast<unsigned char>(line[end]) & 0xC0U) == 0x80U)
        --end;
    return line.substr(0, end);
}

void write(std::string_view line, const Error* error)
{
    std::string text = printable(line);
    Log& log = theLog();
    const std::lock_guard lock{log.mutex};
    const auto front = frontForSystemLog(text);
    ::syslog(LOG_NOTICE, "%.*s%s", static_cast<int>(front.size()), front.data(),
             front.size() < text.size() ? "..." : "");
    if (log.toStandardError) {
        text += '\n';
        (void)!::write(STDERR_FILENO, text.data(),
                       text.size()); // at once, so that lines of several processes do not mix
    }
    for (const auto& [id, listener] : log.listeners)
        listener(line, error);
}

} // namespace

void logLine(std::string_view line)
{
    write(line, nullptr);
}

void logError(std::string_view source, const Error& error)
{
    write(std::string{source} + ": " + error.text(), &error);
}

void setLogToStandardError(bool on)
{
    Log& log = theLog();
    const std::lock_guard lock{log.mutex};
    log.toStandardError = on;
}

LogListening::LogListening(LogListener listener)
{
    Log& log = theLog();
    const std::lock_guard lock{log.mutex};
    id_ = ++log.lastId;
    log.listeners.emplace(id_, std::move(listener));
}

LogListening::~LogListening()
{
    Log& log = theLog();
    const std::lock_guard lock{log.mutex};
    log.listeners.erase(id_);
}

} // namespace gps
