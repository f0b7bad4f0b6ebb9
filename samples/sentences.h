// SPDX-License-Identifier: MIT
// Makes the lines of the sample files from a region's places. Stateless.

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

/// A position in a region: metres east and north of its origin, and altitude in metres.
struct Place {
    double east;
    double north;
    double altitude;
};

/// Adds the frame and the checksum to a body.
[[nodiscard]] std::string sentence(std::string_view body);

/// ",DDMM.mmmmm,N,DDDMM.mmmmm,E"
[[nodiscard]] std::string positionFields(const Region& region, const Place& place);

/// A whole number in at least `width` characters.
[[nodiscard]] std::string padded(double value, int width);

/// Joins the fields, with a comma before each.
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
