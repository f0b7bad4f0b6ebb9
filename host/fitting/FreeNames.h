// SPDX-License-Identifier: MIT
// FreeNames: hands out short names that differ from one another and from those on the receiver.
// Used by NameFitting. One thread at a time.

#pragma once

#include <gps/GPSPoint.h>

#include <cstddef>
#include <cstdint>
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
/// All names together take time linear in their number, however many are equal.
class FreeNames {
public:
    /// @param longest  the most bytes that a name may have
    explicit FreeNames(std::size_t longest) : longest_(longest) {}
    FreeNames(FreeNames&&) noexcept = default; // a copy would point into the original

    /// Adds a name that the receiver holds, and where. Has no effect on a name that was claimed.
    void addOnDevice(const std::string& name, const gps::GPSPoint& point);

    /// Claims exactly this name, whether or not the receiver holds it.
    /// @return  false if the name was claimed before
    bool claim(const std::string& name) { return !std::exchange(isClaimed_[name], true); }

    /// Claims a free name that begins as `wanted` does. The result may already be in use only if
    /// the length limit leaves no room for a number. Precondition: `wanted` is ASCII, not empty,
    /// and does not begin with a space.
    [[nodiscard]] std::string claimLike(std::string_view wanted, const gps::GPSPoint& point);

private:
    /// What the names at one position have in common that differ only in their numbers.
    struct Stem {
        std::int64_t position; ///< the key of a DevicePosition
        std::string_view text;
        std::size_t digits; ///< the length of the number; 0: `text` is the whole name

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
    };

    [[nodiscard]] bool isFree(const std::string& name) const { return !isClaimed_.contains(name); }
    [[nodiscard]] std::string claimSentBefore(std::string_view wanted, const gps::GPSPoint& point);
    [[nodiscard]] std::string claimAt(std::int64_t position, std::string_view wanted);
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
