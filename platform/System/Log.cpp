// SPDX-License-Identifier: MIT
// One mutex keeps the lines in the same order for the system log, the error stream and listeners.
// The name and the options of the system log are the host's: nothing here calls openlog().

#include "Log.h"

#include <gps/Error.h>

#include <map>
#include <mutex>
#include <string>
#include <utility>

#include <syslog.h>
#include <unistd.h>

namespace gps {
namespace {

constexpr std::size_t kLongestSystemLogLine = 1000; ///< bytes; system logs cut longer lines

struct Log {
    std::mutex mutex; // guards the members below, and keeps the order of lines
    bool toStandardError = false;
    LogFilter filter = nullptr;
    unsigned long lastId = 0;
    std::map<unsigned long, LogListener> listeners;
};

/// Never destroyed: workers may write until the process has ended.
Log& theLog()
{
    static Log& log = *new Log;
    return log;
}

/// Text from a device may contain line breaks and terminal commands.
std::string printable(std::string_view line)
{
    std::string text{line};
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7F')
            c = ' ';
    }
    return text;
}

/// The start of a line that fits into the system log, without a partial UTF-8 character at its end.
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
        if (log.filter != nullptr)
            text = log.filter(line);
        text += '\n';
        // In one call, so that the lines of several processes do not mix.
        (void)!::write(STDERR_FILENO, text.data(), text.size());
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

void setLogToStandardError(bool on, LogFilter filter)
{
    Log& log = theLog();
    const std::lock_guard lock{log.mutex};
    log.toStandardError = on;
    log.filter = filter;
}

LogSubscription::LogSubscription(LogListener listener)
{
    Log& log = theLog();
    const std::lock_guard lock{log.mutex};
    id_ = ++log.lastId;
    log.listeners.emplace(id_, std::move(listener));
}

LogSubscription::~LogSubscription()
{
    Log& log = theLog();
    const std::lock_guard lock{log.mutex};
    log.listeners.erase(id_);
}

} // namespace gps
