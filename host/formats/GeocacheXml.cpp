// SPDX-License-Identifier: MIT
// The schema has no dates of its own for "placed" and "found": both become log entries, as the
// listing sites write them.

#include "host/formats/GeocacheXml.h"

#include "host/base/RecordText.h"
#include "host/base/XmlText.h"
#include "host/points/Points.h"

#include <gps/Value.h>
#include <platform/GPSUtilities/NMEAUtils.h>

#include <initializer_list>

namespace host {
namespace {

struct Child {
    std::string_view element;
    std::string_view key;
};

void appendElement(std::string& out, std::string_view element, std::string_view text)
{
    out.append("<groundspeak:").append(element).append(1, '>');
    appendXml(out, text);
    out.append("</groundspeak:").append(element).append(1, '>');
}

void appendChildren(std::string& out, const gps::Dictionary& record,
                    std::initializer_list<Child> children)
{
    for (const auto& [element, key] : children) {
        if (const auto text = textIn(record, key); !text.empty())
            appendElement(out, element, text);
    }
}

void appendLog(std::string& logs, std::string_view type, std::string_view date)
{
    if (date.empty())
        return;
    logs += "<groundspeak:log>";
    appendElement(logs, "date", dateTimeOf(date));
    appendElement(logs, "type", type);
    logs += "</groundspeak:log>";
}

} // namespace

void appendGeocache(std::string& out, const gps::Dictionary& record)
{
    out += R"(<groundspeak:cache xmlns:groundspeak="http://www.groundspeak.com/cache/1/0">)";
    // Elements follow the order of the schema, and so must any new one.
    appendChildren(out, record,
                   {{"name", "name"},
                    {"owner", "geocacheOwner"},
                    {"type", "geocacheType"},
                    {"difficulty", "difficulty"},
                    {"terrain", "terrain"},
                    {"encoded_hints", "geocacheHint"}});
    std::string logs;
    appendLog(logs, "Publish Listing", textIn(record, "datePlaced"));
    appendLog(logs, "Found it", textIn(record, "dateFound"));
    if (!logs.empty())
        out.append("<groundspeak:logs>").append(logs).append("</groundspeak:logs>");
    out += "</groundspeak:cache>";
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

} // namespace host
