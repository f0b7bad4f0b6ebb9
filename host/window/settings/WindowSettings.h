// SPDX-License-Identifier: MIT
// WindowSettings: what the user has chosen for the window. Kept in the table [window] of the
// configuration file that the command line reads, too: see SettingsFile. A plain value. [any]

#pragma once

#include "host/words/FigureText.h"

#include <cstddef>
#include <string>

namespace host {

struct WindowSettings {
    enum class Tiles {
        kNone, ///< coasts and the names of places, which the program has itself
        kOpenStreetMap,
        kFile, ///< an .mbtiles file: `tileFile`
    };

    UnitSystem units = UnitSystem::kMetric;
    bool isUtc = false; ///< otherwise times are by the clocks of the place
    Tiles tiles = Tiles::kOpenStreetMap;
    std::string tileFile{};       ///< its path; kept while another source is chosen
    std::string downloadFolder{}; ///< where files are saved; empty: the desktop's own choice
    std::size_t mostBackups = 10; ///< that are kept of a device

    bool isNewOnly = false;   ///< a download shows what was not saved before
    bool isSaving = false;    ///< everything new is saved automatically
    std::string saveFolder{}; ///< where that goes; empty: nowhere yet

    friend bool operator==(const WindowSettings& a, const WindowSettings& b) = default;
};

} // namespace host
