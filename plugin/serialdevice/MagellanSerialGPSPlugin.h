// SPDX-License-Identifier: MIT
// MagellanSerialGPSPlugin: the driver of receivers on a serial port. It downloads with a protocol
// of commands; its send does nothing. It inherits what it shares with the driver of mounted
// receivers. [host thread], except for the worker entry points runAcquire() and runSend().

#pragma once

#include "../fsdevice/MagellanGPSPlugin.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gps {
class OrvSerial;
} // namespace gps

namespace magellan {

class OperationAccount;

class MagellanSerialGPSPlugin : public MagellanGPSPlugin {
public:
    /// `getPluginForClass:`: creates a driver with the first port selected.
    /// @return  null for a class other than kPlugInClass, if there is no serial port, or if the
    ///          view cannot be loaded
    [[nodiscard]] static std::shared_ptr<MagellanSerialGPSPlugin>
    getPluginForClass(std::string_view plugInClass);

    // Identity.
    [[nodiscard]] std::string className() const override { return "MagellanSerialGPSPlugin"; }
    [[nodiscard]] std::string gpsName() const override { return "Magellan Serial"; }
    [[nodiscard]] std::string gpsCapabilities() const override
    {
        return "tracks,waypoints,routes,geocaches";
    }
    [[nodiscard]] std::optional<std::vector<std::string>> fileTypes() const override
    {
        return std::nullopt;
    }
    [[nodiscard]] bool needsSerialRefresh() const override { return true; }
    [[nodiscard]] bool needsFileSystemRefresh() const override { return false; }

    [[nodiscard]] std::optional<gps::Error> gpsRunAcquire(const Status& status,
                                                          const gps::Dictionary& options) override;

    // Ports.
    [[nodiscard]] bool isReady() const override { return !serialPortList_.empty(); }
    bool refreshDeviceList() override { return !makeSerialPortList().empty(); }
    [[nodiscard]] gps::Array deviceList() const override { return serialPortList_; }

    /// `makeSerialPortList`: lists the ports anew, shows them in the view and selects the first,
    /// whichever was selected before.
    const gps::Array& makeSerialPortList();

    /// Returns every port as accepted: only a download can find out whether a receiver is
    /// connected.
    [[nodiscard]] std::vector<gps::SearchedLocation> searchedLocations() const override;

    /// Returns what the receiver on that port has answered to the last download.
    [[nodiscard]] gps::DeviceDescription
    deviceDescription(const std::string& location) const override;

    [[nodiscard]] const gps::Array& serialPortList() const noexcept { return serialPortList_; }
    void setSerialPortList(gps::Array records) { serialPortList_ = std::move(records); }

    /// The selected port's record: "location" and what the system knows about the port.
    [[nodiscard]] const std::optional<gps::Dictionary>& serialPort() const noexcept
    {
        return serialPort_;
    }
    void setSerialPort(std::optional<gps::Dictionary> record);

protected:
    /// Checks that a port is selected. The work dictionary is the options with "location".
    [[nodiscard]] std::optional<gps::Error>
    setUpDictionaryForThreadingFromOptions(const gps::Dictionary& options,
                                           gps::Dictionary& work) const override;
    void runAcquire(const gps::Dictionary& work) override;
    void runSend(const gps::Dictionary& work, const PlannedTexts* planned) override;
    void userPicked(std::size_t item) override;

    /// Creates the closed port of a session; null if the system cannot. Tests override this.
    /// [worker]
    [[nodiscard]] virtual std::unique_ptr<gps::OrvSerial> makeSerial() const;

private:
    /// @param serial  out: the port of the session, to be closed after its error was reported; null
    ///                if an exception passes on
    [[nodiscard]] std::optional<gps::Error> download(std::unique_ptr<gps::OrvSerial>& serial,
                                                     const gps::Dictionary& work,
                                                     gps::GPSOutputReceiver& status,
                                                     OperationAccount& account);
    void showPorts();

    gps::Array serialPortList_;
    std::optional<gps::Dictionary> serialPort_;
};

} // namespace magellan
