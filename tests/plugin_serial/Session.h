// SPDX-License-Identifier: MIT
// One download by the serial driver from a simulated receiver, over a real pseudo-terminal.

#pragma once

#include <gps/Value.h>
#include <plugin/serialdevice/MagellanSerialGPSPlugin.h>
#include <support/RecordingReceiver.h>
#include <tools/simulator/Receiver.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace support {

/// Waypoints, points of two tracks and a route: the sentences that sessions are tested with.
inline simulator::Sentences someSentences()
{
    return {.waypoints = {"PMGNWPL,4600.00000,N,00700.00000,E,0000100,M,CAMP,by the lake,a",
                          "PMGNWPL,4610.00000,N,00710.00000,E,0000200,M,HUT,,a",
                          "PMGNWPL,4620.00000,N,00720.00000,E,0000300,M,PEAK,,a"},
            .tracks = {"PMGNTRK,4600.000,N,00700.000,E,00100,M,120000.00,A,,010624",
                       "PMGNTRK,4600.100,N,00700.000,E,00100,M,120001.00,A,DAY 1,010624",
                       "PMGNTRK,4600.200,N,00700.000,E,00100,M,120002.00,A,DAY 1,010624"},
            .routes = {"PMGNRTE,2,1,c,01,LOOP,CAMP,a,HUT,a", "PMGNRTE,2,2,c,01,LOOP,PEAK,a",
                       "PMGNRTE,1,1,c,02,BACK,PEAK,a,CAMP,a"}};
}

class Session {
public:
    static inline const gps::Dictionary kEverything{
        {"waypoints", true}, {"tracks", true}, {"routes", true}};

    /// Starts the download. On the test's own thread: drivers share the debug level.
    explicit Session(simulator::Settings settings, const gps::Dictionary& options = kEverything)
        : receiver_(std::make_unique<simulator::Receiver>(std::move(settings)))
    {
        driver_->setSerialPort(gps::Dictionary{{"location", receiver_->path()}});
        started_ = !driver_->gpsRunAcquire(status_, options);
    }

    /// Waits for the idle report. A receiver that never answers costs a minute and a half, and a
    /// busy machine more.
    [[nodiscard]] bool ends() const
    {
        return started_ && status_->waitUntilIdle(std::chrono::seconds{240});
    }

    /// Unplugs the receiver.
    void unplug() { receiver_.reset(); }

    [[nodiscard]] const RecordingReceiver& status() const { return *status_; }
    [[nodiscard]] std::vector<std::string> calls() const { return status_->calls(); }

    /// The names of the calls without their arguments.
    [[nodiscard]] std::vector<std::string> callNames() const
    {
        auto names = calls();
        for (auto& name : names)
            name.resize(std::min(name.find(' '), name.size()));
        return names;
    }

    [[nodiscard]] const simulator::Receiver& receiver() const { return *receiver_; }

    /// Waits until the receiver has seen its line closed.
    [[nodiscard]] bool isClosed() const
    {
        return receiver_->waitFor([](const auto& entry) {
            return entry.kind == simulator::LogKind::kClosed ||
                   entry.kind == simulator::LogKind::kHungUp;
        });
    }

    /// The commands that the receiver has understood, each with the line's speed:
    /// "PMGNCMD,TON @4800".
    [[nodiscard]] std::vector<std::string> commands() const
    {
        std::vector<std::string> commands;
        for (const auto& entry : receiver_->log()) {
            if (entry.kind == simulator::LogKind::kReceived && entry.text.rfind("PMGNCMD", 0) == 0)
                commands.push_back(entry.text + " @" + std::to_string(entry.speed));
        }
        return commands;
    }

    /// The speeds that the driver has set, as the receiver saw them.
    [[nodiscard]] std::vector<int> speeds() const
    {
        std::vector<int> speeds;
        for (const auto& entry : receiver_->log()) {
            if (entry.kind == simulator::LogKind::kSpeed)
                speeds.push_back(entry.speed);
        }
        return speeds;
    }

private:
    std::unique_ptr<simulator::Receiver> receiver_;
    std::shared_ptr<magellan::MagellanSerialGPSPlugin> driver_ =
        std::make_shared<magellan::MagellanSerialGPSPlugin>();
    std::shared_ptr<RecordingReceiver> status_ = std::make_shared<RecordingReceiver>();
    bool started_ = false;
};

} // namespace support
