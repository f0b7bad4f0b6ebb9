// SPDX-License-Identifier: MIT
// Steps are chosen by how many marks fit.

#include "host/words/ScaleTicks.h"

#include "host/base/Translation.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

namespace host {
namespace {

constexpr double kLastTick = 0.94; // of the axis
constexpr double kTopTick = 0.97;  // of a scale
constexpr double kMinute = 60;     // seconds
constexpr double kHour = 3600;
constexpr double kDay = 86400;
constexpr std::array kTimeSteps{kMinute,      2 * kMinute,  5 * kMinute, 10 * kMinute,
                                15 * kMinute, 30 * kMinute, kHour,       2 * kHour,
                                3 * kHour,    6 * kHour,    12 * kHour};

// As many decimals as the numbers of a scale need that go up by `step`.
std::string scaleText(double number, double step)
{
    const double decimals = std::max(0.0, -std::floor(std::log10(step) + 1e-9));
    auto text = numberText(number, static_cast<int>(decimals));
    if (decimals > 0) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.ends_with('.'))
            text.pop_back();
    }
    return text;
}

std::vector<Tick> ticksOf(double length, double step,
                          const std::function<std::string(int i)>& textOf)
{
    std::vector<Tick> ticks;
    for (int i = 0; i * step <= length * kLastTick; ++i)
        ticks.push_back({i * step, textOf(i)});
    return ticks;
}

std::string timeText(double seconds, double step, bool isFirst)
{
    if (step >= kDay)
        return isFirst ? tr("0 days") : scaleText(seconds / kDay, step / kDay);
    if (isFirst)
        return tr("0:00 h");
    return fmt::format("{:.0f}:{:02.0f}", std::floor(seconds / kHour),
                       std::fmod(seconds, kHour) / kMinute);
}

} // namespace

double roundStep(double least)
{
    const double power = std::pow(10, std::floor(std::log10(least)));
    constexpr double kForgiven = 0.999999;
    for (const double factor : {1, 2, 5}) {
        if (factor * power >= least * kForgiven)
            return factor * power;
    }
    return 10 * power;
}

std::vector<Tick> distanceTicks(double length, int most, UnitSystem system)
{
    const auto& units = unitsOf(system);
    const auto& unit = length < units.length.metres ? units.small : units.length;
    const double step = roundStep(length / unit.metres / most);
    return ticksOf(length, step * unit.metres, [&](int i) {
        return i == 0 ? std::string{"0 "} + unit.name : scaleText(i * step, step);
    });
}

std::vector<Tick> timeTicks(double length, int most)
{
    const double least = length / most;
    const auto* const known = std::find_if(kTimeSteps.begin(), kTimeSteps.end(),
                                           [&](double step) { return step >= least; });
    const double step = known != kTimeSteps.end() ? *known : kDay * roundStep(least / kDay);
    return ticksOf(length, step, [&](int i) { return timeText(i * step, step, i == 0); });
}

std::vector<Tick> valueTicks(double low, double high, double unit, int most)
{
    std::vector<Tick> ticks;
    const double step = roundStep((high - low) / unit / most);
    for (double i = std::ceil(low / unit / step); i * step * unit < low + (high - low) * kTopTick;
         ++i)
        ticks.push_back({i * step * unit, scaleText(i * step, step)});
    return ticks;
}

} // namespace host
