// SPDX-License-Identifier: MIT
// Runs a serial session against any bytes: each line of the input is the receiver's answer to one
// read, and "~" is a time-out. The session must end, report each record within the transfer of its
// kind, and acknowledge valid sentences only.

#include "Framing.h"
#include "FuzzTarget.h"

#include <gps/Error.h>
#include <gps/GPSOutputReceiver.h>
#include <gps/Value.h>
#include <platform/GPSUtilities/NMEAUtils.h>
#include <platform/OrvUtils/OrvSerial.h>
#include <plugin/common/OperationAccount.h>
#include <plugin/common/OperationMonitor.h>
#include <plugin/serialdevice/DownloadSession.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace {

/// Checks that each record is reported between startTransfer and endTransfer of its kind.
class Transfers : public gps::GPSOutputReceiver {
public:
    void startTransfer(gps::TransferKind kind) override
    {
        fuzz::require(!open_, "transfers do not nest");
        open_ = kind;
    }
    void endTransfer(gps::TransferKind kind) override
    {
        fuzz::require(open_ == kind, "a transfer ends with its own kind");
        open_.reset();
    }
    void newTrack(const gps::Dictionary& track) override
    {
        fuzz::require(open_ == gps::TransferKind::kTracks && track.findString("name") != nullptr,
                      "a track has a name");
        hasTrack_ = true;
    }
    void trackPoint(const gps::GPSPoint&, const gps::Dictionary&) override
    {
        fuzz::require(open_ == gps::TransferKind::kTracks && hasTrack_,
                      "a track point has a track");
    }
    void wayPoint(const gps::GPSPoint&, const gps::Dictionary&) override
    {
        fuzz::require(open_ == gps::TransferKind::kWaypoints || hasRoute_,
                      "a point is a waypoint or belongs to a route");
    }
    void newRoute(const gps::Dictionary&) override
    {
        fuzz::require(open_ == gps::TransferKind::kRoutes, "a route is reported in its transfer");
        hasRoute_ = true;
    }
    void gpsStateChange(std::int32_t) override { unexpectedCall(); }
    void startSending(std::string_view, gps::TransferKind) override { unexpectedCall(); }
    void endSending(gps::TransferKind) override { unexpectedCall(); }
    void error(const gps::Error&) override { unexpectedCall(); }

    [[nodiscard]] bool isOpen() const { return open_.has_value(); }

private:
    static void unexpectedCall() { fuzz::require(false, "a session reports records only"); }

    std::optional<gps::TransferKind> open_;
    bool hasTrack_ = false;
    bool hasRoute_ = false;
};

/// A line whose receiver answers each read with the next line of a text. It keeps no record of the
/// session, as test lines do, because that would take longer than the session.
class TextLine final : public gps::OrvSerial {
public:
    /// @param framed  whether to make a sentence of each line
    TextLine(std::string_view text, bool framed) : rest_(text), framed_(framed) {}

    void setBaudRate(int /*bitsPerSecond*/) override {}
    [[nodiscard]] int openWithDevicePath(const char* /*path*/) override { return 0; }
    void close() override {}
    void sendString(std::string_view text, gps::StringEncoding /*encoding*/) override
    {
        if (!text.starts_with("$PMGNCSM,"))
            return;
        ++acknowledged_;
        fuzz::require(acknowledged_ <= valid_, "only valid sentences are acknowledged");
    }
    [[nodiscard]] std::optional<std::string> readStringTo(std::string_view terminator,
                                                          float /*timeoutSeconds*/) override
    {
        const auto answer = nextLine();
        if (!answer || answer == "~")
            return std::nullopt;
        auto line = framed_ ? fuzz::withChecksum(*answer) : std::string{*answer};
        valid_ += gps::NMEAUtils::checkAndTrimNMEASentence(line) ? 1U : 0U;
        bytesReceived_ += line.size() + terminator.size();
        return line;
    }
    [[nodiscard]] std::uint64_t bytesReceived() const noexcept override { return bytesReceived_; }

private:
    /// Nullopt after the last line.
    std::optional<std::string_view> nextLine()
    {
        if (!rest_)
            return std::nullopt;
        const auto line = rest_->substr(0, rest_->find('\n'));
        if (line.size() < rest_->size())
            rest_->remove_prefix(line.size() + 1);
        else
            rest_.reset();
        return line;
    }

    std::optional<std::string_view> rest_; // nullopt once all lines were read
    bool framed_;
    std::size_t valid_ = 0; // sentences read
    std::size_t acknowledged_ = 0;
    std::uint64_t bytesReceived_ = 0;
};

void checkSession(std::string_view text, bool framed)
{
    TextLine line{text, framed};
    const gps::Dictionary work{
        {"location", "/dev/receiver"}, {"waypoints", true}, {"tracks", true}, {"routes", true}};
    Transfers status;
    magellan::OperationMonitor monitor;
    magellan::OperationAccount account{monitor};
    try {
        const bool opened = !magellan::DownloadSession{line, status, work, monitor, account}.run();
        fuzz::require(opened && !status.isOpen(),
                      "a session that ends without an error has ended its transfers");
    } catch (const gps::RangeError&) { // a sentence is too short
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    checkSession(fuzz::textOf(data, size), false);
    checkSession(fuzz::textOf(data, size), true);
    return 0;
}
