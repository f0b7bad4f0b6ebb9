// SPDX-License-Identifier: MIT
// RecordingReceiver: a status object that stores every call as a readable line ("newTrack {name =
// \"A\"}"). A worker calls it while the test's thread reads it. [any]

#pragma once

#include <gps/Error.h>
#include <gps/GPSOutputReceiver.h>
#include <gps/GPSPoint.h>
#include <gps/Value.h>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace support {

class RecordingReceiver : public gps::GPSOutputReceiver {
public:
    /// Every call so far, in order.
    [[nodiscard]] std::vector<std::string> calls() const
    {
        const std::lock_guard lock{mutex_};
        return calls_;
    }

    /// The threads that made the calls.
    [[nodiscard]] std::set<std::thread::id> threads() const
    {
        const std::lock_guard lock{mutex_};
        return threads_;
    }

    /// Waits for `gpsStateChange:` 0. @return  whether it arrived within the time
    [[nodiscard]] bool waitUntilIdle(std::chrono::seconds limit = std::chrono::seconds{30}) const
    {
        std::unique_lock lock{mutex_};
        return changed_.wait_for(lock, limit, [this] { return idle_; });
    }

    /// Waits for that many calls. @return  whether they arrived within half a minute
    [[nodiscard]] bool waitForCalls(std::size_t count) const
    {
        std::unique_lock lock{mutex_};
        return changed_.wait_for(lock, std::chrono::seconds{30},
                                 [&] { return calls_.size() >= count; });
    }

    void gpsStateChange(std::int32_t state) override
    {
        record("gpsStateChange " + std::to_string(state), state == 0);
    }
    void startTransfer(gps::TransferKind kind) override { record("startTransfer " + text(kind)); }
    void endTransfer(gps::TransferKind kind) override { record("endTransfer " + text(kind)); }
    void newTrack(const gps::Dictionary& track) override
    {
        record("newTrack " + gps::describe(track));
    }
    void trackPoint(const gps::GPSPoint& point, const gps::Dictionary& extra) override
    {
        record("trackPoint " + gps::describe(point) + " " + gps::describe(extra));
    }
    void wayPoint(const gps::GPSPoint& point, const gps::Dictionary& extra) override
    {
        record("wayPoint " + gps::describe(point) + " " + gps::describe(extra));
    }
    void newRoute(const gps::Dictionary& route) override
    {
        record("newRoute " + gps::describe(route));
    }
    void startSending(std::string_view label, gps::TransferKind kind) override
    {
        record("startSending " + std::string{label} + " " + text(kind));
    }
    void endSending(gps::TransferKind kind) override { record("endSending " + text(kind)); }
    void error(const gps::Error& error) override { record("error " + error.text()); }

protected:
    /// Called on the same thread once a call was stored.
    virtual void afterCall(std::string_view /*call*/) {}

private:
    static std::string text(gps::TransferKind kind)
    {
        return std::to_string(static_cast<std::int32_t>(kind));
    }

    void record(const std::string& call, bool idle = false)
    {
        {
            const std::lock_guard lock{mutex_};
            calls_.push_back(call);
            threads_.insert(std::this_thread::get_id());
            idle_ = idle;
            changed_.notify_all();
        }
        afterCall(call);
    }

    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::vector<std::string> calls_;
    std::set<std::thread::id> threads_;
    bool idle_ = false;
};

} // namespace support
