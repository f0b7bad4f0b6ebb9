// SPDX-License-Identifier: MIT
// Runs a serial session against any bytes. Each line of the input is what happens at one read:
// "~" is a time-out, "^" the failure of the line, "%" a request to stop, and a receiver answers
// anything else: what follows a "!" as it is, other lines with the right checksum. The session must
// end, report each record within the transfer of its kind, and acknowledge valid sentences only.

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
    TextLine(std::string_view text, magellan::OperationMonitor& monitor)
        : rest_(text), monitor_(monitor)
    {}

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
        if (answer == "^")
            throw gps::SerialFailure{"the line failed"};
        if (answer == "%")
            monitor_.requestStop();
        if (!answer || answer == "~" || answer == "%")
            return std::nullopt;
        auto line =
            answer->starts_with('!') ? std::string{answer->substr(1)} : fuzz::withChecksum(*answer);
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
    magellan::OperationMonitor& monitor_;
    std::size_t valid_ = 0; // sentences read
    std::size_t acknowledged_ = 0;
    std::uint64_t bytesReceived_ = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const auto& work = *new gps::Dictionary{
        {"location", "/dev/receiver"}, {"waypoints", true}, {"tracks", true}, {"routes", true}};
    Transfers status;
    magellan::OperationMonitor monitor;
    TextLine line{fuzz::textOf(data, size), monitor};
    magellan::OperationAccount account{monitor};
    try {
        const auto error = magellan::DownloadSession{line, status, work, monitor, account}.run();
        fuzz::require(!error || monitor.stopRequested(), "only a stopped session has an error");
        fuzz::require(error || !status.isOpen(),
                      "a session that ends without an error has ended its transfers");
    } catch (const gps::RangeError&) {    // a sentence is too short
    } catch (const gps::SerialFailure&) { // the line failed
    }
    return 0;
}
