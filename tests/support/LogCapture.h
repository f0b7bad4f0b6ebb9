// SPDX-License-Identifier: MIT
// LogCapture: collects the log lines of all threads during its lifetime.

#pragma once

#include <gps/Error.h>
#include <platform/System/Log.h>

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace support {

class LogCapture {
public:
    [[nodiscard]] std::vector<std::string> lines() const
    {
        const std::lock_guard lock{mutex_};
        return lines_;
    }

    /// The errors that were logged.
    [[nodiscard]] std::vector<gps::Error> errors() const
    {
        const std::lock_guard lock{mutex_};
        return errors_;
    }

private:
    void take(std::string_view line, const gps::Error* error)
    {
        const std::lock_guard lock{mutex_};
        lines_.emplace_back(line);
        if (error != nullptr)
            errors_.push_back(*error);
    }

    mutable std::mutex mutex_;
    std::vector<std::string> lines_;
    std::vector<gps::Error> errors_;
    gps::LogSubscription listening_{
        [this](std::string_view line, const gps::Error* error) { take(line, error); }};
};

} // namespace support
