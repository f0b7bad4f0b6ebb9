// SPDX-License-Identifier: MIT
// The English texts are the keys of the string table and their own fallback.

#include "Errors.h"

#include "PluginBundle.h"

#include <utility>

namespace magellan {

std::string filledText(std::string_view text, std::string_view value)
{
    constexpr std::string_view kPlaceholder = "%@";
    std::string filled = pluginBundle().localizedString(text);
    if (const auto at = filled.find(kPlaceholder); at != std::string::npos)
        filled.replace(at, kPlaceholder.size(), value);
    return filled;
}

gps::Error makeError(ErrorCode code, std::string_view description, std::string_view suggestion,
                     const std::optional<std::string>& path)
{
    gps::Dictionary info{{gps::kErrorDescriptionKey, pluginBundle().localizedString(description)},
                         {gps::kErrorSuggestionKey, pluginBundle().localizedString(suggestion)}};
    if (path)
        info.set(gps::kErrorPathKey, *path);
    return {kErrorDomain, static_cast<std::int32_t>(code), std::move(info)};
}

gps::Error makeThrownError(const std::exception& failure, const std::string& path)
{
    return {gps::kRangeErrorDomain,
            0,
            {{gps::kErrorDescriptionKey, failure.what()}, {gps::kErrorPathKey, path}}};
}

} // namespace magellan
