// SPDX-License-Identifier: MIT
// The schema has no dates of its own for "placed" and "found": both become log entries, as the
// listing sites write them.

#include "host/formats/GeocacheXml.h"

#include "host/base/RecordText.h"
#include "host/files/Output.h"
#include "host/formats/XmlElements.h"
#include "host/points/Points.h"

#include <gps/Value.h>
#include <platform/GPSUtilities/NMEAUtils.h>

#include <array>

namespace host {
namespace {

// In the order of the schema, as any new one must be.
constexpr std::array kTexts{
    TextElement{"name", "<groundspeak:name>", "</groundspeak:name>"},
    TextElement{"geocacheOwner", "<groundspeak:owner>", "</groundspeak:owner>"},
    TextElement{"geocacheType", "<groundspeak:type>", "</groundspeak:type>"},
    TextElement{"difficulty", "<groundspeak:difficulty>", "</groundspeak:difficulty>"},
    TextElement{"terrain", "<groundspeak:terrain>", "</groundspeak:terrain>"},
    TextElement{"geocacheHint", "<groundspeak:encoded_hints>", "</groundspeak:encoded_hints>"},
};

void writeLog(Output& out, std::string_view type, std::string_view date)
{
    if (date.empty())
        return;
    out.write("<groundspeak:log><groundspeak:date>");
    writeXml(out, dateTimeOf(date));
    out.write("</groundspeak:date><groundspeak:type>");
    out.write(type);
    out.write("</groundspeak:type></groundspeak:log>");
}

} // namespace

void writeGeocache(Output& out, const gps::Dictionary& record)
{
    out.write(R"(<groundspeak:cache xmlns:groundspeak="http://www.groundspeak.com/cache/1/0">)");
    writeElements(out, record, kTexts);
    const auto placed = textIn(record, "datePlaced");
    const auto found = textIn(record, "dateFound");
    if (!placed.empty() || !found.empty()) {
        out.write("<groundspeak:logs>");
        writeLog(out, "Publish Listing", placed);
        writeLog(out, "Found it", found);
        out.write("</groundspeak:logs>");
    }
    out.write("</groundspeak:cache>");
}

std::string dateTimeOf(std::string_view dayMonthYear)
{
    const auto time = gps::NMEAUtils::convertNMEADate(dayMonthYear, "000000");
    if (time == 0) // not a date: receivers keep whatever text somebody entered
        return std::string{dayMonthYear};
    std::string dateTime;
    appendTimestamp(dateTime, time, 'T');
    return dateTime + 'Z';
}

std::string dayOf(std::string_view dayMonthYear)
{
    auto day = dateTimeOf(dayMonthYear);
    if (day != dayMonthYear)
        day.resize(std::string_view{"2008-05-14"}.size());
    return day;
}

} // namespace host
