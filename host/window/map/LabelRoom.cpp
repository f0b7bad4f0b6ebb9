// SPDX-License-Identifier: MIT
// A few hundred boxes: each is compared with all others.

#include "host/window/map/LabelRoom.h"

#include <algorithm>
#include <array>

namespace host {

std::optional<PicturePoint> LabelRoom::place(const PicturePoint& point, double radius, double width,
                                             double height)
{
    if (isFull())
        return std::nullopt;
    constexpr double kNameGap = 3;
    const double beside = radius + kNameGap;
    const double middle = point.y - height / 2;
    const std::array places{LabelBox{point.x + beside, middle, width, height},
                            LabelBox{point.x - beside - width, middle, width, height},
                            LabelBox{point.x - width / 2, point.y - radius - height, width, height},
                            LabelBox{point.x - width / 2, point.y + radius, width, height}};
    const auto* const found = std::find_if(places.begin(), places.end(),
                                           [this](const LabelBox& box) { return isFree(box); });
    if (found == places.end())
        return std::nullopt;
    occupy(*found);
    ++placed_;
    return PicturePoint{found->left, found->top};
}

bool LabelRoom::isFree(const LabelBox& box) const
{
    const bool isInside = box.left >= whole_.left && box.top >= whole_.top &&
                          box.left + box.width <= whole_.left + whole_.width &&
                          box.top + box.height <= whole_.top + whole_.height;
    return isInside && std::none_of(taken_.begin(), taken_.end(),
                                    [&box](const LabelBox& other) { return box.overlaps(other); });
}

} // namespace host
