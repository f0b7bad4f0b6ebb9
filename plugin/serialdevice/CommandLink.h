// SPDX-License-Identifier: MIT
// CommandLink: how one talks with a receiver on a serial port - sentences out, sentences in,
// acknowledgements both ways. A download session talks through it. [worker]
//
// On the line a body travels as "$", the body, "*", two hexadecimal digits of checksum, CR LF. With
// handshaking on, whoever gets a valid sentence answers "PMGNCSM,hh" with that sentence's checksum.

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace gps {
class OrvSerial;
} // namespace gps

namespace magellan {

/// What every operation here may throw: gps::SerialFailure, when the line fails.
class CommandLink {
public:
    static constexpr int kAttempts = 5; ///< of a command that must be acknowledged

    /// @param serial  an open port that outlives this object; with none nothing is sent and nothing
    /// read
    explicit CommandLink(gps::OrvSerial* serial) : serial_(serial) {}

    /// `sendCommand:`: sends a body and waits for nothing.
    void sendCommand(std::string_view body);

    /// `sendCommandAwaitResponse:`: sends a body and reads one line. What comes is not
    /// acknowledged.
    /// @return  the reply's body; none when nothing valid came in time
    [[nodiscard]] std::optional<std::string> sendCommandAwaitResponse(std::string_view body);

    /// `readResponseWithChecksum`: reads one sentence and acknowledges it.
    /// @return  its body; none when nothing came in time, or what came is not valid (and then not
    /// acknowledged)
    [[nodiscard]] std::optional<std::string> readResponseWithChecksum();

    /// `sendCommandWithChecksum:`: sends a body until the receiver acknowledges it; whatever else
    /// it answers counts as a failed attempt. @return  whether it did within `kAttempts` sendings
    bool sendCommandWithChecksum(std::string_view body);

    /// Reads one line as it is, without its end. @return  none when none came within 1 second
    [[nodiscard]] std::optional<std::string> readLine();

private:
    gps::OrvSerial* serial_;
};

} // namespace magellan
