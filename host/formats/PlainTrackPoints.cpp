// SPDX-License-Identifier: MIT
// Texts may have only characters of numbers and timestamps, none of which XML gives a meaning. So
// they are what a parser would return.

#include "host/formats/PlainTrackPoints.h"

#include "host/formats/GpxRecords.h"

#include <platform/System/LargePages.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <utility>

namespace host {
namespace {

constexpr std::string_view kSegmentTag = "<trkseg>";

// A template, so that compilers compare the few bytes of a tag without a call.
template <std::size_t kSize>
bool take(std::string_view& text, const char (&expected)[kSize]) noexcept
{
    constexpr std::size_t kLength = kSize - 1;
    if (text.size() < kLength || std::memcmp(text.data(), expected, kLength) != 0)
        return false;
    text.remove_prefix(kLength);
    return true;
}

using Characters = std::array<bool, 256>;

constexpr Characters charactersOf(std::string_view characters) noexcept
{
    Characters set{};
    for (const char c : characters)
        set[static_cast<unsigned char>(c)] = true;
    return set;
}

constexpr auto kSpace = charactersOf(" \n\r\t");
constexpr auto kValue = charactersOf("0123456789.+-eE:TZ");

std::string_view takeAll(std::string_view& text, const Characters& characters) noexcept
{
    const auto* const end = std::find_if_not(text.begin(), text.end(), [&characters](char c) {
        return characters[static_cast<unsigned char>(c)];
    });
    const auto taken = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(taken.size());
    return taken;
}

// Takes "<name>value</name>" and the white space behind it. An element that is missing is empty.
// @return  whether it is missing or complete
template <std::size_t kStart, std::size_t kEnd>
bool takeElement(std::string_view& text, const char (&start)[kStart], const char (&end)[kEnd],
                 std::string_view& value) noexcept
{
    if (!take(text, start))
        return true;
    value = takeAll(text, kValue);
    const bool isComplete = take(text, end);
    (void)takeAll(text, kSpace);
    return isComplete;
}

// Takes a point and the white space before it.
// @return  whether there was one. If not, the text is unchanged
bool takePoint(std::string_view& text, gps::GPSPoint& point, bool& hasFraction)
{
    auto rest = text;
    PointTexts texts;
    UnreadTexts unread;
    (void)takeAll(rest, kSpace);
    if (!take(rest, "<trkpt lat=\""))
        return false;
    texts.latitude = takeAll(rest, kValue);
    if (!take(rest, "\" lon=\""))
        return false;
    texts.longitude = takeAll(rest, kValue);
    if (!take(rest, "\">"))
        return false;
    (void)takeAll(rest, kSpace);
    if (!takeElement(rest, "<ele>", "</ele>", texts.elevation) ||
        !takeElement(rest, "<time>", "</time>", texts.time) || !take(rest, "</trkpt>") ||
        !makePoint(texts, point, unread) || !unread.isEmpty())
        return false;
    hasFraction = unread.hasFraction;
    text = rest;
    return true;
}

// @param now  called now and then with the text that is left
template <typename Now> PlainTrackPoints takePoints(std::string_view& text, const Now& now)
{
    constexpr std::size_t kOften = 4096; // points
    constexpr std::size_t kMany = 64;    // of which there are likely to be more
    PlainTrackPoints taken;
    auto& points = taken.points;
    gps::GPSPoint point;
    bool hasFraction = false;
    for (auto before = text.size(); takePoint(text, point, hasFraction); before = text.size()) {
        if (points.size() == kMany) {
            // If the rest is points of this length, there is room for all of them.
            points.reserve(kMany + before / (before - text.size()) + 1);
            gps::useLargePages(points.data(), points.capacity() * sizeof points[0]);
        }
        points.emplace_back(trackPointRecord(point));
        taken.fractions += hasFraction ? 1U : 0U;
        if (points.size() % kOften == 0)
            now(text);
    }
    if (points.size() < points.capacity() / 2)
        points.shrink_to_fit();
    return taken;
}

} // namespace

std::vector<PlainTrackPoints>
takePlainTrackPoints(std::string& xml, const std::function<void(std::size_t done)>& progress)
{
    const auto size = xml.size();
    const auto report = [&](std::string_view rest) {
        if (progress)
            progress(size - rest.size());
    };
    std::vector<PlainTrackPoints> taken;
    std::size_t kept = 0; // the text before this index is what remains
    for (std::string_view rest = xml; !rest.empty();) {
        const auto tag = rest.find(kSegmentTag);
        const auto end = tag == std::string_view::npos ? rest.size() : tag + kSegmentTag.size();
        if (!taken.empty())
            std::memmove(&xml[kept], rest.data(), end);
        kept += end;
        rest.remove_prefix(end);
        auto points = takePoints(rest, report);
        points.segment = static_cast<std::ptrdiff_t>(kept - kSegmentTag.size() + 1);
        if (!points.points.empty())
            taken.push_back(std::move(points));
    }
    if (!taken.empty()) {
        xml.resize(kept);
        xml.shrink_to_fit();
    }
    return taken;
}

} // namespace host
