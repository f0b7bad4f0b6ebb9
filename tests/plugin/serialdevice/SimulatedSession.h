// SPDX-License-Identifier: MIT
// SimulatedSession: one download by the serial driver from a simulated receiver, on a line in
// memory. It is over when it has been constructed, whatever the receiver does.

#pragma once

#include "SimulatedLine.h"

#include <gps/GPSTransferAccount.h>
#include <gps/Value.h>
#include <plugin/common/GuardedStatus.h>
#include <plugin/serialdevice/MagellanSerialGPSPlugin.h>
#include <support/RecordingReceiver.h>
#include <tools/simulator/Fault.h>
#include <tools/simulator/Sentences.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
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

/// A step's name as the name of a test, which has no hyphens.
inline std::string
stepTestName(const testing::TestParamInfo<simulator::Named<simulator::Step>>& test)
{
    std::string name{test.param.name};
    std::erase(name, '-');
    return name;
}

/// A driver with a given serial port.
class DriverOnALine : public magellan::MagellanSerialGPSPlugin {
public:
    using MakeLine = std::function<std::unique_ptr<gps::OrvSerial>()>;

    explicit DriverOnALine(MakeLine makeLine) : makeLine_(std::move(makeLine))
    {
        setSerialPort(gps::Dictionary{{"location", kLocation}});
    }

    /// The worker's part of a download, on this thread.
    void download(const std::shared_ptr<gps::GPSOutputReceiver>& status, gps::Dictionary options)
    {
        options.set("location", kLocation);
        const auto guarded = std::make_shared<magellan::GuardedStatus>(*status);
        options.set("output", gps::GPSPlugInProtocol::Status{guarded});
        try {
            runAcquire(options);
        } catch (const magellan::StatusFailure&) {
            guarded->endAfterFailure();
        }
    }

protected:
    std::unique_ptr<gps::OrvSerial> makeSerial() const override { return makeLine_(); }

private:
    static constexpr char kLocation[] = "/dev/simulated";
    MakeLine makeLine_;
};

class SimulatedSession {
public:
    static inline const gps::Dictionary kEverything{
        {"waypoints", true}, {"tracks", true}, {"routes", true}};

    /// @param unpluggedAfter  the number of sentences that the receiver understood before
    explicit SimulatedSession(simulator::Settings settings,
                              const gps::Dictionary& options = kEverything,
                              std::optional<std::size_t> unpluggedAfter = std::nullopt)
        : receiver_(std::move(settings))
    {
        receiver_.unpluggedAfter = unpluggedAfter;
        DriverOnALine driver{[this] { return std::make_unique<SimulatedLine>(receiver_); }};
        driver.download(status_, options);
        account_ = driver.transferAccount();
        voice_ = driver.lineVoice();
    }

    [[nodiscard]] std::vector<std::string> calls() const { return status_->calls(); }

    /// The names of the calls without their arguments.
    [[nodiscard]] std::vector<std::string> callNames() const
    {
        auto names = calls();
        for (auto& name : names)
            name.resize(std::min(name.find(' '), name.size()));
        return names;
    }

    /// The driver's account of it.
    [[nodiscard]] const gps::TransferAccount& account() const noexcept { return account_; }
    [[nodiscard]] gps::LineVoice voice() const noexcept { return voice_; }

    [[nodiscard]] std::vector<simulator::LogEntry> log() const { return receiver_.log.entries(); }

    /// Whether the receiver has seen its line closed.
    [[nodiscard]] bool isClosed() const
    {
        const auto entries = log();
        return std::any_of(entries.begin(), entries.end(), [](const auto& entry) {
            return entry.kind == simulator::LogKind::kClosed;
        });
    }

    /// The commands that the receiver has understood, each with the line's speed:
    /// "PMGNCMD,TON @4800".
    [[nodiscard]] std::vector<std::string> commands() const
    {
        std::vector<std::string> commands;
        for (const auto& entry : log()) {
            if (entry.kind == simulator::LogKind::kReceived && entry.text.rfind("PMGNCMD", 0) == 0)
                commands.push_back(entry.text + " @" + std::to_string(entry.speed));
        }
        return commands;
    }

    /// The speeds that the driver has set, as the receiver saw them.
    [[nodiscard]] std::vector<int> speeds() const
    {
        std::vector<int> speeds;
        for (const auto& entry : log()) {
            if (entry.kind == simulator::LogKind::kSpeed)
                speeds.push_back(entry.speed);
        }
        return speeds;
    }

private:
    SimulatedReceiver receiver_;
    gps::TransferAccount account_;
    gps::LineVoice voice_{};
    std::shared_ptr<RecordingReceiver> status_ = std::make_shared<RecordingReceiver>();
};

} // namespace support
