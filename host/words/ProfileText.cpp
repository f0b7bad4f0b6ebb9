// SPDX-License-Identifier: MIT
// What is not known is left out, as in the page.

#include "host/words/ProfileText.h"

#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"

#include <cmath>
#include <cstdint>
#include <utility>

namespace host {
namespace {

constexpr std::string_view kReadingSeparator = " · ";

} // namespace

std::string readingText(const TrackProfile& profile, std::size_t i, std::string_view zone,
                        UnitSystem units)
{
    std::vector<std::string> parts{lengthText(profile.metres()[i], units)};
    if (!std::isnan(profile.elevation(i)))
        parts.push_back(heightText(profile.elevation(i), units));
    if (!std::isnan(profile.speed(i)))
        parts.push_back(speedText(profile.speed(i), units));
    if (!std::isnan(profile.slope(i)))
        parts.push_back(slopeText(profile.slope(i)));
    if (!std::isnan(profile.time(i)))
        parts.push_back(timeText(static_cast<std::int64_t>(profile.time(i)), zone));
    return joined(parts, kReadingSeparator);
}

std::string stretchText(const StretchFigures& figures, UnitSystem units)
{
    std::vector<std::string> parts{lengthText(figures.metres, units)};
    if (!std::isnan(figures.seconds))
        parts.push_back(durationText(figures.seconds));
    if (!std::isnan(figures.average)) {
        const auto average = speedText(figures.average, units);
        parts.push_back(std::isnan(figures.top) ? trFormat("{} on average", average)
                                                : trFormat("{} on average, {} at most", average,
                                                           speedText(figures.top, units)));
    }
    if (!std::isnan(figures.ascent))
        parts.push_back(trFormat("{} up, {} down", heightText(figures.ascent, units),
                                 heightText(figures.descent, units)));
    if (!std::isnan(figures.slope))
        parts.push_back(trFormat("mean slope {}", slopeText(figures.slope)));
    return joined(parts, kReadingSeparator);
}

std::vector<DetailLine> figureLines(const StretchFigures& figures, UnitSystem units)
{
    std::vector<DetailLine> lines;
    const auto add = [&](const char* label, double value, std::string text) {
        if (!std::isnan(value))
            lines.push_back({label, std::move(text)});
    };
    add(tr("Moving"), figures.moving, durationText(figures.moving));
    add(tr("Average moving"), figures.movingAverage, speedText(figures.movingAverage, units));
    add(tr("Average"), figures.average, speedText(figures.average, units));
    add(tr("Top speed"), figures.top, speedText(figures.top, units));
    add(tr("Highest"), figures.highest, heightText(figures.highest, units));
    add(tr("Lowest"), figures.lowest, heightText(figures.lowest, units));
    return lines;
}

} // namespace host
