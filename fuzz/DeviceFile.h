// SPDX-License-Identifier: MIT
// What the targets for a receiver's files share: an input as a file, and a status object that keeps
// what it is told.

#pragma once

#include "Framing.h"
#include "FuzzTarget.h"

#include <gps/Error.h>
#include <gps/GPSOutputReceiver.h>
#include <gps/Value.h>

#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

/// Puts text into a file of the process's own, which has no name in any folder. @return  a path to
/// read it by
std::string asFile(std::string_view text);

/// Keeps the records of one reading, and checks the order of the calls.
class Records : public gps::GPSOutputReceiver {
public:
    gps::Array waypoints; ///< records, each with its "point"; without those of routes
    gps::Array routes;    ///< records, each with its "points"
    gps::Array tracks;    ///< each with its "points"

    void gpsStateChange(std::int32_t) override { noSuchCall(); }
    void startTransfer(gps::TransferKind) override { noSuchCall(); }
    void endTransfer(gps::TransferKind) override { noSuchCall(); }
    void newTrack(const gps::Dictionary& track) override;
    void trackPoint(const gps::GPSPoint& point, const gps::Dictionary& extra) override;
    void wayPoint(const gps::GPSPoint& point, const gps::Dictionary& extra) override;
    void newRoute(const gps::Dictionary& route) override;
    void startSending(std::string_view, gps::TransferKind) override { noSuchCall(); }
    void endSending(gps::TransferKind) override { noSuchCall(); }
    void error(const gps::Error&) override { noSuchCall(); }

private:
    static void noSuchCall() { require(false, "a reader hands on records alone"); }
};

/// Lines as a receiver's file holds them: parted by CR LF.
std::string joinedLines(const std::vector<std::string>& lines);

/// Reads an input with `read`, writes what came with `write` and reads that: from the second time
/// on nothing changes any more. What we write is never too short for the reader, nor out of its
/// alphabet.
template <typename Read, typename Write>
void checkText(std::string_view input, Read read, Write write)
{
    Records first;
    try {
        const auto error = read(first, asFile(input));
        require(!error || (first.waypoints.empty() && first.routes.empty() && first.tracks.empty()),
                "a failed read reports nothing");
    } catch (const gps::RangeError&) {
        return; // a line of the input is too short
    }
    std::string texts[3];
    for (auto& text : texts) {
        text = write(first);
        first = {};
        require(!read(first, asFile(text)), "what was written can be read");
    }
    require(texts[1] == texts[2], "written, read and written again it is the same");
}

/// The same for an input as it is and with its checksums put right.
template <typename Read, typename Write>
void checkFile(std::string_view input, Read read, Write write)
{
    checkText(input, read, write);
    checkText(linesFramedAnew(input), read, write);
}

} // namespace fuzz
