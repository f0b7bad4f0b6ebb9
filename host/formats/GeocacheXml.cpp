// SPDX-License-Identifier: MIT

#include "host/formats/GeocacheXml.h"

#include "host/base/XmlText.h"
#include "host/points/Points.h"

#include <gps/NumberText.h>
#include <gps/Value.h>

#include <algorithm>
#include <chrono>
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

std::string_view textUnder(const gps::Dictionary& record, std::string_view key)
{
    const auto* text = record.findString(key);
    return text != nullptr ? std::string_view{*text} : std::string_view{};
}

void appendChildren(std::string& out, const gps::Dictionary& record,
                    std::initializer_list<Child> children)
{
    for (const auto& [element, key] : children) {
        if (const auto text = textUnder(record, key); !text.empty())
            appendElement(out, element, text);
    }
}

// A date is a log entry: the form has no other place for it.
void appendLog(std::string& logs, std::string_view type, std::string_view date)
{
    if (date.empty())
        return;
    logs += "<groundspeak:log>";
    appendElement(logs, "date", dateTimeOf(date));
    appendElement(logs, "type", type);
    logs += "</groundspeak:log>";
}

int twoDigits(std::string_view text, std::size_t at)
{
    return (text[at] - '0') * 10 + (text[at + 1] - '0');
}

} // namespace

void appendGeocache(std::string& out, const gps::Dictionary& record)
{
    out += R"(<groundspeak:cache xmlns:groundspeak="http://www.groundspeak.com/cache/1/0">)";
    appendChildren(out, record,
                   {{"name", "name"},
                    {"owner", "geocacheOwner"},
                    {"type", "geocacheType"},
                    {"difficulty", "difficulty"},
                    {"terrain", "terrain"},
                    {"encoded_hints", "geocacheHint"}});
    std::string logs;
    appendLog(logs, "Publish Listing", textUnder(record, "datePlaced"));
    appendLog(logs, "Found it", textUnder(record, "dateFound"));
    if (!logs.empty())
        out.append("<groundspeak:logs>").append(logs).append("</groundspeak:logs>");
    out += "</groundspeak:cache>";
}

std::string dateTimeOf(std::string_view dayMonthYear)
{
    using namespace std::chrono;
    if (dayMonthYear.size() != 6 ||
        !std::all_of(dayMonthYear.begin(), dayMonthYear.end(), gps::isDigit))
        return std::string{dayMonthYear};
    const int inCentury = twoDigits(dayMonthYear, 4);
    const year_month_day date{year{inCentury + (inCentury >= 80 ? 1900 : 2000)},
                              month{static_cast<unsigned>(twoDigits(dayMonthYear, 2))},
                              day{static_cast<unsigned>(twoDigits(dayMonthYear, 0))}};
    if (!date.ok())
        return std::string{dayMonthYear};
    std::string moment;
    appendTimestamp(moment, sys_seconds{sys_days{date}}.time_since_epoch().count(), 'T');
    return moment + 'Z';
}

} // namespace host
