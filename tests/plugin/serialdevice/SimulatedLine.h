// SPDX-License-Identifier: MIT
// SimulatedLine: a serial port with a simulated receiver behind it, both in memory. Time is
// virtual: it passes only while the session waits for the line. So a session that waits for minutes
// takes milliseconds, and gives the same result on the busiest machine. One thread at a time.

#pragma once

#include <platform/OrvUtils/OrvSerial.h>
#include <tools/simulator/Conversation.h>
#include <tools/simulator/Receiver.h>
#include <tools/simulator/SessionLog.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace support {

/// The receiver. It outlives the lines to it.
struct SimulatedReceiver {
    /// `once` and `log` of the settings have no effect: nobody waits for this receiver to end.
    explicit SimulatedReceiver(simulator::Settings s) : settings(std::move(s)) {}
    SimulatedReceiver(const SimulatedReceiver&) = delete;
    SimulatedReceiver& operator=(const SimulatedReceiver&) = delete;

    const simulator::Settings settings;
    std::optional<std::size_t> unpluggedAfter{}; ///< so many sentences that it understood
    simulator::SessionLog log{nullptr};
    simulator::Conversation conversation{settings, log};
    simulator::Clock::time_point now = simulator::Clock::now(); ///< the virtual time
};

class SimulatedLine final : public gps::OrvSerial {
public:
    explicit SimulatedLine(SimulatedReceiver& receiver) : receiver_(receiver) {}
    ~SimulatedLine() override { close(); }
    SimulatedLine(const SimulatedLine&) = delete;
    SimulatedLine& operator=(const SimulatedLine&) = delete;

    void setBaudRate(int bitsPerSecond) override;
    int openWithDevicePath(const char* path) override;
    void sendString(std::string_view text, gps::StringEncoding encoding) override;
    std::optional<std::string> readStringTo(std::string_view terminator,
                                            float timeoutSeconds) override;
    [[nodiscard]] std::uint64_t bytesReceived() const noexcept override { return bytesReceived_; }
    void close() override;

private:
    using Time = simulator::Clock::time_point;

    void noteSpeed();
    [[nodiscard]] bool passTime(Time until);
    void arrive();
    [[nodiscard]] Time departure() const;
    void depart();
    void beginToSend();
    void hangUpIfDue();
    [[nodiscard]] simulator::Clock::duration byteTime(int speed) const;
    [[nodiscard]] std::optional<std::string> takeTextTo(std::string_view terminator,
                                                        std::size_t& searched);

    SimulatedReceiver& receiver_;
    bool open_ = false;
    bool hungUp_ = false;
    int speed_ = 4800;           // this side's
    std::size_t understood_ = 0; // sentences
    std::size_t steps_ = 0;

    // To the receiver.
    std::string partial_; // a line without its end so far
    std::deque<simulator::ArrivedLine> arriving_;
    Time inFree_{}; // when the last byte written will have arrived

    // From the receiver.
    std::optional<simulator::Outgoing> sending_;
    std::size_t sent_ = 0; // bytes of it
    int outSpeed_ = 0;
    Time outBegin_{};
    Time outFree_{}; // when the last byte sent had left
    std::string received_;
    std::uint64_t bytesReceived_ = 0; // noise included
};

} // namespace support
