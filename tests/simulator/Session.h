// SPDX-License-Identifier: MIT
// Shared by the simulator's tests: an unpaced receiver with a few sentences, and queries of its
// log.

#pragma once

#include "simulator/LineClient.h"

#include <tools/simulator/Receiver.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace support {

inline constexpr char kVersionLine[] = "$PMGNVER,017,1.00,SIMULATED RECEIVER*33";
inline constexpr char kEnd[] = "PMGNCMD,END";

inline simulator::Settings unpaced(std::vector<simulator::Fault> faults = {})
{
    simulator::Settings settings;
    settings.paced = false;
    settings.handshake = true;
    settings.faults = std::move(faults);
    settings.sentences.waypoints = {"PMGNWPL,one", "PMGNWPL,two", "PMGNWPL,three"};
    settings.sentences.tracks = {"PMGNTRK,one", "PMGNTRK,two"};
    settings.sentences.routes = {"PMGNRTE,one"};
    return settings;
}

inline simulator::Settings unpaced(std::string_view fault)
{
    return unpaced({*simulator::parseFault(fault)});
}

/// Waits until the log has an entry of this kind and text. An empty text matches any.
inline bool waitFor(const simulator::Receiver& receiver, simulator::LogKind kind,
                    std::string_view text = {})
{
    return receiver.waitFor([=](const simulator::LogEntry& entry) {
        return entry.kind == kind && (text.empty() || entry.text == text);
    });
}

/// The log's entries of some kinds, as "sent PMGNCMD,END", without times.
inline std::vector<std::string> logged(const simulator::Receiver& receiver,
                                       const std::vector<simulator::LogKind>& kinds)
{
    std::vector<std::string> lines;
    for (const auto& entry : receiver.log()) {
        if (std::find(kinds.begin(), kinds.end(), entry.kind) != kinds.end())
            lines.push_back(std::string{name(entry.kind)} + ' ' +
                            (entry.text.empty() ? std::to_string(entry.speed) : entry.text));
    }
    return lines;
}

} // namespace support
