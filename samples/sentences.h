// SPDX-License-Identifier: MIT
// The lines of sample files: sentences made of a region's places. Stateless.

#pragma once

#include "places.h"

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace samples {

using Lines = std::vector<std::string>;

inline constexpr double kMetresPerDegree = 111195; // of latitude, on a sphere of 6371 km

/// A place in a region: metres east and north of its origin, metres high.
struct Place {
    double east;
    double north;
    double altitude;
};

/// A body with its frame and checksum.
[[nodiscard]] std::string sentence(std::string_view body);

/// ",DDMM.mmmmm,N,DDDMM.mmmmm,E"
[[nodiscard]] std::string positionFields(const Region& region, const Place& place);

/// A whole number in at least `width` characters.
[[nodiscard]] std::string padded(double value, int width);

/// Each field with a comma before it.
[[nodiscard]] std::string joined(std::initializer_list<std::string_view> fields);

[[nodiscard]] Lines wayPoints(const Region& region, std::span<const Stop> stops);
[[nodiscard]] Lines geocaches(const Region& region);

struct Route {
    std::string_view name;
    std::string_view comment; ///< empty: no message sentence
    int number;
    std::vector<std::size_t> stops; ///< indices into the region's
    bool messageFirst = false;      ///< last otherwise
};

[[nodiscard]] Lines routeSentences(const Region& region, const Route& route);

} // namespace samples
