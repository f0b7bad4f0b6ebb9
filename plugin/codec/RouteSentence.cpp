// SPDX-License-Identifier: MIT
// Routes. A list sentence has any number of fields, so its waypoints are read one by one from the
// rest of the body instead of by index.

#include "RouteSentence.h"

#include "FieldText.h"
#include "SentenceFields.h"
#include "SymbolMap.h"

#include <gps/DictionaryHelpers.h>
#include <gps/NumberText.h>
#include <platform/GPSUtilities/NMEAUtils.h>
#include <platform/System/Log.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace magellan {
namespace {

namespace NMEAUtils = gps::NMEAUtils;

// Field indices:
//   0       1     2      3 4      5    6     7    8     9
//   PMGNRTE,TOTAL,NUMBER,c,ROUTE#,NAME,POINT,ICON,POINT,ICON    list: any number of pairs
//   PMGNRTE,TOTAL,NUMBER,m,ROUTE#,NAME,COMMENT                  message
enum Field : std::size_t {
    kTotal = 1, // of the route's sentences
    kNumber,    // of this sentence, from 1
    kLetter,
    kRouteNumber,
    kName,
    kFirstPoint,
    kComment = kFirstPoint,
};

constexpr char kList = 'c';
constexpr char kMessage = 'm';
constexpr std::size_t kPointsPerSentence = 2;

/// Removes the first field and its separator from `rest` and returns the field.
std::string_view takeField(std::string_view& rest) noexcept
{
    const auto field = rest.substr(0, rest.find(','));
    rest.remove_prefix(std::min(rest.size(), field.size() + 1));
    return field;
}

void logGap(std::int32_t last, std::int32_t expected)
{
    gps::logLine("route index should have been " + std::to_string(last) + ", was " +
                 std::to_string(expected) + " instead");
}

/// The fields that all sentences of a route begin with.
std::string headOf(std::size_t total, std::size_t number, char letter, std::int32_t routeNumber,
                   std::string_view name)
{
    std::string head{kRouteSentence};
    head.append(1, ',').append(std::to_string(total));
    head.append(1, ',').append(std::to_string(number));
    head.append(1, ',').append(1, letter);
    head.append(1, ',').append(std::to_string(routeNumber));
    head.append(1, ',').append(name);
    return head;
}

/// The icon of a route point; never empty.
std::string_view iconOf(const gps::Dictionary& record)
{
    const auto icon = SymbolMap::shared().magellanIconFromSymbolString(record.findString("symbol"));
    return icon.empty() ? std::string_view{kMagellanSymbol_crossed_box} : icon;
}

} // namespace

bool interpretRouteSentence(std::string_view sentence, gps::Array& points,
                            const gps::Dictionary& waypoints, gps::Dictionary& info)
{
    const auto fields = SentenceFields::ofSentence(sentence, kRouteSentence);
    if (!fields)
        return false;
    const bool isLast = readRouteInfo(*fields, info);
    (void)appendRoutePoints(*fields, points, waypoints);
    return isLast;
}

std::size_t appendRoutePoints(const SentenceFields& fields, gps::Array& points,
                              const gps::Dictionary& waypoints)
{
    std::size_t unknown = 0;
    RoutePointNames names{fields};
    while (const auto name = names.next()) {
        const auto* record = waypoints.find(*name);
        if (record != nullptr && record->as<gps::Dictionary>() != nullptr) {
            points.push_back(*record); // as a value, which shares it
        } else {
            logUnknownPoint(*name);
            ++unknown;
        }
    }
    return unknown;
}

RoutePosition routePosition(const SentenceFields& fields)
{
    return {gps::leadingInt32(fields.at(kTotal)), gps::leadingInt32(fields.at(kNumber)),
            fields.at(kName)};
}

bool readRouteInfo(const SentenceFields& fields, gps::Dictionary& info)
{
    // Everything that throws a RangeError comes first, so that a truncated sentence leaves the
    // route as it was.
    const std::int32_t total = gps::leadingInt32(fields.at(kTotal));
    const auto name = fields.at(kName);
    const auto letter = fields.at(kLetter);
    if (letter.empty())
        fields.throwRangeError(kLetter);
    const bool isMessage = letter.front() == kMessage;
    const auto comment = isMessage ? fields.at(kComment) : std::string_view{};

    const std::int32_t number = gps::leadingInt32(fields.at(kNumber));
    const std::int32_t last = GetIntValueForKey(&info, "lastIndex", 0);
    info.setText("name", name);
    const std::int32_t expected = gps::saturatedInt32(std::int64_t{number} - 1);
    if (last != expected)
        logGap(last, expected);
    if (isMessage)
        info.setText("comment", comment);
    info.set("lastIndex", number);
    return total == number;
}

RoutePointNames::RoutePointNames(const SentenceFields& fields)
{
    if (fields.at(kLetter).front() == kList)
        pairs_ = fields.from(kFirstPoint);
}

std::optional<std::string_view> RoutePointNames::next() noexcept
{
    while (!pairs_.empty()) {
        const auto name = takeField(pairs_);
        takeField(pairs_); // the icon is ignored: each waypoint has its own symbol
        if (!name.empty())
            return name;
    }
    return std::nullopt;
}

void logUnknownPoint(std::string_view name)
{
    gps::logLine("referencing " + std::string{name} + " waypoint that doesn't exist");
}

std::vector<std::string> makeRouteSentencesFromWaypointList(const gps::Array& list,
                                                            const gps::Dictionary& info)
{
    const std::string comment = magellanStringFromDictionary(info, "comment");
    const std::string name = magellanStringFromDictionary(info, "name", kLongestName);
    const std::int32_t routeNumber = GetIntValueForKey(&info, "number", 1);
    const std::size_t lists = (list.size() + kPointsPerSentence - 1) / kPointsPerSentence;
    const std::size_t total = lists + (comment.empty() ? 0 : 1);

    std::vector<std::string> sentences;
    sentences.reserve(total);
    std::string body;
    const gps::Dictionary empty;
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (i % kPointsPerSentence == 0)
            body = headOf(total, sentences.size() + 1, kList, routeNumber, name);
        const auto* record = list[i].as<gps::Dictionary>();
        const gps::Dictionary& point = record != nullptr ? *record : empty;
        body.append(1, ',').append(magellanStringFromDictionary(point, "name", kLongestName));
        body.append(1, ',').append(iconOf(point));
        if (i % kPointsPerSentence == kPointsPerSentence - 1 || i + 1 == list.size())
            sentences.push_back(NMEAUtils::addChecksumToNMEASentence(body));
    }
    if (!comment.empty()) {
        body = headOf(total, sentences.size() + 1, kMessage, routeNumber, name)
                   .append(1, ',')
                   .append(comment);
        sentences.push_back(NMEAUtils::addChecksumToNMEASentence(body));
    }
    return sentences;
}

} // namespace magellan
