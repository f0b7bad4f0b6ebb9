// SPDX-License-Identifier: MIT
// Receiver: a simulated receiver on a pseudo-terminal of its own, for tests, benchmarks and trying
// things out without hardware. It runs on a thread of its own, which the destructor ends. [any]
//
// It understands and is understood only at its own line speed: bytes at any other speed are lost in
// both directions. Sentences arrive when their last byte would arrive, at 10 bits per byte. With
// handshaking on it acknowledges each valid command and waits for the acknowledgement of each data
// sentence: it repeats the sentence after 1.5 seconds, sends it 5 times in all, and then ends the
// data phase. A BAUD is acknowledged in any case, at the old speed, because the other side must
// know when to follow. A HANDON that arrives while handshaking is off is not acknowledged. A
// command ends the data phase that it interrupts. Handshaking and speed outlast the closing of the
// line, as on a receiver that stays switched on; faults start over.

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
    int speed = 4800; ///< the receiver's own at the start; see isLineSpeed()
    bool handshake = false;
    bool paced = true;    ///< otherwise it is as fast as the machine
    bool chatter = false; ///< sends one more sentence after TON, BAUD, TOFF and HANDOFF
    bool once = false;    ///< ends when the line is closed after a valid sentence arrived
    Sentences sentences{};
    std::vector<Fault> faults{};
    /// Gets the session log as JSON lines, from the receiver's thread. Outlives the receiver.
    std::ostream* log = nullptr;
};

class Receiver {
public:
    /// Opens a pseudo-terminal and serves it until destroyed, or until a fault or `once` ends it.
    /// @throws std::system_error  if no pseudo-terminal can be opened
    explicit Receiver(Settings settings);
    ~Receiver();
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;

    /// The terminal's path, for the other side to open. It is in raw mode; the other side sets the
    /// speed.
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
