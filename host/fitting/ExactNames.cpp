// SPDX-License-Identifier: MIT
// The receiver is read only if a name could clash with one of its own: hardly any does.

#include "host/fitting/ExactNames.h"

#include "host/base/RecordText.h"
#include "host/base/Text.h"
#include "host/fitting/PlainTextConverter.h"

#include <gps/Geocache.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace host {
namespace {

// What is left of a text on the receiver, and what is not.
PlainText storedText(std::string_view text, const gps::CharacterSet& characters)
{
    PlainText stored;
    while (!text.empty()) {
        const char32_t c = takeCharacter(text);
        const bool isStored = c < 0x80 && characters.contains(static_cast<char>(c));
        appendCharacter(isStored ? stored.text : stored.dropped, c);
    }
    return stored;
}

// Records among which names must differ.
class NameClaims {
public:
    // What the receiver stores of a record.
    using Stored = std::function<StoredRecord(const gps::Dictionary& record)>;

    NameClaims(std::string_view noun, std::size_t longest, Stored stored)
        : noun_(noun), longest_(longest), stored_(std::move(stored))
    {}

    // Gives a record its name on the receiver and claims that.
    void store(gps::Dictionary& record, const TextRules& rules, ExactNames& result)
    {
        std::string before{textIn(record, "name")};
        auto stored = storedText(before, rules.characters);
        if (stored.text.size() > longest_)
            stored.text.resize(longest_);
        const bool isChanged = stored.text != before;
        if (isChanged) {
            result.changes.push_back(
                {noun_, "name", before, stored.text, std::move(stored.dropped)});
            record.set("name", stored.text);
        }
        if (stored.text.find_first_not_of(' ') == std::string::npos)
            return note(result, nameless(before), "Give it a name");
        const auto [claim, isNew] =
            claims_.try_emplace(std::move(stored.text), Claim{before, &record, isChanged});
        claim->second.isChanged = claim->second.isChanged || isChanged;
        if (!isNew && isConflict(claim->first) && !isSame(claim->second, before, record))
            note(result, bothStored(claim->second.before, before, claim->first),
                 "Give them different names");
    }

    // Whether what the receiver holds matters.
    [[nodiscard]] bool needsDevice() const
    {
        return std::any_of(claims_.begin(), claims_.end(),
                           [this](const auto& claim) { return mustDiffer(claim); });
    }

    void compare(const gps::Dictionary& onDevice, ExactNames& result) const
    {
        const auto claim = claims_.find(std::string{textIn(onDevice, "name")});
        if (claim == claims_.end() || !mustDiffer(*claim) ||
            areSame(*claim->second.record, onDevice))
            return;
        note(result,
             fmt::format("The {} \"{}\" would be stored as \"{}\", and the device holds "
                         "another one of this name",
                         noun_, displayText(claim->second.before), claim->first),
             "Give it another name");
    }

    // The driver gives points of routes a number: "Name 1".
    void allowNumbers() { allowsNumbers_ = true; }

private:
    struct Claim {
        std::string before;
        const gps::Dictionary* record;
        bool isChanged;
    };

    [[nodiscard]] bool isConflict(const std::string& name) const
    {
        constexpr std::size_t kNumber = sizeof " 1" - 1;
        return !allowsNumbers_ || name.size() + kNumber > longest_;
    }

    [[nodiscard]] bool mustDiffer(const std::pair<const std::string, Claim>& claim) const
    {
        return allowsNumbers_ ? isConflict(claim.first) : claim.second.isChanged;
    }

    [[nodiscard]] bool isSame(const Claim& claim, const std::string& before,
                              const gps::Dictionary& record) const
    {
        return claim.before == before && areSame(*claim.record, record);
    }

    [[nodiscard]] bool areSame(const gps::Dictionary& a, const gps::Dictionary& b) const
    {
        return stored_(a).isSame(stored_(b));
    }

    [[nodiscard]] std::string nameless(const std::string& before) const
    {
        return before.empty()
                   ? fmt::format("A {} has no name", noun_)
                   : fmt::format("The device can store no character of the name \"{}\" of a {}",
                                 displayText(before), noun_);
    }

    [[nodiscard]] std::string bothStored(const std::string& first, const std::string& second,
                                         const std::string& stored) const
    {
        if (first == second)
            return fmt::format("Two different {}s have the name \"{}\"", noun_, displayText(first));
        return fmt::format(R"(The {}s "{}" and "{}" would both be stored as "{}")", noun_,
                           displayText(first), displayText(second), stored);
    }

    static void note(ExactNames& result, std::string what, std::string_view advice)
    {
        result.conflicts.push_back({std::move(what), fmt::format("{} in the file", advice)});
    }

    std::string_view noun_;
    std::size_t longest_;
    Stored stored_;
    bool allowsNumbers_ = false;
    std::unordered_map<std::string, Claim> claims_; // by the name on the receiver
};

void storeTexts(gps::Dictionary& record, std::string_view noun, const TextRules& rules,
                std::vector<TextChange>& changes)
{
    for (const auto key : gps::kGeocacheKeys) {
        const auto* const text = record.findString(key);
        if (text == nullptr || key == "name")
            continue;
        auto stored = storedText(*text, rules.characters);
        if (stored.dropped.empty())
            continue;
        changes.push_back({noun, key, *text, stored.text, std::move(stored.dropped)});
        record.set(key, std::move(stored.text));
    }
}

// The claims of all records of a send.
class ExactRecords {
public:
    explicit ExactRecords(const TextRules& rules)
        : rules_(rules), waypoints_("waypoint", rules.longestName, storedWaypoints(rules)),
          routes_("route", rules.longestName,
                  [&rules](const gps::Dictionary& record) {
                      return storedRoute(record, rules.symbolCode);
                  }),
          points_("route point", rules.longestName, storedWaypoints(rules))
    {
        points_.allowNumbers();
    }

    void store(gps::Dictionary& data)
    {
        forEachRecord(data, "waypoint", [this](gps::Dictionary& record) {
            const bool isGeocache = gps::isGeocache(record);
            storeTexts(record, isGeocache ? "geocache" : "waypoint", rules_, result_.changes);
            (isGeocache ? geocaches_ : waypoints_).store(record, rules_, result_);
        });
        forEachRecord(data, "route", [this](gps::Dictionary& route) {
            storeTexts(route, "route", rules_, result_.changes);
            forEachRecord(route, "points", [this](gps::Dictionary& point) {
                storeTexts(point, "route point", rules_, result_.changes);
                points_.store(point, rules_, result_);
            });
            routes_.store(route, rules_, result_);
        });
    }

    void compare(const RecordSource& onDevice)
    {
        if (!waypoints_.needsDevice() && !geocaches_.needsDevice() && !routes_.needsDevice() &&
            !points_.needsDevice())
            return;
        onDevice([this](std::string_view key, const gps::Dictionary& record) {
            if (key == kRoutePointKey)
                return points_.compare(record, result_);
            if (key == "waypoint")
                return (gps::isGeocache(record) ? geocaches_ : waypoints_).compare(record, result_);
            routes_.compare(record, result_);
            forEachRecord(record, "points", [this](const gps::Dictionary& point) {
                points_.compare(point, result_);
            });
        });
    }

    [[nodiscard]] ExactNames takeResult() { return std::move(result_); }

private:
    static NameClaims::Stored storedWaypoints(const TextRules& rules)
    {
        return [&rules](const gps::Dictionary& record) {
            return storedWaypoint(record, rules.symbolCode);
        };
    }

    const TextRules& rules_;
    ExactNames result_;
    NameClaims waypoints_;
    NameClaims geocaches_{"geocache", std::numeric_limits<std::size_t>::max(), storedGeocache};
    NameClaims routes_;
    NameClaims points_;
};

} // namespace

ExactNames storeExactNames(gps::Dictionary& data, const RecordSource& onDevice,
                           const TextRules& rules)
{
    ExactRecords records{rules};
    records.store(data);
    records.compare(onDevice);
    return records.takeResult();
}

} // namespace host
