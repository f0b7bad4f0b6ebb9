// SPDX-License-Identifier: MIT
// Serial sessions: each line of the input is what a receiver says to one read, "~" a silence.
// Whatever it says, the session comes to its end, its reports stand in their brackets, and it
// acknowledges nothing but what it was sent.

#include "Framing.h"
#include "FuzzTarget.h"

#include <gps/Error.h>
#include <gps/GPSOutputReceiver.h>
#include <gps/Value.h>

#include <optional>
#include <string>

#include <plugin/serialdevice/DownloadSession.h>
#include <tests/support/MemoryLine.h>

namespace {

/// Checks that records come inside the bracket of their kind.
class Brackets : public gps::GPSOutputReceiver {
public:
    void startTransfer(gps::TransferKind kind) override
    {
        fuzz::require(!open_, "brackets do not nest");
        open_ = kind;
    }
    void endTransfer(gps::TransferKind kind) override
    {
        fuzz::require(open_ == kind, "a bracket ends as it began");
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
                      "a point is a waypoint or a route's");
    }
    void newRoute(const gps::Dictionary&) override
    {
        fuzz::require(open_ == gps::TransferKind::kRoutes, "a route comes in its bracket");
        hasRoute_ = true;
    }
    void gpsStateChange(std::int32_t) override { noSuchCall(); }
    void startSending(std::string_view, gps::TransferKind) override { noSuchCall(); }
    void endSending(gps::TransferKind) override { noSuchCall(); }
    void error(const gps::Error&) override { noSuchCall(); }

    [[nodiscard]] bool isOpen() const { return open_.has_value(); }

private:
    static void noSuchCall() { fuzz::require(false, "a session hands on records alone"); }

    std::optional<gps::TransferKind> open_;
    bool hasTrack_ = false;
    bool hasRoute_ = false;
};

/// @return  how many of the lines are valid sentences
std::size_t lay(std::string_view text, bool framed, support::MemoryLine& line)
{
    std::size_t valid = 0;
    for (;;) {
        const auto end = text.find('\n');
        const auto said = text.substr(0, end);
        if (said == "~") {
            line.keepsSilent();
        } else {
            const auto sentence = framed ? fuzz::framedAnew(said) : std::string{said};
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
    const auto valid = lay(text, framed, line);
    const gps::Dictionary work{
        {"location", "/dev/receiver"}, {"waypoints", true}, {"tracks", true}, {"routes", true}};
    Brackets status;
    try {
        const bool opened = !magellan::DownloadSession{line, status, work}.run();
        fuzz::require(opened && !status.isOpen(),
                      "a session that runs through closes its brackets");
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
