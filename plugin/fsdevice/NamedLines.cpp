// SPDX-License-Identifier: MIT
// Splitting a line again takes less time than keeping its fields: they are five times as large.

#include "NamedLines.h"

#include "../codec/GeoCacheSentence.h"
#include "../codec/SentenceFields.h"
#include "../codec/SentenceText.h"
#include "../codec/WayPointSentence.h"
#include "../common/Lines.h"
#include "FileSentences.h"

#include <platform/GPSUtilities/NMEAUtils.h>

#include <utility>

namespace magellan {

const NamedKind kWayPointLines{RecordKind::kWaypoints, kWayPointSentence,   readWayPoint,
                               wayPointName,           isWayPointAsWritten, appendWayPointLine};
const NamedKind kGeoCacheLines{RecordKind::kGeocaches, kGeoCacheSentence,   readGeoCache,
                               geoCacheName,           isGeoCacheAsWritten, appendGeoCacheLine};

NamedLines::NamedLines(const NamedKind& kind, std::string_view text, gps::LineAccount& account)
    : kind_(kind)
{
    forEachSentence(text, kind.sentence, account,
                    [&](const SentenceFields& fields, std::uint64_t number) -> Skipped {
                        const auto name = kind.nameIn(fields);
                        if (!name)
                            return gps::SkipReason::kNoName;
                        const auto body = fields.from(0);
                        const Line line{body.data(), static_cast<std::uint32_t>(body.size()),
                                        static_cast<std::uint32_t>(number)};
                        const auto index = names_.indexOf(*name);
                        if (index == lines_.size())
                            lines_.push_back(line);
                        else
                            addReplaced(account, std::exchange(lines_[index], line).number);
                        return std::nullopt;
                    });
}

bool NamedLines::appendAsWritten(std::size_t index, std::string& text) const
{
    const auto& line = lines_[index];
    const std::string_view body{line.body, line.length};
    if (!kind_.isAsWritten(SentenceFields{body}))
        return false;
    // With a new checksum: the line's own may have lower-case digits.
    (void)appendSentence(text, [&] {
        text += body;
        return true;
    });
    text += kFileLineEnd;
    return true;
}

void NamedLines::read(std::size_t index, gps::GPSPoint& point, gps::Dictionary& record) const
{
    const auto& line = lines_[index];
    kind_.read(SentenceFields{{line.body, line.length}}, point, &record);
}

void NamedLines::read(std::size_t index, gps::Dictionary& record) const
{
    gps::GPSPoint point;
    read(index, point, record);
    record.set(gps::kPointKey, point);
}

} // namespace magellan
