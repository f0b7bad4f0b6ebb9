// SPDX-License-Identifier: MIT
// PointIcons: draws waypoints, geocaches and groups of them: a disc with the picture of the symbol,
// a diamond, with a tick if the geocache was found, and a disc with a number. One thread at a time.

#pragma once

#include "host/window/map/MapColors.h"
#include "host/window/map/MapPicture.h"
#include "host/window/map/MapRecords.h"

#include <cstddef>
#include <map>
#include <memory>
#include <string_view>
#include <tuple>

#include <cairo.h>

namespace host {

class PointIcons {
public:
    static constexpr double kRadius = 10; ///< pixels

    /// The radius of a group: its number has to fit in.
    [[nodiscard]] static double radiusOf(std::size_t count);

    void draw(cairo_t* cairo, const MapView& view, const MapRecords::Point& point,
              const PicturePoint& center, bool isSelected);
    void drawGroup(cairo_t* cairo, const MapView& view, std::size_t count,
                   const PicturePoint& center) const;

private:
    using Key = std::tuple<std::string_view, int, bool>; // path, density, dark
    using Picture = std::shared_ptr<cairo_surface_t>;

    [[nodiscard]] const Picture& pictureOf(std::string_view path, const MapView& view);

    std::map<Key, Picture> pictures_; // drawn once each
};

} // namespace host
