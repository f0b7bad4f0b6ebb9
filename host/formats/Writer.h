// SPDX-License-Identifier: MIT
// Writer: turns a stream of events into one output. Each output format implements it, and so do the
// filters that sit in front of one. One thread at a time.

#pragma once

#include "host/operations/Event.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Gets how much of a long `close` is done.
/// @param bytes  of `totalBytes`
/// @return       whether to go on
using CloseWatch = std::function<bool(std::uint64_t bytes, std::uint64_t totalBytes)>;

/// Gets every event in order, each operation's result after that operation's events, and finally
/// `close`. Implementations keep no points, so memory does not grow with a track. Destroyed without
/// `close`, a writer reports nothing and may leave an incomplete output.
class Writer {
public:
    virtual ~Writer() = default;

    virtual void event(const Event& event) = 0;

    /// The name of the file that the records of the following events are from. Not called for a
    /// receiver's records.
    virtual void sourceFile(std::string_view name) { (void)name; }

    /// What an operation returned: an error, or nullopt for success.
    virtual void result(const std::optional<gps::Error>& error) { (void)error; }

    /// Hands what was written so far to whoever reads the output while it grows.
    virtual void flush() {}

    /// Gives a writer whose `close` takes long somebody to report to now and then. After an answer
    /// of false, `close` ends soon, reports nothing, and leaves the output incomplete.
    virtual void watchClose(CloseWatch watch) { (void)watch; }

    /// Ends the output. @return  the first failure since the start
    [[nodiscard]] virtual std::optional<gps::Error> close() = 0;

    /// Whether the output shows where a new segment of a track begins.
    [[nodiscard]] virtual bool hasSegments() const { return true; }

    /// One sentence on records that the output lacks; empty if it has them all.
    [[nodiscard]] virtual std::string remark() const { return {}; }
};

} // namespace host
