// SPDX-License-Identifier: MIT
// ProfileCursor: the point of a profile that a user looks at, and the stretch that they have
// marked. Without widgets. One thread at a time.

#pragma once

#include <cstddef>
#include <optional>

namespace host {

/// Two different points of a track, in its order.
struct ProfileStretch {
    std::size_t from = 0;
    std::size_t to = 0;

    friend bool operator==(const ProfileStretch&, const ProfileStretch&) noexcept = default;
};

class ProfileCursor {
public:
    enum class Step { kBack, kForward, kPageBack, kPageForward, kFirst, kLast };

    ProfileCursor() = default;

    /// @param count  how many points there are
    explicit ProfileCursor(std::size_t count) : count_(count) {}

    /// The point: under the pointer, or else the one that stays.
    [[nodiscard]] std::optional<std::size_t> point() const noexcept
    {
        return pointed_ ? pointed_ : pinned_;
    }

    [[nodiscard]] std::optional<ProfileStretch> stretch() const noexcept;

    /// The pointer is at a point, or has left the profile.
    void pointAt(std::optional<std::size_t> point) noexcept { pointed_ = point; }

    /// A click: the point stays, and the stretch is cleared.
    void pin(std::size_t point) noexcept;

    /// The pointer is dragged from one point to another.
    void drag(std::size_t from, std::size_t to) noexcept;

    /// A key moves the cursor by a hundredth or a tenth of the points, or by one.
    /// @param isSingle   by one
    /// @param isMarking  the stretch reaches up to there
    void step(Step step, bool isSingle, bool isMarking) noexcept;

    /// Clears the stretch, or else the point that stays. @return  whether there was one
    bool clear() noexcept;

private:
    [[nodiscard]] std::size_t after(Step step, std::size_t from, bool isSingle) const noexcept;

    std::size_t count_ = 0;
    std::optional<std::size_t> pointed_;
    std::optional<std::size_t> pinned_;
    std::size_t anchor_ = 0; // where the stretch begins
    std::size_t end_ = 0;    // where it is dragged to; the anchor without a stretch
};

} // namespace host
