// SPDX-License-Identifier: MIT
// SymbolMap: translates between the host's symbol names ("Campground") and the receivers' icon
// codes ("j"). Immutable once constructed. [any]

#pragma once

#include <gps/Value.h>

#include <string>
#include <string_view>

/// The icon code for symbols without an icon. Exported from the module under this name.
extern "C" [[gnu::visibility("default")]] const char* const kMagellanSymbol_crossed_box;

namespace magellan {

class SymbolMap {
public:
    /// @param icons  symbol name to icon code, as in the resource "MagellanSymbolMap". If several
    ///               symbols share an icon, the icon reads as the last of them
    explicit SymbolMap(gps::Dictionary icons);

    /// `magellanIconFromSymbolString:`: the icon of a symbol. A symbol that is not in the map is
    /// taken for an icon code if it has fewer than 3 characters; any other, or null, gets
    /// kMagellanSymbol_crossed_box.
    /// @return  a view into the map or into the symbol
    [[nodiscard]] std::string_view
    magellanIconFromSymbolString(const std::string* symbol) const noexcept;

    /// Whether the map has an icon for a symbol.
    [[nodiscard]] bool contains(std::string_view symbol) const noexcept
    {
        return icons_.contains(symbol);
    }

    /// `symbolStringFromMagellanIcon:`: the symbol of an icon; an unknown icon is its own symbol.
    /// @return  a view into the map or into the icon
    [[nodiscard]] std::string_view
    symbolStringFromMagellanIcon(std::string_view icon) const noexcept;

    /// Whether the map has a symbol for an icon. That symbol has this icon, so a waypoint keeps it
    /// when it is read and written again.
    [[nodiscard]] bool containsIcon(std::string_view icon) const noexcept
    {
        return symbols_.contains(icon);
    }

    /// The map that all drivers use. Loaded from the plug-in's bundle at the first call and never
    /// destroyed. Empty if the resource is missing.
    [[nodiscard]] static const SymbolMap& shared();

private:
    gps::Dictionary icons_;   // by symbol
    gps::Dictionary symbols_; // by icon
};

} // namespace magellan
