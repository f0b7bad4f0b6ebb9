// SPDX-License-Identifier: MIT
// MemoryLine: a serial port in memory whose receiver sends what a test has prepared. A read after
// the last prepared text times out at once. One thread at a time.

#pragma once

#include <platform/GPSUtilities/NMEAUtils.h>
#include <platform/OrvUtils/OrvSerial.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace support {

/// The calls that a MemoryLine has received. Must outlive it.
struct MemoryLineLog {
    std::vector<std::string> calls; ///< "speed 4800", "open /dev/x", "send $...*hh\r\n", "close"

    /// The bodies that were sent.
    [[nodiscard]] std::vector<std::string> sent() const
    {
        std::vector<std::string> bodies;
        for (const std::string_view call : calls) {
            if (call.substr(0, 5) == "send ")
                bodies.emplace_back(gps::NMEAUtils::checkAndTrimNMEASentence(call.substr(5))
                                        .value_or("(not a sentence)"));
        }
        return bodies;
    }
};

class MemoryLine : public gps::OrvSerial {
public:
    /// @param log  receives every call; must outlive this line
    explicit MemoryLine(MemoryLineLog& log) : log_(log) {}
    ~MemoryLine() override { close(); }

    /// The next read returns this line, unchanged.
    void says(std::string line) { reads_.emplace_back(std::move(line)); }
    void saysSentence(std::string_view body)
    {
        says(gps::NMEAUtils::addChecksumToNMEASentence(body));
    }
    void keepsSilent(int reads = 1)
    {
        reads_.insert(reads_.end(), static_cast<std::size_t>(reads), std::nullopt);
    }

    /// Each time this body is sent, the receiver sends the replies as sentences.
    void answers(const std::string& body, std::vector<std::string> replies)
    {
        answers_[body] = std::move(replies);
    }

    /// Reads throw after this many.
    void failsAfter(int reads) { readsLeft_ = reads; }

    /// The next read times out although bytes have arrived.
    void saysNoise() { reads_.emplace_back(kNoise); }

    /// Opening fails with this errno.
    void refuses(int errorNumber) { openResult_ = errorNumber; }

    void setBaudRate(int bitsPerSecond) override
    {
        log_.calls.push_back("speed " + std::to_string(bitsPerSecond));
    }

    [[nodiscard]] int openWithDevicePath(const char* path) override
    {
        log_.calls.push_back(std::string{"open "} + path);
        isOpen_ = openResult_ == 0;
        return openResult_;
    }

    void sendString(std::string_view text, gps::StringEncoding /*encoding*/) override
    {
        log_.calls.push_back("send " + std::string{text});
        const auto body = gps::NMEAUtils::checkAndTrimNMEASentence(text);
        const auto found = body ? answers_.find(std::string{*body}) : answers_.end();
        if (found == answers_.end())
            return;
        for (const auto& reply : found->second)
            saysSentence(reply);
    }

    [[nodiscard]] std::optional<std::string> readStringTo(std::string_view terminator,
                                                          float timeoutSeconds) override
    {
        log_.calls.push_back("read");
        askedAsExpected_ = askedAsExpected_ && terminator == "\r\n" && timeoutSeconds == 1.0F;
        if (readsLeft_ && --*readsLeft_ < 0)
            throw gps::SerialFailure{"the line has failed"};
        if (reads_.empty())
            return std::nullopt;
        auto line = std::move(reads_.front());
        reads_.pop_front();
        if (line)
            bytesReceived_ += line->size() + terminator.size();
        return line == kNoise ? std::nullopt : line;
    }

    [[nodiscard]] std::uint64_t bytesReceived() const noexcept override { return bytesReceived_; }

    void close() override
    {
        if (std::exchange(isOpen_, false))
            log_.calls.emplace_back("close");
    }

    /// Whether every read was for a line of at most 1 second.
    [[nodiscard]] bool askedAsExpected() const noexcept { return askedAsExpected_; }

private:
    static constexpr char kNoise[] = "(noise)";

    MemoryLineLog& log_;
    std::deque<std::optional<std::string>> reads_;
    std::map<std::string, std::vector<std::string>> answers_;
    std::optional<int> readsLeft_;
    int openResult_ = 0;
    std::uint64_t bytesReceived_ = 0;
    bool isOpen_ = false;
    bool askedAsExpected_ = true;
};

} // namespace support
