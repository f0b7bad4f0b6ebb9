// SPDX-License-Identifier: MIT
// SettingsKeeper: the window's settings while it is open, and their way to the file. [main loop]

#pragma once

#include "host/window/base/Background.h"
#include "host/window/settings/WindowSettings.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace host {

class SettingsKeeper {
public:
    struct Handlers {
        std::function<void(const WindowSettings& settings)> changed;
        std::function<void(const std::string& sentence)> failed; ///< the file cannot be used
    };

    /// Reads the settings, and looks for mistakes in the rest of the file. Calls no handler before
    /// it returns.
    explicit SettingsKeeper(Handlers handlers);

    /// Writes what is not written yet.
    ~SettingsKeeper();
    SettingsKeeper(const SettingsKeeper&) = delete;
    SettingsKeeper& operator=(const SettingsKeeper&) = delete;

    [[nodiscard]] const WindowSettings& settings() const noexcept { return settings_; }

    /// Takes over other settings, and writes them soon.
    void set(WindowSettings settings);

private:
    void checkRest();

    Handlers handlers_;
    std::optional<std::string> path_; // nullopt: the user has no home folder
    WindowSettings settings_;
    WindowSettings written_;
    std::optional<Background> writer_{std::in_place};
    Background checker_; // of what the file says to the command line
};

} // namespace host
