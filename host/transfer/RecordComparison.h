// SPDX-License-Identifier: MIT
// RecordComparison: compares records by what a device stores of them. Used before a send, to
// recognise what the device holds. One thread at a time.

#pragma once

#include <gps/GPSFileDevice.h>

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace host {

/// Two records are the same if the device stores the same for both. It rounds coordinates, drops
/// times and may have one code for several symbols. Records without valid coordinates are never the
/// same.
class RecordComparison {
public:
    /// @param device  knows which symbols are the same; must outlive this object
    explicit RecordComparison(const gps::GPSFileDevice& device) : device_(device) {}

    /// Compares waypoints, or points of routes.
    [[nodiscard]] bool areSameWaypoints(const gps::Dictionary& a, const gps::Dictionary& b);

    /// Compares geocaches. Whether one was found follows from its dates.
    [[nodiscard]] static bool areSameGeocaches(const gps::Dictionary& a, const gps::Dictionary& b);

    /// Compares routes with their points. A device assigns their numbers itself.
    [[nodiscard]] bool areSameRoutes(const gps::Dictionary& a, const gps::Dictionary& b);

    /// Compares routes without the names of their points.
    [[nodiscard]] bool areSameButForPointNames(const gps::Dictionary& a, const gps::Dictionary& b);

    /// The code that the device stores for a symbol. Valid while this object exists.
    [[nodiscard]] const std::string& codeOf(std::string_view symbol);

private:
    [[nodiscard]] bool areSamePoints(const gps::Dictionary& a, const gps::Dictionary& b);
    [[nodiscard]] bool areSameSymbols(std::string_view a, std::string_view b);

    const gps::GPSFileDevice& device_;
    std::map<std::string, std::string, std::less<>> codes_; // each asked for once
};

} // namespace host
