// SPDX-License-Identifier: MIT
// Makes a receiver's folders for a test.

#pragma once

#include "support/TemporaryFolder.h"
#include "system/Program.h"

#include <platform/GPSUtilities/NMEAUtils.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace support {

/// Lines as a receiver writes them: each body framed, with its checksum and line end.
inline std::string sentences(std::initializer_list<std::string_view> bodies)
{
    std::string text;
    for (const auto body : bodies)
        text += gps::NMEAUtils::addChecksumToNMEASentence(body) + "\r\n";
    return text;
}

inline constexpr std::string_view kCamp =
    "PMGNWPL,4630.00000,N,00715.00000,E,0001200,M,Camp,by the lake,ab";
inline constexpr std::string_view kHut = "PMGNWPL,4645.00000,S,00730.00000,W,0000328,M,Hut,,r";
inline constexpr std::string_view kCache =
    "PMGNGEO,4600.00000,N,00700.00000,E,0000500,M,GC1,note,owner,hint,Traditional,010208,,1,2.5";
inline constexpr std::string_view kLoop = "PMGNRTE,1,1,c,1,Loop,Camp,ab,Hut,r";
inline constexpr std::string_view kFirstFix =
    "PMGNTRK,4630.00000,N,00715.00000,E,01200,M,100000.00,A,Day 1,010624";
inline constexpr std::string_view kSecondFix =
    "PMGNTRK,4645.00000,N,00730.00000,E,01201,M,100001.00,A,Day 1,010624";
inline constexpr std::string_view kShortFix = "PMGNTRK,4645.00000,N";

inline constexpr char kSampleReceiver[] = MAGELLAN_SOURCE_DIR "/samples/receiver";

/// A receiver in a folder: two waypoints, a geocache, a route of the two waypoints, a track of two
/// points.
class Receiver : public TemporaryFolder {
public:
    Receiver()
    {
        put("USBTRANS/UNIT_ID.DAT", "Serial Number=42\r\n");
        put("USBTRANS/LANGUAGE.DAT",
            "MyPOIs=Points\r\nGeocaches=Caches\r\nRoutes=Ways\r\nTrackLogs=Tracks\r\n");
        put("Points/a.upt", sentences({kCamp, kHut}));
        put("Caches/a.gs", sentences({kCache}));
        put("Ways/a.rte", sentences({kCamp, kHut, kLoop}));
        put("Tracks/a.log", sentences({kFirstFix, kSecondFix}));
    }
};

/// Downloads with the built program from a receiver in a folder.
inline Ran acquire(const TemporaryFolder& receiver, std::vector<std::string> words)
{
    words.insert(words.begin(), {"acquire", "--test-folder", receiver.path()});
    return magellangps(words);
}

} // namespace support
