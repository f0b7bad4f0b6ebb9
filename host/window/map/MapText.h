// SPDX-License-Identifier: MIT
// MapText: a name on a map, with an edge in the colour of the map. One thread at a time.

#pragma once

#include "host/window/map/MapColors.h"
#include "host/window/map/MapPicture.h"

#include <memory>
#include <string>

#include <pango/pangocairo.h>

namespace host {

class MapText {
public:
    /// @param text  never markup
    /// @param size  pixels
    MapText(cairo_t* cairo, const std::string& text, double size, bool isBold = false);

    [[nodiscard]] double width() const noexcept { return width_; }
    [[nodiscard]] double height() const noexcept { return height_; }

    /// @param corner  the upper left one
    void draw(const PicturePoint& corner, const MapColor& color) const;
    void drawWithEdge(const PicturePoint& corner, const MapColor& color,
                      const MapColor& edge) const;

private:
    cairo_t* cairo_;
    std::shared_ptr<PangoLayout> layout_;
    int width_ = 0;
    int height_ = 0;
};

} // namespace host
