// SPDX-License-Identifier: MIT
// RecordKeeper: collects the events of a download in a RecordSet. One thread at a time.

#pragma once

#include "host/formats/CollectionWriter.h"
#include "host/records/RecordSet.h"

#include <gps/Error.h>

#include <optional>
#include <utility>

namespace host {

class RecordKeeper final : public CollectionWriter {
public:
    /// What has been collected. The set is empty afterwards.
    /// Precondition: close() was called.
    [[nodiscard]] RecordSet take() { return std::exchange(set_, {}); }

private:
    void wayPoint(const gps::GPSPoint& point, const gps::Dictionary& record) override;
    void beginRoute(const gps::Dictionary& route) override;
    void routePoint(const gps::GPSPoint& point, const gps::Dictionary& record) override;
    void endRoute() override {}
    void beginTrack(const gps::Dictionary& track) override;
    void trackPoint(const gps::GPSPoint& point) override;
    void newSegment() override;
    void foundGap() override;
    void endTrack() override;
    [[nodiscard]] std::optional<gps::Error> finish() override { return std::nullopt; }

    RecordSet set_;
};

} // namespace host
