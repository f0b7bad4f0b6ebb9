// SPDX-License-Identifier: MIT
// A receiver says what it is at the start of each session, so this runs sessions that transfer no
// records.

#include "host/cli/PortQuery.h"

#include "host/bundle/DeviceChoice.h"
#include "host/cli/ProgressLine.h"
#include "host/operations/StopSignals.h"
#include "host/transfer/Download.h"
#include "host/words/AccountText.h"
#include "host/words/DownloadMessages.h"

#include <cstddef>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace host {
namespace {

// The serial ports of a driver that may be asked although nobody named them, as indexes of its
// list.
std::vector<std::size_t> portsToAsk(const gps::GPSPlugInProtocol& driver)
{
    std::vector<std::size_t> ports;
    if (!driver.needsSerialRefresh())
        return ports;
    const auto devices = devicesOf(driver);
    for (std::size_t i = 0; i < devices.size(); ++i) {
        if (isPortToTry(devices[i]))
            ports.push_back(i);
    }
    return ports;
}

// What a session did not restore on the receiver. The question has no records that might be
// missing.
std::vector<Message> closingMessages(const OperationReport& report)
{
    std::vector<Message> messages;
    for (const auto& gap : report.gaps) {
        if (gap.isClosingDown)
            messages.push_back({true, gapText(gap)});
    }
    return messages;
}

class PortQuery {
public:
    PortQuery(const DevicesOptions& options, const Console& console)
        : options_(options), console_(console), progress_(canShowProgress(options, false))
    {}

    [[nodiscard]] ExitStatus run(const std::vector<Driver>& drivers);

private:
    void askNamedPort(const std::vector<Driver>& drivers);
    void askPortsOf(gps::GPSPlugInProtocol& driver);
    void ask(gps::GPSPlugInProtocol& driver, const std::string& location);
    void show(const DownloadReport& report, const std::string& location, bool isKnown);

    const DevicesOptions& options_;
    const Console& console_;
    ProgressLine progress_;
    StopSignals stop_;
    bool hasAsked_ = false;
    ExitStatus status_ = ExitStatus::kSuccess;
};

ExitStatus PortQuery::run(const std::vector<Driver>& drivers)
{
    if (options_.device) {
        askNamedPort(drivers);
        return status_;
    }
    for (const auto& driver : drivers)
        askPortsOf(*driver);
    if (!hasAsked_)
        console_.note("No serial port was asked, because none is a USB adapter or known to have a "
                      "receiver. Name one with --device.");
    return status_;
}

void PortQuery::askNamedPort(const std::vector<Driver>& drivers)
{
    ChosenDevice chosen;
    if (const auto failure =
            chooseDevice(drivers, {{}, options_.device, options_.testFolders}, chosen)) {
        console_.error(*failure);
        status_ = ExitStatus::kNothingToWorkOn;
    } else if (chosen.driver->needsSerialRefresh()) {
        ask(*chosen.driver, chosen.location);
    }
}

void PortQuery::askPortsOf(gps::GPSPlugInProtocol& driver)
{
    auto* const menu = deviceMenu(driver);
    const auto ports = portsToAsk(driver);
    if (menu == nullptr || ports.empty())
        return;
    const auto selected = menu->selected();
    for (const auto port : ports) {
        if (stop_.stopRequested()) {
            status_ = statusAfterSignal(stop_.signal());
            break;
        }
        menu->pick(port);
        ask(driver, devicesOf(driver)[port].location);
    }
    if (selected)
        menu->pick(*selected);
}

void PortQuery::ask(gps::GPSPlugInProtocol& driver, const std::string& location)
{
    hasAsked_ = true;
    DownloadRequest request;
    request.location = location;
    request.kinds = {.waypoints = false, .routes = false, .tracks = false};
    request.debugLevel = options_.debug;
    request.progress = progress_.callback();
    request.stopRequested = [this] { return stop_.stopRequested(); };
    request.isDriverReused = true;
    const auto report = download(driver, request);
    const auto [model, firmware] = descriptionOf(driver, location);
    show(report, location, model || firmware);
    if (report.isInterrupted())
        status_ = statusAfterSignal(stop_.signal());
}

void PortQuery::show(const DownloadReport& report, const std::string& location, bool isKnown)
{
    const bool isAnswered = isKnown || report.isInterrupted();
    std::vector<Message> messages;
    for (const auto& operation : report.operations) {
        auto more = isAnswered ? closingMessages(operation)
                               : operationMessages(operation, {.isLogShown = !options_.verbose});
        std::move(more.begin(), more.end(), std::back_inserter(messages));
    }
    if (messages.empty() && !isAnswered)
        messages.push_back({true, "The receiver does not say what it is."});
    for (auto& message : messages) {
        if (message.text.find(location) == std::string::npos)
            message.text += " Path: " + location;
        if (message.isError)
            status_ = ExitStatus::kFailed;
    }
    console_.messages(messages);
}

} // namespace

ExitStatus askPorts(const PlugInBundle& plugIn, const DevicesOptions& options,
                    const Console& console)
{
    return PortQuery{options, console}.run(plugIn.drivers);
}

} // namespace host
