// SPDX-License-Identifier: MIT
// CommandLink: the conversation with a receiver on a serial port: sentences out, sentences in,
// acknowledgements both ways. A download session owns one. [worker]
//
// On the line a body is framed as "$", the body, "*", two hexadecimal digits of checksum, CR LF.
// While handshaking is on, whoever receives a valid sentence answers "PMGNCSM,hh" with the checksum
// of that sentence.

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace gps {
class OrvSerial;
} // namespace gps

namespace magellan {

/// All operations throw gps::SerialFailure if the line fails. Each read waits at most 1 second.
class CommandLink {
public:
    /// How often a command that must be acknowledged is sent.
    static constexpr int kAttempts = 5;

    /// @param serial  an open port; must outlive this object
    explicit CommandLink(gps::OrvSerial& serial) : serial_(serial) {}

    /// `sendCommand:`: sends a body without waiting for a reply.
    void sendCommand(std::string_view body);

    /// `sendCommandAwaitResponse:`: sends a body and reads one line, which is not acknowledged.
    /// @return  the body of the reply; nullopt if none arrived or it was not valid
    [[nodiscard]] std::optional<std::string> sendCommandAwaitResponse(std::string_view body);

    /// `readResponseWithChecksum`: reads one sentence and acknowledges it if it is valid.
    /// @return  its body; nullopt if none arrived or it was not valid
    [[nodiscard]] std::optional<std::string> readResponseWithChecksum();

    /// `sendCommandWithChecksum:`: sends a body until the receiver acknowledges it, at most
    /// kAttempts times. Any other reply is dropped and counts as a failed attempt.
    /// @return  whether it was acknowledged
    bool sendCommandWithChecksum(std::string_view body);

    /// Reads one line as it is, without its line end. Returns nullopt if none arrived.
    [[nodiscard]] std::optional<std::string> readLine();

private:
    gps::OrvSerial& serial_;
};

} // namespace magellan
