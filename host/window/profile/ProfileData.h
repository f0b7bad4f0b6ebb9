// SPDX-License-Identifier: MIT
// ProfileData: what the profile of a track is drawn from. It is made on another thread, since that
// takes a second for millions of points, and unchanged afterwards. [any]

#pragma once

#include "host/points/ProfileLine.h"
#include "host/points/TrackProfile.h"
#include "host/records/RecordSet.h"

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace host {

enum class ProfileAxis { kDistance, kTime };

class ProfileData {
public:
    /// The lines have as many columns as the widest screen has pixels.
    static constexpr std::size_t kColumns = 4096;

    /// Precondition: there is such a track.
    ProfileData(std::shared_ptr<const RecordSet> records, std::size_t track);

    [[nodiscard]] const TrackProfile& track() const noexcept { return track_; }
    [[nodiscard]] const StretchFigures& figures() const noexcept { return figures_; }

    /// Whether one of the lines can be drawn along the axis.
    [[nodiscard]] bool hasAxis(ProfileAxis axis) const noexcept;

    /// The positions of the points, in metres or seconds from the start; they never fall.
    [[nodiscard]] std::span<const double> positions(ProfileAxis axis) const noexcept;

    /// The position of the last point.
    [[nodiscard]] double length(ProfileAxis axis) const noexcept;

    [[nodiscard]] const ProfileLine& line(ProfileValue value, ProfileAxis axis) const noexcept;

private:
    std::shared_ptr<const RecordSet> records_; // has the points
    TrackProfile track_;
    StretchFigures figures_;
    std::vector<double> elapsed_;
    std::array<std::array<ProfileLine, 2>, 2> lines_; // by axis and value
};

} // namespace host
