// SPDX-License-Identifier: MIT
// A stretch goes on where the last one ended, and begins anew anywhere else.

#include "host/window/profile/ProfileCursor.h"

#include <algorithm>

namespace host {

std::optional<ProfileStretch> ProfileCursor::stretch() const noexcept
{
    if (anchor_ == end_)
        return std::nullopt;
    return ProfileStretch{std::min(anchor_, end_), std::max(anchor_, end_)};
}

void ProfileCursor::pin(std::size_t point) noexcept
{
    pinned_ = point;
    anchor_ = end_ = point;
}

void ProfileCursor::drag(std::size_t from, std::size_t to) noexcept
{
    anchor_ = from;
    end_ = to;
    pinned_ = to;
}

void ProfileCursor::step(Step step, bool isSingle, bool isMarking) noexcept
{
    if (count_ == 0)
        return;
    const auto from = point().value_or(0);
    const auto to = after(step, from, isSingle);
    if (isMarking) {
        if (end_ != from) // another stretch begins
            anchor_ = from;
        end_ = to;
    }
    pointed_.reset();
    pinned_ = to;
}

std::size_t ProfileCursor::after(Step step, std::size_t from, bool isSingle) const noexcept
{
    const auto last = count_ - 1;
    const bool isPage = step == Step::kPageBack || step == Step::kPageForward;
    const std::size_t parts = isPage ? 10 : 100;
    const auto stride = isSingle ? 1 : std::max<std::size_t>(1, last / parts);
    switch (step) {
    case Step::kFirst:
        return 0;
    case Step::kLast:
        return last;
    case Step::kBack:
    case Step::kPageBack:
        return from - std::min(from, stride);
    case Step::kForward:
    case Step::kPageForward:
        break;
    }
    return std::min(from + stride, last);
}

bool ProfileCursor::clear() noexcept
{
    const bool hadAny = stretch() || pinned_;
    if (!stretch())
        pinned_.reset();
    anchor_ = end_;
    return hadAny;
}

} // namespace host
