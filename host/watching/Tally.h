// SPDX-License-Identifier: MIT
// Tally: counts the records on their way to a writer. One thread at a time.

#pragma once

#include "host/formats/Writer.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace host {

class Tally final : public Writer {
public:
    explicit Tally(std::unique_ptr<Writer> writer) : writer_(std::move(writer)) {}

    void event(const Event& event) override;
    void result(const std::optional<gps::Error>& error) override { writer_->result(error); }
    [[nodiscard]] std::optional<gps::Error> close() override { return writer_->close(); }
    [[nodiscard]] std::string remark() const override { return writer_->remark(); }

    /// "2 waypoints, 1 track (30 points)": what there was, and empty for nothing.
    [[nodiscard]] std::string text() const;

private:
    void count(const Event& event);

    std::unique_ptr<Writer> writer_;
    EventKind open_ = EventKind::kStateChange; // kNewRoute and kNewTrack while one is open
    std::size_t wayPoints_ = 0;
    std::size_t geocaches_ = 0;
    std::size_t routes_ = 0;
    std::size_t tracks_ = 0;
    std::size_t trackPoints_ = 0;
};

} // namespace host
