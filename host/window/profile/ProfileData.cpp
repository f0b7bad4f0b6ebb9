// SPDX-License-Identifier: MIT
// Both axes are prepared at once, so that changing between them takes no time.

#include "host/window/profile/ProfileData.h"

#include <utility>

namespace host {
namespace {

constexpr std::array kAxes{ProfileAxis::kDistance, ProfileAxis::kTime};
constexpr std::array kValues{ProfileValue::kElevation, ProfileValue::kSpeed};

template <typename Enumerator> std::size_t indexOf(Enumerator enumerator)
{
    return static_cast<std::size_t>(enumerator);
}

} // namespace

ProfileData::ProfileData(std::shared_ptr<const RecordSet> records, std::size_t track)
    : records_(std::move(records)),
      track_(records_->tracks[track].points, records_->tracks[track].segments)
{
    if (track_.size() > 0)
        figures_ = stretchFigures(track_, 0, track_.size() - 1);
    if (track_.hasDuration())
        elapsed_ = track_.elapsedSeconds();
    for (const auto axis : kAxes) {
        if (positions(axis).size() != track_.size())
            continue;
        for (const auto value : kValues)
            lines_[indexOf(axis)][indexOf(value)] =
                profileLine(track_, value, positions(axis), kColumns);
    }
}

bool ProfileData::hasAxis(ProfileAxis axis) const noexcept
{
    return line(ProfileValue::kElevation, axis).canBeDrawn() ||
           line(ProfileValue::kSpeed, axis).canBeDrawn();
}

std::span<const double> ProfileData::positions(ProfileAxis axis) const noexcept
{
    return axis == ProfileAxis::kTime ? std::span{elapsed_} : track_.metres();
}

double ProfileData::length(ProfileAxis axis) const noexcept
{
    return positions(axis).empty() ? 0 : positions(axis).back();
}

const ProfileLine& ProfileData::line(ProfileValue value, ProfileAxis axis) const noexcept
{
    return lines_[indexOf(axis)][indexOf(value)];
}

} // namespace host
