// SPDX-License-Identifier: MIT
// Records are named by their numbers from 1: "point 2 of route 1".

#include "host/formats/DataCheck.h"

#include "host/base/NearestName.h"
#include "host/base/Text.h"

#include <gps/Geocache.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

namespace host {
namespace {

constexpr std::array<std::string_view, 3> kRecordLists{"waypoint", "route", "track"};
constexpr std::array<std::string_view, 5> kPointFields{"latitude", "longitude", "altitude", "time",
                                                       "reserved"};

// Of records of any kind, and of their points.
constexpr std::array<std::string_view, 8> kOtherRecordKeys{
    "symbol", gps::kPointKey, "points", "number", "source", "segment", "trackName", "cacheID"};

bool isText(std::string_view key)
{
    return key == "symbol" || isOneOf(key, gps::kGeocacheKeys);
}

// Which record of the file a value belongs to. Its text is made for a message only: there may be
// millions of records.
struct Location {
    std::string_view noun;
    std::size_t number = 0;
    const Location* owner = nullptr; // the route or track of a point

    [[nodiscard]] std::string text() const
    {
        const auto own = fmt::format("{} {}", noun, number);
        return owner != nullptr ? own + " of " + owner->text() : own;
    }
};

// @param known  the keys that there are
DataFault unknownKey(const std::string& key, const std::string& where,
                     const std::vector<std::string>& known)
{
    const auto nearest = nearestName(key, known);
    auto advice = fmt::format("The keys are \"{}\"", joined(known, "\", \""));
    if (!nearest.empty())
        advice = fmt::format("Did you mean \"{}\"? {}", nearest, advice);
    return {fmt::format("{} has the unknown key \"{}\"", where, displayText(key)),
            std::move(advice)};
}

// The keys of records that no driver is known to read.
class UnknownKeys {
public:
    void add(const std::string& key, const Location& record)
    {
        auto& use = uses_[{std::string{record.noun}, key}];
        if (use.records++ == 0) {
            use.first = record.text();
            use.number = uses_.size();
        }
    }

    [[nodiscard]] std::vector<std::string> sentences() const
    {
        constexpr std::size_t kMostNamed = 10;
        std::vector<std::string> sentences(std::min(uses_.size(), kMostNamed));
        for (const auto& [nounAndKey, use] : uses_) {
            if (use.number <= sentences.size())
                sentences[use.number - 1] = sentence(nounAndKey.second, use);
        }
        if (const auto more = uses_.size() - sentences.size(); more > 0)
            sentences.push_back(fmt::format("And {} more unknown keys.", more));
        return sentences;
    }

private:
    struct Use {
        std::size_t number = 0; // in the order of the file
        std::size_t records = 0;
        std::string first{};
    };

    static std::string sentence(const std::string& key, const Use& use)
    {
        std::vector<std::string> known{gps::kGeocacheKeys.begin(), gps::kGeocacheKeys.end()};
        known.insert(known.end(), kOtherRecordKeys.begin(), kOtherRecordKeys.end());
        const auto others =
            use.records > 1 ? fmt::format(" and {} more have", use.records - 1) : " has";
        const auto nearest = nearestName(key, known);
        return fmt::format(R"({}{} the key "{}", which no driver is known to read.{})", use.first,
                           others, displayText(key),
                           nearest.empty() ? "" : fmt::format(R"( Did you mean "{}"?)", nearest));
    }

    std::map<std::pair<std::string, std::string>, Use> uses_; // by noun and key
};

std::optional<DataFault> faultInPoint(const gps::Value& value, const Location& record)
{
    const auto* const point = value.as<gps::Dictionary>();
    if (point == nullptr)
        return DataFault{fmt::format("The \"point\" of {} is not an object", record.text()),
                         R"(Write it as {"latitude":46.5,"longitude":7.25})"};
    for (const auto& [key, field] : *point) {
        if (!isOneOf(key, kPointFields))
            return unknownKey(key, fmt::format("The \"point\" of {}", record.text()),
                              {kPointFields.begin(), kPointFields.end()});
        if (field.as<gps::Number>() == nullptr)
            return DataFault{
                fmt::format(R"(The "{}" in the "point" of {} is not a number)", key, record.text()),
                "Write it as a number, without quotation marks"};
    }
    return std::nullopt;
}

std::optional<DataFault> faultInList(const gps::Value& value, std::string_view key,
                                     Location location, UnknownKeys& unknown);

std::optional<DataFault> faultInRecord(const gps::Value& value, const Location& where,
                                       UnknownKeys& unknown)
{
    const auto* const record = value.as<gps::Dictionary>();
    if (record == nullptr)
        return DataFault{fmt::format("The entry for {} is not an object", where.text()),
                         "Write each record as an object: {...}"};
    const bool hasPoints = where.noun == "route" || where.noun == "track";
    std::optional<DataFault> fault;
    for (const auto& [key, field] : *record) {
        if (!isText(key) && !isOneOf(key, kOtherRecordKeys))
            unknown.add(key, where);
        if (isText(key) && field.as<std::string>() == nullptr)
            return DataFault{fmt::format("The \"{}\" of {} is not a text", key, where.text()),
                             "Write it in quotation marks"};
        if (key == gps::kPointKey)
            fault = faultInPoint(field, where);
        else if (key == "points" && hasPoints)
            fault = faultInList(field, key, {.noun = "point", .owner = &where}, unknown);
        if (fault)
            break;
    }
    return fault;
}

// @param location  of the records in the list, without a number
std::optional<DataFault> faultInList(const gps::Value& value, std::string_view key,
                                     Location location, UnknownKeys& unknown)
{
    const auto* const list = value.as<gps::Array>();
    if (list == nullptr)
        return DataFault{fmt::format("The value of \"{}\"{} is not a list", key,
                                     location.owner != nullptr ? " of " + location.owner->text()
                                                               : std::string{}),
                         "Write a list of records: [{...},{...}]"};
    for (const auto& element : *list) {
        ++location.number;
        if (auto fault = faultInRecord(element, location, unknown))
            return fault;
    }
    return std::nullopt;
}

} // namespace

std::optional<DataFault> findDataFault(const gps::Dictionary& data,
                                       std::vector<std::string>& remarks)
{
    UnknownKeys unknown;
    for (const auto& [key, value] : data) {
        if (!isOneOf(key, kRecordLists))
            return unknownKey(key, "The data file", {kRecordLists.begin(), kRecordLists.end()});
        if (auto fault = faultInList(value, key, {.noun = key}, unknown))
            return fault;
    }
    remarks = unknown.sentences();
    return std::nullopt;
}

} // namespace host
