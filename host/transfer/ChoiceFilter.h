// SPDX-License-Identifier: MIT
// ChoiceFilter: lets only those records through that a user chose. Used by `acquire` and `import`.
// One thread at a time.

#pragma once

#include "host/transfer/EventFilter.h"
#include "host/transfer/RecordCounts.h"
#include "host/transfer/TimeRange.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace host {

/// By default everything.
struct RecordChoice {
    std::optional<TimeRange> times{};
    std::vector<std::string> trackNames{}; ///< names, or shell patterns; empty: all tracks
    bool geocaches = true;

    [[nodiscard]] bool isEverything() const noexcept
    {
        return !times && trackNames.empty() && geocaches;
    }
};

/// What a choice left out. Each record counts once; a track that lost only some of its points
/// counts with these points.
struct LeftOutRecords {
    RecordCounts byTime{};
    RecordCounts byName{};
    RecordCounts geocaches{};

    RecordCounts untimed{}; ///< kept although a choice of times cannot judge them

    std::vector<std::string> unmatchedNames{}; ///< patterns that no track has matched
};

/// Events that are not records pass. Routes are plans, so they have no time.
///
/// A choice of times keeps what has no time: nothing shows that it is outside. In a track, a point
/// without a time is treated like the point before it. Points that are left out in the middle of
/// a track leave a gap, where a new segment begins.
class ChoiceFilter final : public EventFilter {
public:
    explicit ChoiceFilter(RecordChoice choice);

    void event(const Event& event, const Sink& sink) override;
    void finish(const Sink& sink) override;

    [[nodiscard]] LeftOutRecords leftOut() const;

private:
    void beginTrack();
    void endTrack(const Sink& sink);
    void trackPoint(const Event& event, const Sink& sink);
    void wayPoint(const Event& event, const Sink& sink);
    void route(const Event& event, const Sink& sink);
    [[nodiscard]] bool isTrackNamed(const gps::Dictionary& track);
    [[nodiscard]] bool isPointChosen(const gps::GPSPoint& point);

    RecordChoice choice_;
    LeftOutRecords leftOut_;
    std::set<std::string> matched_; // of the patterns
    bool isInRoute_ = false;

    // The open track.
    bool isInTrack_ = false;
    bool isNamed_ = false;      // its name was chosen
    std::optional<Event> head_; // until a point of it passes
    std::size_t passed_ = 0;    // points
    std::size_t dropped_ = 0;   // points
    std::size_t untimed_ = 0;   // points that passed
    bool isLastChosen_ = true;  // the last point
    bool isGapPending_ = false; // points behind those that passed were left out
};

} // namespace host
