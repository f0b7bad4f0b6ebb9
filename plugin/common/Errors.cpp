// SPDX-License-Identifier: MIT
// The English texts are the keys of the string table and their own fallback.

#include "Errors.h"

#include "PluginBundle.h"

#include <utility>

namespace magellan {

gps::Error makeError(ErrorCode code, std::string_view description, std::string_view suggestion,
                     const std::optional<std::string>& path)
{
    gps::Dictionary info{{gps::kErrorDescriptionKey, pluginBundle().localizedString(description)},
                         {gps::kErrorSuggestionKey, pluginBundle().localizedString(suggestion)}};
    if (path)
        info.set(gps::kErrorPathKey, *path);
    return {kErrorDomain, static_cast<std::int32_t>(code), std::move(info)};
}

gps::Error makeErrorAbout(ErrorCode code, std::string_view value, std::string_view description,
                          std::string_view suggestion)
{
    constexpr std::string_view kPlaceholder = "%@";
    auto info = makeError(code, description, suggestion).userInfo();
    std::string filled = *info.findString(gps::kErrorDescriptionKey);
    if (const auto at = filled.find(kPlaceholder); at != std::string::npos)
        filled.replace(at, kPlaceholder.size(), value);
    info.set(gps::kErrorDescriptionKey, std::move(filled));
    return {kErrorDomain, static_cast<std::int32_t>(code), std::move(info)};
}

gps::Error makeThrownError(const std::exception& failure, const std::string& path)
{
    return {gps::kRangeErrorDomain,
            0,
            {{gps::kErrorDescriptionKey, failure.what()}, {gps::kErrorPathKey, path}}};
}

} // namespace magellan
