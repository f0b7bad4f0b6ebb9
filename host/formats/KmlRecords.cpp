// SPDX-License-Identifier: MIT
// Files of this program have the fields of a record as extended data, which are preferred: a
// description may have been made of several of them.

#include "host/formats/KmlRecords.h"

#include "host/formats/RecordOrigin.h"
#include "host/formats/XmlNodes.h"
#include "host/points/Points.h"

#include <gps/Characters.h>
#include <gps/Geocache.h>
#include <gps/NumberText.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>

namespace host {
namespace {

// Takes the text up to a separator, which is dropped.
std::string_view takeUpTo(std::string_view& text, char separator)
{
    const auto end = std::min(text.find(separator), text.size());
    const auto part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return part;
}

std::optional<double> takeNumber(std::string_view& text, char separator)
{
    text = gps::withoutLeadingSpace(text);
    return gps::wholeNumber(gps::trimmed(takeUpTo(text, separator)));
}

bool isRecordKey(std::string_view key)
{
    return key == "comment" || key == "symbol" ||
           std::find(gps::kGeocacheKeys.begin() + 1, gps::kGeocacheKeys.end(), key) !=
               gps::kGeocacheKeys.end();
}

std::string extendedText(const pugi::xml_node& placemark, std::string_view key)
{
    for (const auto& data : childOf(placemark, "ExtendedData").children()) {
        if (data.attribute("name").value() == key)
            return childText(data, "value");
    }
    return {};
}

// The fields of a record that this program has written.
void addExtendedData(gps::Dictionary& record, const pugi::xml_node& placemark)
{
    for (const auto& data : childOf(placemark, "ExtendedData").children()) {
        const std::string_view key = data.attribute("name").value();
        if (isRecordKey(key))
            record.set(key, childText(data, "value"));
    }
}

gps::Dictionary named(const pugi::xml_node& placemark)
{
    gps::Dictionary record;
    if (auto name = childText(placemark, "name"); !name.empty())
        record.set("name", std::move(name));
    return record;
}

struct Reference {
    std::string_view name; // with its "&" and ";"
    std::string_view text;
};

constexpr std::array kReferences{Reference{"&lt;", "<"},   Reference{"&gt;", ">"},
                                 Reference{"&amp;", "&"},  Reference{"&quot;", "\""},
                                 Reference{"&apos;", "'"}, Reference{"&#39;", "'"},
                                 Reference{"&nbsp;", " "}};

// Takes a character, or a reference to one.
std::string_view takeCharacterOf(std::string_view& html)
{
    auto length = std::size_t{1};
    auto text = html.substr(0, 1);
    for (const auto& reference : kReferences) {
        if (html.starts_with(reference.name)) {
            length = reference.name.size();
            text = reference.text;
        }
    }
    html.remove_prefix(length);
    return text;
}

} // namespace

bool readKmlPosition(std::string_view text, char separator, gps::GPSPoint& point,
                     UnreadTexts& unread)
{
    const auto longitude = takeNumber(text, separator);
    const auto latitude = takeNumber(text, separator);
    if (!longitude || !latitude)
        return false;
    point.longitude = *longitude;
    point.latitude = *latitude;
    point.altitude = elevationIn(text, unread);
    return isOnGlobe(point);
}

gps::Dictionary kmlWaypoint(const pugi::xml_node& placemark, gps::GPSPoint point,
                            UnreadTexts& unread)
{
    auto record = named(placemark);
    record.set("comment", plainDescription(childText(placemark, "description")));
    addExtendedData(record, placemark);
    point.time = timeIn(childText(childOf(placemark, "TimeStamp"), "when"), unread);
    record.set(gps::kPointKey, point);
    return record;
}

gps::Dictionary kmlTrack(const pugi::xml_node& placemark)
{
    auto record = named(placemark);
    auto comment = extendedText(placemark, "comment");
    if (comment.empty())
        comment = plainDescription(childText(placemark, "description"));
    if (!comment.empty())
        record.set("comment", std::move(comment));
    if (auto source = extendedText(placemark, kSourceKey); !source.empty())
        record.set(kSourceKey, std::move(source));
    return record;
}

std::string plainDescription(std::string_view text)
{
    std::string plain;
    while (!text.empty()) {
        const bool isTag = text.front() == '<';
        const auto end = isTag ? text.find('>') : std::string_view::npos;
        if (end == std::string_view::npos) {
            plain += takeCharacterOf(text);
            continue;
        }
        plain += ' ';
        text.remove_prefix(end + 1);
    }
    return std::string{gps::trimmed(plain)};
}

} // namespace host
