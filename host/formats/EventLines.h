// SPDX-License-Identifier: MIT
// EventLines: writes each call that a driver makes on its status object as one JSON line, for
// scripts and tests. The form of the lines is fixed: scripts depend on it. One thread at a time.

#pragma once

#include "host/files/Output.h"
#include "host/formats/Writer.h"

#include <optional>
#include <string>

namespace host {

class EventLines final : public Writer {
public:
    explicit EventLines(Output& output) : output_(output) {}

    void event(const Event& event) override;
    void result(const std::optional<gps::Error>& error) override;
    void flush() override { output_.flush(); }
    [[nodiscard]] bool hasSegments() const override { return false; } // no call of a driver
    [[nodiscard]] std::optional<gps::Error> close() override { return output_.flush(); }

private:
    void trackPoint(const gps::GPSPoint& point);
    void write();

    Output& output_;
    std::string line_;
};

} // namespace host
