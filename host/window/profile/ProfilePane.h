// SPDX-License-Identifier: MIT
// ProfilePane: the profile of the selected track, with its axis, the values at the cursor and the
// figures of the marked stretch. [main loop]

#pragma once

#include "host/records/RecordSet.h"
#include "host/window/base/Background.h"
#include "host/window/map/LineColor.h"
#include "host/window/profile/ProfileData.h"
#include "host/window/profile/ProfileView.h"
#include "host/words/RecordDetail.h"

#include <gps/GPSPoint.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <gtkmm.h>

namespace host {

class ProfilePane : public Gtk::Box {
public:
    struct Handlers {
        /// The cursor is at a point, to be marked on the map; nullopt: nowhere.
        std::function<void(const std::optional<gps::GPSPoint>& point)> pointed;
        /// The figures are known, some time after setTrack().
        std::function<void()> measured;
    };

    explicit ProfilePane(Handlers handlers);

    /// Shows the profile of a track, soon.
    void setTrack(std::shared_ptr<const RecordSet> records, std::size_t track);

    /// Shows none.
    void clear();

    /// The figures of the whole track; null while they are not known.
    [[nodiscard]] const StretchFigures* figures() const noexcept
    {
        return data_ ? &data_->figures() : nullptr;
    }

    void setPresentation(const Presentation& presentation);

private:
    void addAxes();
    void show(std::shared_ptr<const ProfileData> data, std::size_t track);
    void setAxis(ProfileAxis axis);
    void explain();
    void cursorMoved();
    void showStretch();

    Handlers handlers_;
    Presentation presentation_;
    std::shared_ptr<const ProfileData> data_;
    std::optional<ProfileStretch> stretch_;

    ProfileView view_;
    Gtk::Label reading_;
    Gtk::Label stretchText_;
    Gtk::Label missing_;
    Gtk::ToggleButton distance_;
    Gtk::ToggleButton time_;
    Background tracks_;
    Background stretches_;
};

} // namespace host
