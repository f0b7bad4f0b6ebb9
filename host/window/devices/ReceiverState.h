// SPDX-License-Identifier: MIT
// ReceiverState: what the drivers show at one moment, copied on the device thread for the widgets.
// Plain values: each thread may hold its own. [any]

#pragma once

#include "host/bundle/DeviceChoice.h"
#include "host/transfer/DownloadRequest.h"

#include <gps/GPSOutputReceiver.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// A control of a driver's view.
struct ControlState {
    enum class Kind { kMenu, kButton };

    Kind kind = Kind::kButton;
    std::string identifier{};
    std::string title{};
    std::vector<std::string> items{};      ///< of a menu
    std::optional<std::size_t> selected{}; ///< of a menu

    friend bool operator==(const ControlState& a, const ControlState& b) = default;
};

struct DriverState {
    std::string name{};                     ///< as on the command line
    std::string title{};                    ///< for the user
    std::vector<Device> devices{};          ///< in the driver's order
    std::vector<ControlState> controls{};   ///< that the driver's view shows, from the top
    std::vector<gps::TransferKind> kinds{}; ///< that it can download
    bool isReady = false;
};

/// A device of one of the drivers, by their order.
struct DeviceAddress {
    std::size_t driver;
    std::string location;
};

/// What a download is to bring.
struct DownloadChoice {
    RequestedKinds kinds{};
    bool isNewOnly = false; ///< without what was saved before
};

/// A disk that may be a receiver but is not mounted.
struct UnmountedDisk {
    std::string node{};  ///< such as /dev/sdb1
    std::string title{}; ///< its file system and label
};

struct ReceiverState {
    std::vector<DriverState> drivers{};
    std::vector<UnmountedDisk> unmounted{};
    std::vector<std::string> ejectable{}; ///< where the devices are that are removable disks
    std::string explanation{}; ///< why the locations that were searched are not receivers
    std::string failure{};     ///< why there are no drivers; empty if there are
};

/// What a driver shows now. [host thread]
[[nodiscard]] DriverState stateOf(const gps::GPSPlugInProtocol& driver);

} // namespace host
