// SPDX-License-Identifier: MIT
// A decoder does not report which lines it skipped, so the lines are counted here.

#include "host/transfer/RefusedFile.h"

#include "host/fitting/RecordList.h"

#include <platform/GPSUtilities/NMEAUtils.h>
#include <platform/System/FileManager.h>

#include <cstdint>
#include <string_view>

namespace host {
namespace {

using gps::SkipReason;

constexpr std::string_view kLineEnd = "\r\n";

std::string accountKind(std::string_view key)
{
    return key == "waypoint" ? "waypoints" : key == "route" ? "routes" : "tracks";
}

void countLine(std::string_view line, std::uint64_t number, gps::LineAccount& lines)
{
    constexpr std::string_view kEndOfFile = "PMGNCMD,END";
    const auto body = gps::NMEAUtils::checkAndTrimNMEASentence(line);
    if (line.empty() || body == kEndOfFile)
        return;
    ++lines.seen;
    if (body) {
        ++lines.accepted;
        return;
    }
    const auto reason = gps::NMEAUtils::isFramedNMEASentence(line) ? SkipReason::kWrongChecksum
                                                                   : SkipReason::kNotASentence;
    ++lines.skipped[static_cast<std::size_t>(reason)];
    if (lines.details.size() < gps::TransferAccount::kMostDetails)
        lines.details.push_back({number, reason});
}

// What a decoder makes of any text in a file with the name of a track.
bool isEmptyTrack(std::string_view key, const gps::Dictionary& record)
{
    const auto* const points = record.findArray("points");
    return key == "track" && (points == nullptr || points->empty());
}

gps::LineAccount linesOf(std::string_view content)
{
    gps::LineAccount lines;
    std::uint64_t number = 0;
    for (std::size_t begin = 0; begin <= content.size();) {
        const auto rest = content.substr(begin);
        const auto line = rest.substr(0, rest.find(kLineEnd));
        countLine(line, ++number, lines);
        begin += line.size() + kLineEnd.size();
    }
    return lines;
}

} // namespace

RefusedFile decodeRefusedFile(const gps::GPSFileDevice& decoder, const std::string& path)
{
    RefusedFile file{.account = {.path = path}};
    std::string content;
    if (gps::FileManager{}.readAsciiFile(path, content))
        return file;
    decoder.visitRecordsIn(path, content, [&](std::string_view key, const gps::Dictionary& record) {
        if (isEmptyTrack(key, record))
            return;
        gps::Array one{record};
        appendRecords(file.data, key, one);
        file.account.kind = accountKind(key);
    });
    file.account.lines = linesOf(content);
    return file;
}

} // namespace host
