// SPDX-License-Identifier: MIT
// Ports instead of volumes; everything else about a download is in DownloadSession.

#include "MagellanSerialGPSPlugin.h"

#include "../common/Errors.h"
#include "../common/OperationAccount.h"
#include "../common/PluginBundle.h"
#include "DownloadSession.h"

#include <gps/DictionaryHelpers.h>
#include <gps/GPSOutputReceiver.h>
#include <platform/OrvUtils/OrvSerial.h>
#include <platform/OrvUtils/SerialPorts.h>

#include <cstdint>
#include <exception>
#include <utility>

namespace magellan {

std::shared_ptr<MagellanSerialGPSPlugin>
MagellanSerialGPSPlugin::getPluginForClass(std::string_view plugInClass)
{
    if (plugInClass != kPlugInClass)
        return nullptr;
    auto driver = std::make_shared<MagellanSerialGPSPlugin>();
    if (driver->makeSerialPortList().empty())
        return nullptr;
    auto outlets = pluginBundle().loadView("MagellanSerialGPS");
    if (!outlets)
        return nullptr;
    buildSharedTables(); // see MagellanGPSPlugin::getPluginForClass()
    driver->connect(std::move(*outlets));
    driver->showPorts();
    return driver->gpsView() != nullptr ? driver : nullptr;
}

const gps::Array& MagellanSerialGPSPlugin::makeSerialPortList()
{
    setSerialPortList(gps::getSerialPorts());
    const auto* first =
        serialPortList_.empty() ? nullptr : serialPortList_.front().as<gps::Dictionary>();
    setSerialPort(first != nullptr ? std::optional{*first} : std::nullopt);
    showPorts();
    return serialPortList_;
}

std::vector<gps::SearchedLocation> MagellanSerialGPSPlugin::searchedLocations() const
{
    std::vector<gps::SearchedLocation> locations;
    for (const auto& port : gps::getSerialPorts()) {
        const auto& record = *port.as<gps::Dictionary>();
        locations.push_back({*record.findString("location"), "serial port",
                             gps::SearchedLocation::Verdict::kAccepted,
                             "Only a download can find out whether a receiver is connected", ""});
    }
    return locations;
}

gps::DeviceDescription MagellanSerialGPSPlugin::deviceDescription(const std::string& location) const
{
    return monitor().descriptionOf(location);
}

void MagellanSerialGPSPlugin::setSerialPort(std::optional<gps::Dictionary> record)
{
    serialPort_ = std::move(record);
    showSelection(serialPortList_, serialPort_);
}

void MagellanSerialGPSPlugin::showPorts()
{
    showItems(serialPortList_, !serialPortList_.empty());
    showSelection(serialPortList_, serialPort_);
}

void MagellanSerialGPSPlugin::userPicked(std::size_t item)
{
    if (item < serialPortList_.size())
        setSerialPort(*serialPortList_[item].as<gps::Dictionary>());
}

std::optional<gps::Error> MagellanSerialGPSPlugin::gpsRunAcquire(const Status& status,
                                                                 const gps::Dictionary& options)
{
    setDebugLevelFromOptions(options);
    GarminSetDebugLevel(debugLevel());
    return startAcquire(status, options);
}

std::optional<gps::Error>
MagellanSerialGPSPlugin::setUpDictionaryForThreadingFromOptions(const gps::Dictionary& options,
                                                                gps::Dictionary& work) const
{
    const auto* const location = serialPort_ ? serialPort_->findString("location") : nullptr;
    if (location == nullptr)
        return logged(makeError(
            ErrorCode::kNoDevice, "No location was selected for Magellan device",
            "Please make sure your Magellan device is connected and turned on, and try again"));
    work = options;
    work.set("location", *location);
    return std::nullopt;
}

void MagellanSerialGPSPlugin::runAcquire(const gps::Dictionary& work)
{
    gps::GPSOutputReceiver& status = **work.find("output")->as<Status>();
    {
        OperationAccount account{monitor()};    // published at the end of this scope
        std::unique_ptr<gps::OrvSerial> serial; // closed there, too
        status.gpsStateChange(1);
        if (const auto error = download(serial, work, status, account))
            status.error(*error);
    }
    status.gpsStateChange(0);
}

/// Runs a session and catches every failure of the line and of the receiver. The receiver's state
/// is not restored then: the line to it has failed or makes no sense.
std::optional<gps::Error> MagellanSerialGPSPlugin::download(std::unique_ptr<gps::OrvSerial>& serial,
                                                            const gps::Dictionary& work,
                                                            gps::GPSOutputReceiver& status,
                                                            OperationAccount& account)
{
    try {
        serial = makeSerial();
        if (serial == nullptr)
            return makeError(ErrorCode::kSerialPort, "Couldn't initialize serial code",
                             "Please try again or report this error to Orvane");
        return DownloadSession{*serial, status, work, monitor(), account}.run();
    } catch (const gps::Error& error) {
        return error;
    } catch (const std::exception&) {
        return gps::Error{kErrorDomain, static_cast<std::int32_t>(ErrorCode::kSessionInterrupted)};
    } catch (...) {
        // If nobody catches it further up, the worker's stack is not unwound. What the status
        // object threw comes this way, too.
        serial.reset();
        throw;
    }
}

std::unique_ptr<gps::OrvSerial> MagellanSerialGPSPlugin::makeSerial() const
{
    return gps::OrvSerial::create();
}

/// Nothing can be sent to these receivers, so the operation ends at once.
void MagellanSerialGPSPlugin::runSend(const gps::Dictionary& work, const PlannedTexts* /*planned*/)
{
    (*work.find("status")->as<Status>())->gpsStateChange(0);
}

} // namespace magellan
