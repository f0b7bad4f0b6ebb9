// SPDX-License-Identifier: MIT
// Receiver: a simulated receiver on a pseudo-terminal of its own. Made for tests, benchmarks and
// for trying things out without hardware. All of it is safe from any thread but the destructor,
// which ends the receiver's own thread.
//
// It understands and is understood only at its own line speed: bytes of any other are lost in both
// directions. Its wire is paced: a sentence is there when its last byte would be, at 10 bits a
// byte. With handshaking on it acknowledges each good command, and waits for each data sentence's
// acknowledgement: 1.5 seconds, then it sends the sentence again, 5 times in all, then it leaves
// the phase. A BAUD is acknowledged in any case, at the old speed: the other side must know when to
// follow. A HANDON is not acknowledged when handshaking was off as it came. A command ends the data
// phase that it falls into. Its handshaking and speed outlive a closing of the line, as a receiver
// that stays on keeps them; faults begin anew.

#pragma once

#include "Fault.h"
#include "Sentences.h"
#include "SessionLog.h"

#include <chrono>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace simulator {

/// Whether a receiver can be set to this speed: 1200 to 115200 bits per second in the standard
/// steps. [any]
[[nodiscard]] bool isLineSpeed(int bitsPerSecond) noexcept;

struct Settings {
    int speed = 4800; ///< the receiver's own at the start; an isLineSpeed()
    bool handshake = false;
    bool paced = true; ///< otherwise as fast as the machine
    bool chatter =
        false;         ///< says one more sentence after its answers to TON, BAUD, TOFF and HANDOFF
    bool once = false; ///< ends when the line is closed after a sentence was understood
    Sentences sentences{};
    std::vector<Fault> faults{};
    std::ostream* log = nullptr; ///< gets the session log as lines of JSON, from the receiver's
                                 ///< thread; outlives the receiver
};

class Receiver {
public:
    /// Opens a pseudo-terminal and serves it until destroyed, or until a fault or `once` ends it.
    /// @throws std::system_error  there is no pseudo-terminal to be had
    explicit Receiver(Settings settings);
    ~Receiver();
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;

    /// The terminal's path, for the other side to open. It is raw from the start; its speed is up
    /// to the other side.
    [[nodiscard]] const std::string& path() const noexcept;

    [[nodiscard]] std::vector<LogEntry> log() const;

    /// Waits for a log entry. Shows each one to `matches` once, in order, from the first on.
    /// @return  whether one matched within the time
    [[nodiscard]] bool waitFor(const std::function<bool(const LogEntry&)>& matches,
                               std::chrono::milliseconds limit = std::chrono::seconds{30}) const;

    /// Waits until it serves no longer: hung up, or done after `once`. @return  whether that
    /// happened within the time
    [[nodiscard]] bool waitUntilEnded(std::chrono::milliseconds limit) const;

private:
    class Service;
    std::unique_ptr<Service> service_;
};

} // namespace simulator
