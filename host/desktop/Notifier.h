// SPDX-License-Identifier: MIT
// Notifier: shows notifications on the user's desktop. [host thread]

#pragma once

#include <gps/Error.h>

#include <memory>
#include <optional>
#include <string>

namespace host {

class Bus;

class Notifier {
public:
    Notifier();
    ~Notifier();

    /// @param title  one line of plain text
    /// @param text   plain text
    [[nodiscard]] std::optional<gps::Error> show(const std::string& title, const std::string& text);

private:
    std::unique_ptr<Bus> bus_; // null until the first one
};

} // namespace host
