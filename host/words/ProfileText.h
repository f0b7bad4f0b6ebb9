// SPDX-License-Identifier: MIT
// What a profile says about one of its points, a stretch and the whole track. Stateless. [any]

#pragma once

#include "host/points/TrackProfile.h"
#include "host/words/RecordDetail.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// "1.25 km · 733 m · 3.2 km/h · +12.5 % · 2010-01-17 09:40:07 Auckland time"; what is not known is
/// left out.
/// @param zone  of the clocks that show the time; empty for UTC
/// Precondition: i < profile.size().
[[nodiscard]] std::string readingText(const TrackProfile& profile, std::size_t i,
                                      std::string_view zone, UnitSystem units);

/// "1.20 km · 25 min · 2.9 km/h on average, 4.0 km/h at most · 120 m up, 3 m down · mean slope
/// +9.8 %"; what is not known is left out.
[[nodiscard]] std::string stretchText(const StretchFigures& figures, UnitSystem units);

/// The figures of a whole track that recordDetails() does not have.
[[nodiscard]] std::vector<DetailLine> figureLines(const StretchFigures& figures, UnitSystem units);

} // namespace host
