// SPDX-License-Identifier: MIT
// OrvSerial: a serial port. A driver's session owns one for its lifetime and calls it on one thread
// at a time, normally its [worker].

#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace gps {

/// Thrown when an open line fails: unplugged, hung up, or a setting refused. The text has the path
/// and the reason.
class SerialFailure : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// How text is converted to bytes on the line.
enum class StringEncoding { kASCII = 1 };

/// 8 data bits, no parity, 1 stop bit, no flow control, raw. Abstract, so that tests can run a
/// session on a line in memory.
class OrvSerial {
public:
    /// A closed port. [any]
    [[nodiscard]] static std::unique_ptr<OrvSerial> create();

    virtual ~OrvSerial() = default;

    /// `setBaudRate:`: sets the speed in bits per second. While the port is closed, the speed
    /// applies to the next opening; it is 4800 at first. While it is open, pending output is first
    /// sent at the old speed (output that a blocked line does not send within one second is
    /// dropped), and unread input is dropped. [worker]
    /// @param bitsPerSecond  a standard speed from 1200 to 115200; or 0, which is passed on
    /// @throws SerialFailure  for any other speed, or if the open line does not accept it
    virtual void setBaudRate(int bitsPerSecond) = 0;

    /// `openWithDevicePath:`: opens the port for reading and writing and for this process alone.
    /// Closes a port that is already open, and drops input from before the opening. [worker]
    /// @return  0, or an errno, and the port is closed: EBUSY: another program uses it; ENOTTY: not
    ///          a serial port; EINVAL: the port does not accept the settings
    [[nodiscard]] virtual int openWithDevicePath(const char* path) = 0;

    /// `sendString:usingEncoding:`: writes the text's bytes. Does not report errors, or a write
    /// that takes longer than one second; the next read throws instead. [worker]
    virtual void sendString(std::string_view text, StringEncoding encoding) = 0;

    /// `readStringTo:withTimeout:`: reads up to the terminator. Input without a terminator is kept
    /// for the next read. Of a text longer than 4,096 bytes, only the last 4,096 are returned.
    /// [worker]
    /// @param timeoutSeconds  for the whole call, even while input keeps arriving
    /// @return                the text without its terminator; nullopt after the timeout, or if the
    ///                        port is closed
    /// @throws SerialFailure  the line has failed
    [[nodiscard]] virtual std::optional<std::string> readStringTo(std::string_view terminator,
                                                                  float timeoutSeconds) = 0;

    /// How many bytes have arrived so far, whether or not they were read as text. [worker]
    [[nodiscard]] virtual std::uint64_t bytesReceived() const noexcept = 0;

    /// Closes the port at once; unsent output is dropped. Does nothing if it is closed. [worker]
    virtual void close() = 0;
};

} // namespace gps
