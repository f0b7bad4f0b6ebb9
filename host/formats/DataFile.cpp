// SPDX-License-Identifier: MIT
// The JSON reader knows no points: they arrive as objects under "point" at any depth (a route has
// records under "points") and are boxed afterwards.

#include "host/formats/DataFile.h"

#include "host/base/HostError.h"
#include "host/base/JsonText.h"
#include "host/base/Text.h"
#include "host/base/XmlText.h"
#include "host/formats/DataCheck.h"

#include <gps/Characters.h>
#include <platform/System/FileManager.h>

#include <fmt/format.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace host {
namespace {

constexpr std::size_t kLargestDataFile = std::size_t{1} << 30; // bytes

gps::Number numberIn(const gps::Dictionary& object, std::string_view key)
{
    const auto* const value = object.find(key);
    const auto* const number = value != nullptr ? value->as<gps::Number>() : nullptr;
    return number != nullptr ? *number : gps::Number{0};
}

gps::GPSPoint pointFrom(const gps::Dictionary& object)
{
    return {.latitude = numberIn(object, "latitude").doubleValue(),
            .longitude = numberIn(object, "longitude").doubleValue(),
            .altitude = numberIn(object, "altitude").doubleValue(),
            .time = numberIn(object, "time").int64Value(),
            .reserved = numberIn(object, "reserved").int64Value()};
}

void boxPoints(gps::Dictionary& dictionary);

// The recursion is bounded, because readJsonObject() rejects deeply nested text.
void boxPoints(gps::Value& value)
{
    if (auto* const dictionary = value.as<gps::Dictionary>())
        boxPoints(*dictionary);
    if (auto* const array = value.as<gps::Array>()) {
        for (auto& element : *array)
            boxPoints(element);
    }
}

void boxPoints(gps::Dictionary& dictionary)
{
    // A dictionary's iterators are read-only, so each value is looked up again by its key.
    std::vector<std::string> keys;
    for (const auto& entry : dictionary)
        keys.push_back(entry.key);
    for (const auto& key : keys) {
        auto& value = *dictionary.find(key);
        if (const auto* const object = value.as<gps::Dictionary>();
            object != nullptr && key == gps::kPointKey)
            dictionary.set(key, pointFrom(*object));
        else
            boxPoints(value);
    }
}

// Why a text is not a data dictionary. A second and a third parse find the line of a mistake; for
// valid JSON of another kind they find none.
gps::Error unreadableData(const std::string& text, const std::string& path)
{
    if (gps::trimmed(text).starts_with('<'))
        return hostError("The data file is not JSON, but looks like XML",
                         "A GPX file is sent without --data", path);
    if (const auto offset = jsonErrorOffset(text))
        return hostError(
            fmt::format("The data file is damaged or cut short: line {} is not valid JSON, or has "
                        "a number out of range",
                        lineAt(text, *offset)),
            "Check that line", path);
    if (const auto repeated = repeatedJsonKey(text))
        return hostError(
            fmt::format(R"(The data file has the key "{}" twice in one object: again in line {})",
                        displayText(repeated->key), lineAt(text, repeated->offset)),
            "Remove one of them", path);
    return hostError("The data file is not a JSON object, or it is nested deeper than 64 levels",
                     R"(Write an object with "waypoint", "route" and "track", or null)", path);
}

} // namespace

std::optional<gps::Error> readDataFile(const std::string& path,
                                       std::optional<gps::Dictionary>& data,
                                       std::vector<std::string>& remarks)
{
    std::string text;
    if (auto failure = gps::FileManager{}.readFile(path, text, kLargestDataFile))
        return failure;
    if (gps::trimmed(text) == "null") {
        data.reset();
        return std::nullopt;
    }
    auto read = readJsonObject(text);
    if (!read)
        return unreadableData(text, path);
    std::vector<std::string> found;
    if (const auto fault = findDataFault(*read, found))
        return hostError(fault->description, fault->advice, path);
    for (const auto& remark : found)
        remarks.push_back(fmt::format("{}: {}", path.substr(path.find_last_of('/') + 1), remark));
    boxPoints(*read);
    data = std::move(read);
    return std::nullopt;
}

} // namespace host
