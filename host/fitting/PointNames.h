// SPDX-License-Identifier: MIT
// PointNames: assigns each route point name to one point. A receiver finds the points of its routes
// by name alone, so the same name for two points would lead a route astray, and a driver would give
// one of them a numbered name, which can be another point's. Used by NameFitting. One thread at a
// time.

#pragma once

#include "host/fitting/StoredRecord.h"

#include <string>
#include <unordered_map>

namespace host {

class PointNames {
public:
    /// Adds a route point that the receiver holds. Several may have the same name, in different
    /// files. If they differ, the name belongs to none of them.
    void addOnDevice(const std::string& name, const StoredRecord& point);

    /// Whether a claim of the name would succeed.
    [[nodiscard]] bool isClaimable(const std::string& name, const StoredRecord& point) const;

    /// Assigns a name to a point, unless it belongs to a different one: to that of an earlier
    /// claim, or to one that the receiver holds.
    /// @return  whether the name now belongs to this point
    [[nodiscard]] bool claim(const std::string& name, const StoredRecord& point);

private:
    struct Held {
        StoredRecord point;
        bool isAmbiguous = false; // another point has the name, too
    };

    std::unordered_map<std::string, StoredRecord> claimed_;
    std::unordered_map<std::string, Held> onDevice_;
};

} // namespace host
