// SPDX-License-Identifier: MIT
// FreeNames: hands out short names that differ from one another and from those on the receiver.
// Used by NameFitting. One thread at a time.

#pragma once

#include <gps/GPSPoint.h>

#include <cstddef>
#include <cstdint>
#include <queue>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace host {

/// A name that is already in use gets a number: "Long name 2". If the receiver holds such a name at
/// the same position, it comes from an earlier send of the same thing, which gets its name again.
/// All names together take time linear in their number, however many are equal.
class FreeNames {
public:
    /// @param longest  the most bytes that a name may have
    explicit FreeNames(std::size_t longest) : longest_(longest) {}

    /// Adds a name that the receiver holds, and where.
    void addOnDevice(const std::string& name, const gps::GPSPoint& point);

    /// Claims exactly this name, whether or not the receiver holds it.
    /// @return  false if the name was claimed before
    bool claim(const std::string& name) { return claimed_.insert(name).second; }

    /// Claims a free name that begins as `wanted` does. The result may already be in use only if
    /// the length limit leaves no room for a number. Precondition: `wanted` is ASCII, not empty,
    /// and does not begin with a space.
    [[nodiscard]] std::string claimLike(std::string_view wanted, const gps::GPSPoint& point);

private:
    /// The receiver's names at one position, by their stem and the length of their number.
    using NamesByStem = std::unordered_map<std::string, std::queue<std::string>>;

    [[nodiscard]] bool isFree(const std::string& name) const
    {
        return !claimed_.contains(name) && !onDevice_.contains(name);
    }
    [[nodiscard]] std::string claimSentBefore(std::string_view wanted, const gps::GPSPoint& point);
    [[nodiscard]] std::string claimOneOf(NamesByStem& names, std::string_view wanted);
    [[nodiscard]] std::string numbered(std::string_view wanted);
    [[nodiscard]] std::string stemOf(std::string_view wanted, std::size_t digits) const;

    std::size_t longest_;
    std::unordered_set<std::string> claimed_;
    std::unordered_set<std::string> onDevice_;
    std::unordered_map<std::int64_t, NamesByStem> namesAt_;     // by the key of a DevicePosition
    std::unordered_map<std::string, std::uint64_t> nextNumber_; // by stem and length of the number
};

} // namespace host
