// SPDX-License-Identifier: MIT
// The marks of a profile's axes, at round numbers in the units that a user has chosen. The page has
// the same: host/page/model/axis.js and profile.js. Stateless. [any]

#pragma once

#include "host/words/FigureText.h"

#include <string>
#include <vector>

namespace host {

struct Tick {
    double position = 0; ///< in metres, seconds or metres per second
    std::string text{};
};

/// 1, 2 or 5 times a power of ten: the smallest that is at least `least`. Forgives a rounding
/// error. Precondition: least > 0 and finite.
[[nodiscard]] double roundStep(double least);

/// The marks of an axis that begins at 0; the unit is at the first. Those near its end are left
/// out, because their texts would reach over it.
/// @param length  of the axis; above 0
/// @param most    about how many marks fit; above 0
[[nodiscard]] std::vector<Tick> distanceTicks(double length, int most, UnitSystem system);
[[nodiscard]] std::vector<Tick> timeTicks(double length, int most);

/// The marks of a scale without its unit. Precondition: low < high.
/// @param unit  metres, or metres per second, of the unit that is shown
[[nodiscard]] std::vector<Tick> valueTicks(double low, double high, double unit, int most);

} // namespace host
