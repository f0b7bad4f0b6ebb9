// SPDX-License-Identifier: MIT
// Runs a serial session against any bytes: each line of the input is the receiver's answer to one
// read, and "~" is a time-out. The session must end, report each record within the transfer of its
// kind, and acknowledge valid sentences only.

#include "Framing.h"
#include "FuzzTarget.h"

#include <gps/Error.h>
#include <gps/GPSOutputReceiver.h>
#include <gps/Value.h>
#include <plugin/common/OperationAccount.h>
#include <plugin/common/OperationMonitor.h>
#include <plugin/serialdevice/DownloadSession.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <tests/support/MemoryLine.h>

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

/// Queues each line of the text as one answer of the receiver. @return  the number of valid
/// sentences
std::size_t queueLines(std::string_view text, bool framed, support::MemoryLine& line)
{
    std::size_t valid = 0;
    for (;;) {
        const auto end = text.find('\n');
        const auto answer = text.substr(0, end);
        if (answer == "~") {
            line.keepsSilent();
        } else {
            const auto sentence = framed ? fuzz::withChecksum(answer) : std::string{answer};
            valid += gps::NMEAUtils::checkAndTrimNMEASentence(sentence) ? 1U : 0U;
            line.says(sentence);
        }
        if (end == text.npos)
            return valid;
        text.remove_prefix(end + 1);
    }
}

void checkSession(std::string_view text, bool framed)
{
    support::MemoryLineLog done;
    support::MemoryLine line{done};
    const auto valid = queueLines(text, framed, line);
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
    std::size_t acknowledged = 0;
    for (const auto& body : done.sent())
        acknowledged += body.starts_with("PMGNCSM,") ? 1U : 0U;
    fuzz::require(acknowledged <= valid, "only valid sentences are acknowledged");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    checkSession(fuzz::textOf(data, size), false);
    checkSession(fuzz::textOf(data, size), true);
    return 0;
}
