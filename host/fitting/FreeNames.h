// SPDX-License-Identifier: MIT
// FreeNames: short names that differ from one another and from those that a device holds. One
// thread at a time.

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

/// A name that is taken gets a number, "Long name 2". What a device already holds at the same place
/// under such a name is taken for an earlier sending of the same thing, which gets its name again.
/// The time for all names together is linear in their number, however many are equal.
class FreeNames {
public:
    /// @param longest  the most bytes that a name may have
    explicit FreeNames(std::size_t longest) : longest_(longest) {}

    void addOnDevice(const std::string& name, const gps::GPSPoint& place);

    /// Takes exactly this name, whether the device holds it or not. @return  false if it is taken
    /// already
    bool take(const std::string& name) { return taken_.insert(name).second; }

    /// Finds a free name that begins as `wanted` does, and takes it. Only with a limit that leaves
    /// no room for a number may the name be one that is taken. Precondition: the name wanted is
    /// ASCII, and neither empty nor begins with a space.
    [[nodiscard]] std::string find(std::string_view wanted, const gps::GPSPoint& place);

private:
    [[nodiscard]] bool isFree(const std::string& name) const
    {
        return !taken_.contains(name) && !onDevice_.contains(name);
    }
    [[nodiscard]] std::string sentBefore(std::string_view wanted, const gps::GPSPoint& place);
    [[nodiscard]] std::string numbered(std::string_view wanted);
    [[nodiscard]] std::string front(std::string_view wanted, std::size_t digits) const;

    std::size_t longest_;
    std::unordered_set<std::string> taken_;
    std::unordered_set<std::string> onDevice_;
    std::unordered_map<std::string, std::queue<std::string>>
        atPlaces_;                                        // names by front, digits and place
    std::unordered_map<std::string, std::uint64_t> next_; // numbers by front and digits
};

} // namespace host
