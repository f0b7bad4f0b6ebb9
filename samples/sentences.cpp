// SPDX-License-Identifier: MIT
// The field orders are those of the receivers; see the codec's field rulers.

#include "sentences.h"

#include <gps/NumberText.h>
#include <platform/GPSUtilities/NMEAUtils.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace samples {

std::string sentence(std::string_view body)
{
    return gps::NMEAUtils::addChecksumToNMEASentence(body);
}

std::string positionFields(const Region& region, const Place& place)
{
    const double latitude = region.latitude + place.north / kMetresPerDegree;
    const double shrink = std::cos(region.latitude * std::numbers::pi / 180);
    const double longitude = region.longitude + place.east / (kMetresPerDegree * shrink);
    std::string fields;
    for (const auto& text :
         {gps::NMEAUtils::convertDegreesToNMEADegreesMinutes(latitude, true).value(),
          gps::NMEAUtils::convertDegreesToNMEADegreesMinutes(longitude, false).value()})
        fields += "," + text.degreesMinutes + "," + text.direction;
    return fields;
}

std::string padded(double value, int width)
{
    std::string text;
    gps::appendPadded(text, gps::saturatedInt32(value), width);
    return text;
}

std::string joined(std::initializer_list<std::string_view> fields)
{
    std::string text;
    for (const auto field : fields)
        text.append(",").append(field);
    return text;
}

static std::string wayPoint(const Region& region, const Stop& stop)
{
    return sentence("PMGNWPL" + positionFields(region, {stop.east, stop.north, stop.altitude}) +
                    joined({padded(stop.altitude, 7), "M", stop.name, stop.comment, stop.icon}));
}

Lines wayPoints(const Region& region, std::span<const Stop> stops)
{
    Lines lines;
    for (const auto& stop : stops)
        lines.push_back(wayPoint(region, stop));
    return lines;
}

Lines geocaches(const Region& region)
{
    Lines lines;
    for (const auto& cache : region.caches)
        lines.push_back(sentence("PMGNGEO" +
                                 positionFields(region, {cache.east, cache.north, cache.altitude}) +
                                 joined({padded(cache.altitude, 7), "M", cache.name, cache.comment,
                                         cache.owner, cache.hint, cache.type, cache.placed,
                                         cache.found, cache.difficulty, cache.terrain})));
    return lines;
}

Lines routeSentences(const Region& region, const Route& route)
{
    const std::size_t lists = (route.stops.size() + 1) / 2;
    const std::size_t total = lists + (route.comment.empty() ? 0 : 1);
    Lines lines;
    const auto head = [&](std::string_view kind) {
        return "PMGNRTE" + joined({std::to_string(total), std::to_string(lines.size() + 1), kind,
                                   std::to_string(route.number), route.name});
    };
    const auto addMessage = [&] { lines.push_back(sentence(head("m") + joined({route.comment}))); };

    if (route.messageFirst)
        addMessage();
    for (std::size_t i = 0; i < route.stops.size(); i += 2) {
        std::string body = head("c");
        for (std::size_t k = i; k < std::min(i + 2, route.stops.size()); ++k) {
            const auto& stop = region.stops.at(route.stops[k]);
            body += joined({stop.name, stop.icon});
        }
        lines.push_back(sentence(body));
    }
    if (!route.messageFirst && !route.comment.empty())
        addMessage();
    return lines;
}

} // namespace samples
