// SPDX-License-Identifier: MIT
// LineColor: how tracks and routes are told apart, on the map and beside it. Stateless. [any]

#pragma once

#include <array>
#include <cstddef>

namespace host {

struct LineColor {
    double red;
    double green;
    double blue;
};

/// The colour of a line, counted through tracks and then routes.
/// Source: told apart by those who see no difference between red and green: the palette of M. Okabe
/// and K. Ito, "Color Universal Design", 2008.
[[nodiscard]] constexpr LineColor lineColor(std::size_t index) noexcept
{
    constexpr std::array kColors{LineColor{0.835, 0.369, 0}, LineColor{0, 0.447, 0.698},
                                 LineColor{0, 0.62, 0.451},  LineColor{0.8, 0.475, 0.655},
                                 LineColor{0.902, 0.624, 0}, LineColor{0.337, 0.706, 0.914}};
    return kColors[index % kColors.size()];
}

} // namespace host
