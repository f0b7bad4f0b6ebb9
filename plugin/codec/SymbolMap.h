// SPDX-License-Identifier: MIT
// Symbols: the host's symbol names ("Campground") against the receiver's icon codes ("j"). Constant
// once made: [any] thread.

#pragma once

#include <gps/Value.h>

#include <string>
#include <string_view>

/// The icon code used when nothing better is known. Exported under its plain name.
extern "C" [[gnu::visibility("default")]] const char* const kMagellanSymbol_crossed_box;

namespace magellan {

class SymbolMap {
public:
    /// @param icons  symbol name to icon code, as the resource "MagellanSymbolMap" has it. Where
    /// several symbols share an icon,
    ///               the last of them is the name that the icon is read as
    explicit SymbolMap(gps::Dictionary icons);

    /// `magellanIconFromSymbolString:`: the icon of a symbol; a symbol without one stands for
    /// itself when it is shorter than 3 characters, since it is an icon code then, and is otherwise
    /// the crossed box, as null is.
    /// @return  a view into the map or into the symbol
    [[nodiscard]] std::string_view
    magellanIconFromSymbolString(const std::string* symbol) const noexcept;

    /// Whether a symbol has an icon of its own.
    [[nodiscard]] bool contains(std::string_view symbol) const noexcept
    {
        return icons_.contains(symbol);
    }

    /// `symbolStringFromMagellanIcon:`: the symbol of an icon; an unknown icon stands for itself.
    /// @return  a view into the map or into the icon
    [[nodiscard]] std::string_view
    symbolStringFromMagellanIcon(std::string_view icon) const noexcept;

    /// The map of every driver, read from the plug-in's bundle at the first call and kept until the
    /// process ends. A missing resource leaves it empty.
    [[nodiscard]] static const SymbolMap& shared();

private:
    gps::Dictionary icons_;
    gps::Dictionary symbols_;
};

} // namespace magellan
