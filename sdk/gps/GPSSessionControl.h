// SPDX-License-Identifier: MIT
// GPSSessionControl: optional interface of a driver whose operations can be stopped in an orderly
// way. A host asks a driver for it with dynamic_cast; the object is the driver itself.

#pragma once

namespace gps {

class GPSSessionControl {
public:
    virtual ~GPSSessionControl() = default;

    /// Asks the running operation to end: the driver leaves the device in the state in which it was
    /// found, as far as the device answers, reports what came so far and then `gpsStateChange` with
    /// 0. Returns at once. Does nothing if no operation runs. Only stores a flag, so that a host
    /// can call it from a signal handler. [any]
    virtual void requestStop() noexcept = 0;
};

} // namespace gps
