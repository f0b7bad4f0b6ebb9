// SPDX-License-Identifier: MIT
// Viewers show `description` as HTML and list `ExtendedData` as a table. The comment goes to both:
// to the first for people, to the second for programs, which want it without HTML.

#include "host/formats/KmlText.h"

#include "host/base/JsonText.h"
#include "host/base/Text.h"
#include "host/base/XmlText.h"

#include <gps/NumberText.h>
#include <gps/Value.h>

namespace host {
namespace {

// KML defines a description as HTML, so the text is escaped once as HTML and once more as XML.
void appendDescription(std::string& out, const gps::Dictionary& record)
{
    const auto* comment = record.findString("comment");
    if (comment == nullptr || comment->empty())
        return;
    std::string html;
    appendXml(html, *comment);
    out += "<description>";
    appendXml(out, html);
    out += "</description>";
}

std::string plainTextOf(const gps::Value& value)
{
    if (const auto* text = value.as<std::string>())
        return *text;
    std::string json;
    appendJsonValue(json, value);
    return json;
}

} // namespace

// No altitudeMode is written, so viewers clamp everything to the ground; the altitude is only data.
char* putKmlPosition(char* at, const gps::GPSPoint& point, char separator) noexcept
{
    at = putDegrees(at, point.longitude);
    *at++ = separator;
    at = putDegrees(at, point.latitude);
    if (!isElevationStated(point))
        return at;
    *at++ = separator;
    return gps::putDecimal(at, point.altitude);
}

char* putKmlWhen(char* at, const gps::GPSPoint& point, TimestampText& times) noexcept
{
    at = put(at, "<when>");
    at = times.put(at, point.time, 'T');
    return put(at, "Z</when>");
}

void appendKmlName(std::string& out, const gps::Dictionary& record)
{
    const auto* name = record.findString("name");
    if (name == nullptr || name->empty())
        return;
    out += "<name>";
    appendXml(out, *name);
    out += "</name>";
}

void appendKmlHead(std::string& out, const gps::Dictionary& record, std::string_view style,
                   const gps::GPSPoint* timed)
{
    out += "<Placemark>";
    appendKmlName(out, record);
    appendDescription(out, record);
    if (timed != nullptr && hasTimestamp(*timed)) {
        out += "<TimeStamp>";
        TimestampText times;
        appendPut<kMostOfKmlWhen>(out, [&](char* at) { return putKmlWhen(at, *timed, times); });
        out += "</TimeStamp>";
    }
    out.append("<styleUrl>#").append(style).append("</styleUrl>");
}

// All fields for programs, unchanged, except the name and boxed points, which have elements of
// their own, and empty texts.
void appendKmlData(std::string& out, const gps::Dictionary& record)
{
    for (const auto& [key, value] : record) {
        if (key == "name" || value.as<gps::GPSPoint>() != nullptr)
            continue;
        const auto text = plainTextOf(value);
        if (text.empty())
            continue;
        out += "<Data name=\"";
        appendXml(out, key);
        out += "\"><value>";
        appendXml(out, text);
        out += "</value></Data>";
    }
}

void appendExtendedData(std::string& out, std::string_view data)
{
    if (!data.empty())
        out.append("<ExtendedData>").append(data).append("</ExtendedData>");
}

} // namespace host
