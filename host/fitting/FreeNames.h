// SPDX-License-Identifier: MIT
// FreeNames: hands out short names that differ from one another and from those on the receiver.
// Used by NameFitting. One thread at a time.

#pragma once

#include <gps/GPSPoint.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <queue>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace host {

/// A name that is already in use gets a number: "Long name 2". If the receiver holds such a name at
/// the same position, it comes from an earlier send of the same thing, which gets its name again.
/// Route points at one position can differ in their details, and have different names then.
/// All names together take time linear in their number, however many are equal.
class FreeNames {
public:
    /// @param longest  the most bytes that a name may have
    explicit FreeNames(std::size_t longest) : longest_(longest) {}
    FreeNames(FreeNames&&) noexcept = default; // a copy would point into the original

    /// Which name of the receiver a route point can have.
    struct RoutePointRule {
        std::size_t details; ///< a number that is the same for equal details
        std::function<bool(const std::string& name)> isUsable;
    };

    /// Adds a name that the receiver holds, and where. Has no effect on a name that was claimed.
    void addOnDevice(const std::string& name, const gps::GPSPoint& point);

    /// Adds the name of a route point. It is found by its details, and as any other name.
    void addOnDevice(const std::string& name, const gps::GPSPoint& point, std::size_t details);

    /// Claims exactly this name, whether or not the receiver holds it.
    /// @return  false if the name was claimed before
    bool claim(const std::string& name) { return !std::exchange(isClaimed_[name], true); }

    /// Claims a free name that begins as `wanted` does. The result may already be in use only if
    /// the length limit leaves no room for a number. Precondition: `wanted` is ASCII, not empty,
    /// and does not begin with a space.
    /// @param rule  of a route point; null for anything else
    [[nodiscard]] std::string claimLike(std::string_view wanted, const gps::GPSPoint& point,
                                        const RoutePointRule* rule = nullptr);

private:
    static constexpr std::size_t kAnyDetails = 0;

    /// What the names at one position have in common that differ only in their numbers.
    struct Stem {
        std::int64_t position; ///< the key of a DevicePosition
        std::string_view text;
        std::size_t digits; ///< the length of the number; 0: `text` is the whole name
        std::size_t details = kAnyDetails;

        bool operator==(const Stem&) const noexcept = default;
    };
    struct StemHash {
        std::size_t operator()(const Stem& stem) const noexcept;
    };
    /// Lists, since most hold one name, of which there may be millions.
    using NameQueue = std::queue<const std::string*, std::list<const std::string*>>;

    struct NameAt {
        std::int64_t position; ///< as in Stem
        const std::string* name;
        std::size_t details; ///< likewise
    };

    [[nodiscard]] bool isFree(const std::string& name) const { return !isClaimed_.contains(name); }
    void add(const std::string& name, const gps::GPSPoint& point, std::size_t details);
    [[nodiscard]] std::string claimSentBefore(std::string_view wanted, const gps::GPSPoint& point,
                                              std::size_t details, const RoutePointRule* rule);
    [[nodiscard]] std::string claimAt(std::int64_t position, std::string_view wanted,
                                      std::size_t details, const RoutePointRule* rule);
    void indexPositions();
    [[nodiscard]] std::string numbered(std::string_view wanted);
    [[nodiscard]] std::string stemOf(std::string_view wanted, std::size_t digits) const;

    std::size_t longest_;
    std::unordered_map<std::string, bool> isClaimed_; // false: only the receiver holds the name

    // The receiver's names by position, in two steps: most sends never look for one.
    std::vector<NameAt> unindexed_; // points into isClaimed_
    std::unordered_set<std::int64_t> positions_;
    std::unordered_map<Stem, NameQueue, StemHash> namesAt_;

    std::unordered_map<std::string, std::uint64_t> nextNumber_; // by stem and length of the number
};

} // namespace host
