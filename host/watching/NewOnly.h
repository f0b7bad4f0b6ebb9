// SPDX-License-Identifier: MIT
// NewOnly: lets through to a writer only the records that are not known yet. One thread at a time.

#pragma once

#include "host/formats/Writer.h"
#include "host/watching/KnownRecords.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace host {

/// Reports that are no records go through. A route is held back until its end has come, a track
/// only while one with the same first time is known: then 40 bytes a point are kept until it proves
/// to be another one.
class NewOnly final : public Writer {
public:
    /// @param known  lasts as long as this object
    NewOnly(std::unique_ptr<Writer> writer, const KnownRecords& known)
        : writer_(std::move(writer)), known_(known)
    {}

    void event(const Event& event) override;
    void result(const std::optional<gps::Error>& error) override { writer_->result(error); }
    [[nodiscard]] std::optional<gps::Error> close() override;
    [[nodiscard]] std::string remark() const override { return writer_->remark(); }

    /// The keys of all records that came so far and have ended, known or new.
    [[nodiscard]] const RecordKeys& seen() const noexcept { return seen_; }

private:
    enum class Open { kNothing, kRoute, kTrack };

    void wayPoint(const Event& event);
    void begin(Open kind, const Event* head);
    void trackPoint(const Event& event);
    void holdPoint(const Event& event);
    void end();
    void endRoute();
    void endTrack();
    void passHeld();
    [[nodiscard]] bool isNew(std::string key); // notes that it was seen, too

    std::unique_ptr<Writer> writer_;
    const KnownRecords& known_;
    RecordKeys seen_;

    // What is open.
    Open open_ = Open::kNothing;
    Digest content_;          // of a route, or of a track without times
    std::vector<Event> held_; // a route with its points; a track's head
    std::size_t points_ = 0;  // the track's
    std::int64_t firstTime_ = 0;
    bool isPassing_ = false; // the track is new: its points go straight on
    std::vector<gps::GPSPoint> heldPoints_;
    std::vector<std::pair<std::size_t, gps::Dictionary>>
        heldExtras_; // from which held point on they hold
};

} // namespace host
