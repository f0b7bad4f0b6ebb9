// SPDX-License-Identifier: MIT
// Symbols are in UTF-8, so "fewer than 3 characters" is not a question of bytes.

#include "SymbolMap.h"

#include "../common/PluginBundle.h"

#include <cstddef>
#include <utility>

const char* const kMagellanSymbol_crossed_box = "a";

namespace magellan {
namespace {

/// Shorter symbols are taken for icon codes.
constexpr std::size_t kShortestSymbolName = 3;

/// The number of characters in a UTF-8 text.
std::size_t characterCount(std::string_view text) noexcept
{
    std::size_t count = 0;
    for (const char c : text)
        count += (static_cast<unsigned char>(c) & 0xC0) != 0x80 ? 1 : 0;
    return count;
}

} // namespace

SymbolMap::SymbolMap(gps::Dictionary icons) : icons_(std::move(icons))
{
    symbols_.reserve(icons_.size());
    for (const auto& [symbol, icon] : icons_) {
        if (const auto* code = icon.as<std::string>())
            symbols_.setText(*code, symbol);
    }
}

std::string_view SymbolMap::magellanIconFromSymbolString(const std::string* symbol) const noexcept
{
    if (symbol == nullptr)
        return kMagellanSymbol_crossed_box;
    if (const auto* icon = icons_.findString(*symbol))
        return *icon;
    return characterCount(*symbol) < kShortestSymbolName ? std::string_view{*symbol}
                                                         : kMagellanSymbol_crossed_box;
}

std::string_view SymbolMap::symbolStringFromMagellanIcon(std::string_view icon) const noexcept
{
    const auto* symbol = symbols_.findString(icon);
    return symbol != nullptr ? std::string_view{*symbol} : icon;
}

const SymbolMap& SymbolMap::shared()
{
    // Never destroyed: a worker may still use it while the process exits.
    static const SymbolMap* const map = new SymbolMap(
        pluginBundle().dictionaryResource("MagellanSymbolMap").value_or(gps::Dictionary{}));
    return *map;
}

} // namespace magellan
