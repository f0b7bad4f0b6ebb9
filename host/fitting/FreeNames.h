// SPDX-License-Identifier: MIT
// FreeNames: hands out short names that differ from one another and from those on the receiver.
// Used by NameFitting. One thread at a time.

#pragma once

#include "host/fitting/StoredRecord.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <list>
#include <queue>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace host {

/// A name that is already in use gets a number: "Long name 2". If the receiver holds such a name
/// for what it would store of the same record, the name comes from an earlier send of that record,
/// which gets it again. No other record does.
/// All names together take time linear in their number, however many are equal.
class FreeNames {
public:
    /// @param longest  the most bytes that a name may have
    explicit FreeNames(std::size_t longest) : longest_(longest) {}
    FreeNames(FreeNames&&) noexcept = default; // a copy would point into the original

    /// Makes room for the names of so many records.
    void reserve(std::size_t records) { names_.reserve(records); }

    /// Whether a route point can have a name of the receiver.
    using PointRule = std::function<bool(const std::string& name)>;

    /// Adds the name of a record that the receiver holds. A record to send with this name replaces
    /// it, so the name is handed out again only for the same record. Has no effect on a name that
    /// was claimed. Precondition: no name was handed out.
    void addOnDevice(const std::string& name, const StoredRecord& record);

    /// Does the same for a point of the receiver's routes, which no record replaces.
    void addPointOnDevice(const std::string& name, const StoredRecord& point);

    /// Claims exactly this name, whether or not the receiver holds it.
    /// @return  false if the name was claimed before
    bool claim(const std::string& name) { return !std::exchange(names_[name].isClaimed, true); }

    /// Claims a free name that begins as `wanted` does. The result may already be in use only if
    /// the length limit leaves no room for a number. Precondition: `wanted` is ASCII, not empty,
    /// and does not begin with a space.
    [[nodiscard]] std::string claimLike(std::string_view wanted, const StoredRecord& record);

    /// Does the same for a route point.
    [[nodiscard]] std::string claimPointLike(std::string_view wanted, const StoredRecord& point,
                                             const PointRule& isUsable);

private:
    static constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

    /// Small, because there are as many as records to send.
    struct Name {
        bool isClaimed = false;
        bool isAmbiguous = false;        ///< whether records have it that differ from the first
        std::uint32_t firstHeld = kNone; ///< the first record of the receiver that has it, in held_
    };
    using Names = std::unordered_map<std::string, Name>;

    /// A name of the receiver with one of the things that have it.
    struct HeldName {
        const Names::value_type* name; ///< in names_
        StoredRecord held;
        bool isRecord; ///< or a route point
    };

    /// What the names of the same thing at one position have in common that differ only in their
    /// numbers.
    struct Stem {
        std::int64_t position; ///< the key of a DevicePosition
        std::size_t details;   ///< as in StoredRecord
        std::string_view text;
        std::size_t digits; ///< the length of the number; 0: `text` is the whole name

        bool operator==(const Stem&) const noexcept = default;
    };
    struct StemHash {
        std::size_t operator()(const Stem& stem) const noexcept;
    };
    /// Lists, since most hold one name, of which there may be millions.
    using NameQueue = std::queue<const std::string*, std::list<const std::string*>>;

    /// Names of the receiver by what has them. Filled on the first look-up: most sends make none.
    struct Index {
        std::size_t size = 0; ///< how many of held_ are in it, or cannot be used
        std::unordered_set<std::int64_t> positions{};
        std::unordered_map<Stem, NameQueue, StemHash> names{};
    };

    [[nodiscard]] bool isFree(const std::string& name) const { return !names_.contains(name); }
    [[nodiscard]] static bool isForRecords(const HeldName& held) noexcept;
    [[nodiscard]] std::string claimSentBefore(Index& index, std::string_view wanted,
                                              const StoredRecord& record,
                                              const PointRule* isUsable);
    [[nodiscard]] std::string claimAt(Index& index, std::int64_t position, std::string_view wanted,
                                      std::size_t details, const PointRule* isUsable);
    void fill(Index& index, bool isForPoints);
    [[nodiscard]] std::string claimNew(std::string_view wanted);
    [[nodiscard]] std::string numbered(std::string_view wanted);
    [[nodiscard]] std::string stemOf(std::string_view wanted, std::size_t digits) const;

    std::size_t longest_;
    Names names_;
    std::vector<HeldName> held_;
    Index forRecords_;
    Index forPoints_;
    std::unordered_map<std::string, std::uint64_t> nextNumber_; // by stem and length of the number
};

} // namespace host
