// SPDX-License-Identifier: MIT
// Lines are flushed one by one, so that a log is complete up to a crash.

#include "SessionLog.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <ostream>
#include <utility>

namespace simulator {

std::string_view name(LogKind kind) noexcept
{
    constexpr std::array<std::string_view, 10> kNames{
        "opened",     "closed", "speed", "own-speed", "received",
        "unreadable", "sent",   "fault", "gave-up",   "hung-up"};
    return kNames.at(static_cast<std::size_t>(kind));
}

std::string jsonLine(const LogEntry& entry)
{
    const nlohmann::ordered_json line{{"time", entry.seconds},
                                      {"event", name(entry.kind)},
                                      {"speed", entry.speed},
                                      {"text", entry.text}};
    // What arrives need not be UTF-8.
    return line.dump(-1, ' ', true, nlohmann::ordered_json::error_handler_t::replace);
}

void SessionLog::add(LogKind kind, std::string_view text, int speed, Clock::time_point when)
{
    last_ = std::max(last_, when);
    LogEntry entry{std::chrono::duration<double>{last_ - start_}.count(), kind, std::string{text},
                   speed};
    if (lines_ != nullptr)
        *lines_ << jsonLine(entry) << std::endl;
    const std::lock_guard lock{mutex_};
    entries_.push_back(std::move(entry));
    added_.notify_all();
}

std::vector<LogEntry> SessionLog::entries() const
{
    const std::lock_guard lock{mutex_};
    return entries_;
}

bool SessionLog::waitFor(const std::function<bool(const LogEntry&)>& matches,
                         std::chrono::milliseconds limit) const
{
    std::unique_lock lock{mutex_};
    return added_.wait_for(lock, limit, [&, next = std::size_t{0}]() mutable {
        while (next < entries_.size()) {
            if (matches(entries_[next++]))
                return true;
        }
        return false;
    });
}

} // namespace simulator
