// SPDX-License-Identifier: MIT
// NewRecordFilter: lets only records through that were not saved before. Used by --new-only.
// One thread at a time.

#pragma once

#include "host/transfer/EventFilter.h"
#include "host/transfer/RecordCounts.h"
#include "host/watching/KnownRecords.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace host {

/// The keys of the records that have passed, of each kind in their order.
struct PassedKeys {
    std::vector<std::string> points{}; ///< waypoints and geocaches
    std::vector<std::string> routes{};
    std::vector<std::string> tracks{};
};

/// Events that are not records pass. A route is held back until its end; a track only while a known
/// track has the same first time, at 40 bytes a point, until it turns out to be another one.
class NewRecordFilter final : public EventFilter {
public:
    /// @param known  must outlive this object
    explicit NewRecordFilter(const KnownRecords& known) : known_(known) {}

    void event(const Event& event, const Sink& sink) override;
    void finish(const Sink& sink) override;

    /// The keys of all records so far that are complete, known or new.
    [[nodiscard]] const RecordKeys& seen() const noexcept { return seen_; }

    /// The keys of those among them that have passed. Some keys may be there more than once.
    [[nodiscard]] PassedKeys takePassed() { return std::exchange(passed_, {}); }

    /// What did not pass.
    [[nodiscard]] const RecordCounts& leftOut() const noexcept { return leftOut_; }

private:
    enum class Open { kNothing, kRoute, kTrack };

    void wayPoint(const Event& event, const Sink& sink);
    void begin(Open kind);
    void newSegment(const Event& event, const Sink& sink);
    void trackPoint(const Event& event, const Sink& sink);
    void holdPoint(const Event& event);
    void end(const Sink& sink);
    void endRoute(const Sink& sink);
    void endTrack(const Sink& sink);
    [[nodiscard]] bool isKnownToOlderVersion(const std::string& key);
    void passHeld(const Sink& sink);
    [[nodiscard]] bool noteKey(const std::string& key); // returns whether it is new

    const KnownRecords& known_;
    RecordKeys seen_;
    PassedKeys passed_;
    RecordCounts leftOut_;
    std::map<std::string, std::string> olderKeys_; // the track that each of them counts for

    // The open route or track.
    Open open_ = Open::kNothing;
    Digest content_;          // of the route, or of the track's points
    std::vector<Event> held_; // a route with its points, or a track's head
    std::size_t points_ = 0;  // of the track
    std::int64_t firstTime_ = 0;
    bool isPassing_ = false; // the track is known to be new: its points pass at once
    std::vector<gps::GPSPoint> heldPoints_;
    std::set<std::size_t> heldSegments_;                              // before these held points
    std::vector<std::pair<std::size_t, gps::Dictionary>> heldExtras_; // from this held point on
};

} // namespace host
