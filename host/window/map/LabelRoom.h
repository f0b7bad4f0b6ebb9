// SPDX-License-Identifier: MIT
// LabelRoom: where on a map there is room for names. One thread at a time.

#pragma once

#include "host/window/map/MapPicture.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace host {

/// In pixels.
struct LabelBox {
    double left = 0;
    double top = 0;
    double width = 0;
    double height = 0;

    [[nodiscard]] bool overlaps(const LabelBox& other) const noexcept
    {
        return left < other.left + other.width && other.left < left + width &&
               top < other.top + other.height && other.top < top + height;
    }
};

class LabelRoom {
public:
    static constexpr std::size_t kMostLabels = 160; ///< more cannot be read

    LabelRoom(double width, double height) : whole_{0, 0, width, height} {}

    /// Keeps an area free of names.
    void occupy(const LabelBox& box) { taken_.push_back(box); }

    /// Finds room for a name beside a point: after it, before it, above or below. The room is
    /// occupied from then on.
    /// @param radius  that of the point
    /// @return        the upper left corner; nullopt if there is no room
    [[nodiscard]] std::optional<PicturePoint> place(const PicturePoint& point, double radius,
                                                    double width, double height);

    [[nodiscard]] bool isFull() const noexcept { return placed_ >= kMostLabels; }

private:
    [[nodiscard]] bool isFree(const LabelBox& box) const;

    LabelBox whole_;
    std::vector<LabelBox> taken_;
    std::size_t placed_ = 0;
};

} // namespace host
