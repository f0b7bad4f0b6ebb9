// SPDX-License-Identifier: MIT
// CommandLink: the conversation with a receiver on a serial port: sentences out, sentences in,
// acknowledgements both ways. A download session owns one. [worker]
//
// On the line a body is framed as "$", the body, "*", two hexadecimal digits of checksum, CR LF.
// While handshaking is on, whoever receives a valid sentence answers "PMGNCSM,hh" with the checksum
// of that sentence.

#pragma once

#include <gps/GPSTransferAccount.h>

#include <optional>
#include <string>
#include <string_view>

namespace gps {
class OrvSerial;
} // namespace gps

namespace magellan {

class OperationAccount;
class OperationMonitor;

/// Thrown instead of the next step once the host has asked the session to stop.
struct StopRequest {};

/// All operations throw gps::SerialFailure if the line fails. Those that read throw StopRequest
/// before beginClosing(). Each read waits at most 1 second.
class CommandLink {
public:
    /// How often a command that must be acknowledged is sent.
    static constexpr int kAttempts = 5;

    /// @param serial   an open port
    /// @param monitor  says when to stop, and is told what answers
    /// @param account  gets the commands that must be acknowledged
    /// All three must outlive this object.
    CommandLink(gps::OrvSerial& serial, OperationMonitor& monitor, OperationAccount& account)
        : serial_(serial), monitor_(monitor), account_(account)
    {}

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
    /// @param purpose  for the account; after beginClosing() it is always kRestore
    /// @return         whether it was acknowledged
    bool sendCommandWithChecksum(std::string_view body,
                                 gps::CommandPurpose purpose = gps::CommandPurpose::kTransfer);

    /// The same for a session that closes down because of a request to stop: sends the command
    /// twice at most, and reads past what the receiver was sending.
    bool sendLastCommand(std::string_view body);

    /// Reads one line as it is, without its line end. Returns nullopt if none arrived.
    [[nodiscard]] std::optional<std::string> readLine();

    /// Throws StopRequest if the host has asked the session to stop.
    void stopIfRequested() const;

    /// From now on no operation throws StopRequest: the receiver's state is to be restored.
    void beginClosing() noexcept { isClosing_ = true; }

    /// Whether no byte arrived during the last read.
    [[nodiscard]] bool wasSilent() const noexcept { return wasSilent_; }

    /// Why the line that readResponseWithChecksum() read last is not a sentence; nullopt if it is
    /// one, or if there was no line.
    [[nodiscard]] std::optional<gps::SkipReason> defect() const noexcept { return defect_; }

private:
    [[nodiscard]] std::optional<std::string> readReply();
    [[nodiscard]] gps::CommandAccount& addCommand(std::string_view body,
                                                  gps::CommandPurpose purpose);

    gps::OrvSerial& serial_;
    OperationMonitor& monitor_;
    OperationAccount& account_;
    bool isClosing_ = false;
    bool wasSilent_ = true;
    std::optional<gps::SkipReason> defect_;
};

/// What a valid sentence says about who sent it. A sentence that only a faulty line could send
/// back, such as our own command, counts as noise.
[[nodiscard]] gps::LineVoice voiceOf(std::string_view body) noexcept;

} // namespace magellan
