// SPDX-License-Identifier: MIT
// Shared by the targets that read a receiver's files: a status object that stores the records, and
// the check that reading and writing agree. One thread.

#pragma once

#include "Framing.h"
#include "FuzzTarget.h"

#include <gps/Error.h>
#include <gps/GPSOutputReceiver.h>
#include <gps/Value.h>
#include <plugin/common/RecordKind.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

/// Stores the records of one read, and checks the order of the calls.
class Records : public gps::GPSOutputReceiver {
public:
    gps::Array waypoints; ///< each with its "point"; points of routes are not here
    gps::Array routes;    ///< each with its "points"
    gps::Array tracks;    ///< each with its "points"

    void gpsStateChange(std::int32_t) override { unexpectedCall(); }
    void startTransfer(gps::TransferKind) override { unexpectedCall(); }
    void endTransfer(gps::TransferKind) override { unexpectedCall(); }
    void newTrack(const gps::Dictionary& track) override;
    void trackPoint(const gps::GPSPoint& point, const gps::Dictionary& extra) override;
    void wayPoint(const gps::GPSPoint& point, const gps::Dictionary& extra) override;
    void newRoute(const gps::Dictionary& route) override;
    void startSending(std::string_view, gps::TransferKind) override { unexpectedCall(); }
    void endSending(gps::TransferKind) override { unexpectedCall(); }
    void error(const gps::Error&) override { unexpectedCall(); }

private:
    static void unexpectedCall() { require(false, "a reader reports records only"); }
};

/// The lines as they are stored in a receiver's file: each ends in CR LF.
std::string joinedLines(const std::vector<std::string>& lines);

/// Reads a text as a file of one kind.
Records recordsIn(magellan::RecordKind kind, std::string_view text);

/// Reads an input as a file, writes the records with `write` and reads the result. From the second
/// time on, nothing may change. The reader must accept everything that we write.
template <typename Write>
void checkText(std::string_view input, magellan::RecordKind kind, Write write)
{
    Records first;
    try {
        first = recordsIn(kind, input);
    } catch (const gps::RangeError&) {
        return; // a line of the input is too short
    }
    std::string texts[3];
    for (auto& text : texts) {
        text = write(first);
        first = recordsIn(kind, text);
    }
    require(texts[1] == texts[2], "a written text, read and written again, is unchanged");
}

/// Checks an input unchanged, and with its checksums corrected.
template <typename Write>
void checkFile(std::string_view input, magellan::RecordKind kind, Write write)
{
    checkText(input, kind, write);
    if (const auto corrected = linesWithChecksums(input); corrected != input)
        checkText(corrected, kind, write);
}

} // namespace fuzz
