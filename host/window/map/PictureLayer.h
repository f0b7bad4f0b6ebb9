// SPDX-License-Identifier: MIT
// PictureLayer: a layer of the map whose contents a worker paints. While the map is being moved,
// the last picture moves with it, so that no frame waits for a new one. A widget. [main loop]

#pragma once

#include "host/window/base/Background.h"
#include "host/window/map/MapPicture.h"

#include <functional>
#include <memory>
#include <optional>

#include <shumate/shumate.h>

namespace host {

class PictureLayer {
public:
    using Paint = std::function<MapPicture(const MapView& view)>; ///< [worker]
    using Resized = std::function<void()>;

    /// @param resized  called when the layer has got another size, before it is drawn; may be null
    PictureLayer(ShumateViewport* viewport, Resized resized);

    /// Waits for the end of the painting.
    ~PictureLayer();
    PictureLayer(const PictureLayer&) = delete;
    PictureLayer& operator=(const PictureLayer&) = delete;

    [[nodiscard]] ShumateLayer* layer() const noexcept { return layer_; }

    /// Paints something else. What is seen stays until that is done.
    void setPaint(Paint paint);

    /// Shows nothing, and hits nothing, from now on.
    void clear();

    /// What is seen, in the size of the widget.
    [[nodiscard]] MapView view() const;

    /// What is at a position of the widget.
    [[nodiscard]] std::optional<MapHit> hitAt(const PicturePoint& position) const;

    // Called by the widget.
    void draw(GtkSnapshot* snapshot);
    void resize();

private:
    void update();
    void request();
    void show(MapPicture picture, GdkTexture* texture, unsigned long clears);
    [[nodiscard]] bool isPictureEnough() const;
    [[nodiscard]] PicturePoint offsetOfPicture() const;

    Resized resized_;
    Paint paint_;
    ShumateViewport* viewport_; // owned by the map
    ShumateLayer* layer_;
    gulong viewChanged_;
    gulong darkChanged_;
    MapPicture picture_;
    std::shared_ptr<GdkTexture> texture_;
    std::optional<MapView> requested_; // by the running paint job
    unsigned long clears_ = 0;         // how often clear() was called
    bool isStale_ = false;             // what the picture shows is not what is to be painted
    std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true); // read and set by the main loop
    Background painter_; // last: its jobs end before the others are destroyed
};

} // namespace host
