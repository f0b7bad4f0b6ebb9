// SPDX-License-Identifier: MIT
// PageTiles: the map tiles that the reader of an HTML page can load, by the URL that they have.
// Stateless. [any]

#pragma once

#include <string>

namespace host {

struct PageTiles {
    /// With {z}, {x} and {y} in place of a tile's zoom, column and row in Web Mercator, and
    /// possibly {s} for one of the servers a, b and c. Empty: the page has no tiles.
    std::string url{};
    std::string attribution{}; ///< whose map it is, for the reader
};

/// What is wrong with a URL of tiles, for the user to read; empty if nothing is.
[[nodiscard]] std::string tilesMistake(const std::string& url);

/// Whose map it is if nobody says: OpenStreetMap's text for its own tiles, else the server's name.
/// Precondition: tilesMistake() found none.
[[nodiscard]] std::string usualAttribution(const std::string& url);

/// The sources of the tiles, as the page's security policy names them: "https://tile.example.org".
/// Precondition: tilesMistake() found none.
[[nodiscard]] std::string tileSources(const std::string& url);

} // namespace host
