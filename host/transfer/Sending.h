// SPDX-License-Identifier: MIT
// Sending: one send, from its files to the verdict on what the device holds afterwards. [host
// thread]

#pragma once

#include "host/bundle/PlugInBundle.h"
#include "host/cli/Console.h"
#include "host/cli/ExitStatus.h"
#include "host/cli/Options.h"
#include "host/cli/Progress.h"
#include "host/files/Output.h"
#include "host/fitting/NameFitting.h"
#include "host/operations/Operation.h"

#include <gps/GPSFileDevice.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host {

class Sending {
public:
    /// @param options  last as long as this object
    Sending(const SendOptions& options, const Console& console);

    /// Reads the files, before anything is asked of a driver.
    [[nodiscard]] std::optional<gps::Error> open();

    /// Says what will happen, keeps a copy, sends, and looks whether it has arrived.
    [[nodiscard]] ExitStatus run(gps::GPSPlugInProtocol& driver);

private:
    void plan(gps::GPSPlugInProtocol& driver);
    [[nodiscard]] std::vector<TextChange> fit();
    void warnOf(const gps::PlannedFile& file);
    [[nodiscard]] bool losesAnything() const;
    [[nodiscard]] bool writesAnything() const;
    [[nodiscard]] std::optional<gps::Error> backUp();
    [[nodiscard]] Outcome send(gps::GPSPlugInProtocol& driver);
    void judge(const Outcome& outcome, gps::GPSPlugInProtocol& driver);
    void judgeBrackets(const Outcome& outcome, const gps::GPSPlugInProtocol& driver);
    void judgeFiles(const Outcome& outcome);
    void judgeRecords(gps::GPSPlugInProtocol& driver);
    void conclude();
    void report(const std::string& text);
    void fail(const gps::Error& error);

    const SendOptions& options_;
    const Console& console_;
    Progress progress_;
    Output standardOutput_;
    std::optional<gps::Dictionary> data_;        // none: no data dictionary at all
    const gps::GPSFileDevice* device_ = nullptr; // null: the driver tells nothing before a send
    bool canSend_ = false;
    std::string place_;
    std::unique_ptr<gps::DeviceSnapshot> snapshot_; // null: no device is selected
    gps::SendPlan plan_;
    bool hasFailed_ = false;
};

} // namespace host
