// SPDX-License-Identifier: MIT
// Reports of records in short form, and a writer that tells in the same form what reached it.

#pragma once

#include "host/formats/Writer.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace support {

inline host::Event reportOf(host::EventKind kind, gps::Dictionary record,
                            const gps::GPSPoint& point = {})
{
    host::Event event;
    event.kind = kind;
    event.record = std::move(record);
    event.point = point;
    return event;
}

inline host::Event track(const char* name)
{
    return reportOf(host::EventKind::kNewTrack, {{"name", name}});
}
inline host::Event fix(std::int64_t time, double latitude = 46, const char* trackName = "")
{
    return reportOf(host::EventKind::kTrackPoint, {{"trackName", trackName}},
                    {latitude, 7, 0, time, 0});
}
inline host::Event route(const char* name)
{
    return reportOf(host::EventKind::kNewRoute, {{"name", name}});
}
inline host::Event place(const char* name, double latitude = 46)
{
    return reportOf(host::EventKind::kWayPoint, {{"name", name}}, {latitude, 7, 0, 0, 0});
}
inline host::Event cache(const char* name)
{
    return reportOf(host::EventKind::kWayPoint, {{"name", name}, {"symbol", "Geocache"}},
                    {46, 7, 0, 0, 0});
}
inline host::Event endOfTransfer()
{
    return reportOf(host::EventKind::kEndTransfer, {});
}

/// "T:name", "f:time", "R:name", "w:name", and "-" for any other report; and how often it was
/// closed.
class Told final : public host::Writer {
public:
    Told(std::vector<std::string>& told, int& closed) : told_(told), closed_(closed) {}

    void event(const host::Event& event) override
    {
        const auto text = [&](const char* key) {
            const auto* const found = event.record.findString(key);
            return found != nullptr ? *found : std::string{};
        };
        switch (event.kind) {
        case host::EventKind::kNewTrack:
            told_.push_back("T:" + text("name"));
            break;
        case host::EventKind::kTrackPoint:
            told_.push_back("f:" + std::to_string(event.point.time) + text("trackName"));
            break;
        case host::EventKind::kNewRoute:
            told_.push_back("R:" + text("name"));
            break;
        case host::EventKind::kWayPoint:
            told_.push_back("w:" + text("name"));
            break;
        default:
            told_.emplace_back("-");
        }
    }
    void result(const std::optional<gps::Error>& error) override
    {
        told_.emplace_back(error ? "failed" : "succeeded");
    }
    [[nodiscard]] std::optional<gps::Error> close() override
    {
        ++closed_;
        return gps::Error{"some", -1};
    }
    [[nodiscard]] std::string remark() const override { return "remark"; }

private:
    std::vector<std::string>& told_;
    int& closed_;
};

} // namespace support
