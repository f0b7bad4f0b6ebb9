// SPDX-License-Identifier: MIT
// OrvSerial: a serial port of this machine, and the list of them. A driver's session has one for
// itself: one thread at a time, [worker] as a rule; the list is the host's: [host thread].

#pragma once

#include <gps/Value.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace gps {

/// A line that fails under a session: unplugged, hung up, or refusing its settings.
class SerialFailure : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// How a text becomes bytes on the line.
enum class StringEncoding { kASCII = 1 };

/// The user default that names the paths of further ports, behind which no hardware is known.
inline constexpr char kTestPortsKey[] = "OrvTestPortList";

/// 8 data bits, no parity, 1 stop bit, no flow control, raw. Abstract, so that a session can be run
/// on a line in memory.
class OrvSerial {
public:
    /// `getSerialPorts`: every serial port with hardware behind it, then the paths under
    /// "OrvTestPortList": USB ports first, each group by name with numbers in numeric order. A
    /// record holds "location" (the device path), "name" (what a person recognises) and, where
    /// known, "vendorID", "productID" and "serialNumber". No port twice. [host thread]
    [[nodiscard]] static Array getSerialPorts();

    /// A closed port; null when the system cannot give one. [any]
    [[nodiscard]] static std::unique_ptr<OrvSerial> create();

    virtual ~OrvSerial() = default;

    /// `setBaudRate:`: bits per second: 1200 to 115200 in the standard steps, or 0, which is passed
    /// to the system as such. While closed it holds for the next opening, 4800 at first; while
    /// open, pending output drains at the old speed (what a stuck line has not sent within a second
    /// is dropped) and unread input is dropped.
    /// @throws SerialFailure  not such a speed, or the open line does not take it
    virtual void setBaudRate(int bitsPerSecond) = 0;

    /// `openWithDevicePath:`: opens for reading and writing, not as the controlling terminal,
    /// closed to a second opener. What was open is closed first; input from before the opening is
    /// dropped.
    /// @return  0; otherwise the system's error number (EBUSY: another program has it; ENOTTY: no
    /// serial line; EINVAL: the line
    ///          does not take its settings), and it is closed
    [[nodiscard]] virtual int openWithDevicePath(const char* path) = 0;

    /// `sendString:usingEncoding:`: writes the text's bytes in one piece. A failure is not told,
    /// nor that the line has not taken them within a second; the next read raises.
    virtual void sendString(std::string_view text, StringEncoding encoding) = 0;

    /// `readStringTo:withTimeout:`: the text up to the terminator, without it. What came without
    /// its terminator stays for the next read. Of a text longer than 4,096 bytes the last 4,096 are
    /// kept.
    /// @param timeoutSeconds  for the whole call, however much comes meanwhile
    /// @return                none when the time has passed, or nothing is open
    /// @throws SerialFailure  the line has failed
    [[nodiscard]] virtual std::optional<std::string> readStringTo(std::string_view terminator,
                                                                  float timeoutSeconds) = 0;

    /// Closes it, at once: output that has not left yet is dropped. Closing twice is nothing.
    virtual void close() = 0;
};

} // namespace gps
