// SPDX-License-Identifier: MIT
// The one place of the host that turns an errno into an error.

#include "host/base/HostError.h"

#include "host/base/Translation.h"

#include <cstdint>
#include <system_error>
#include <utility>

namespace host {
namespace {

gps::Dictionary userInfo(std::string description, std::string suggestion, std::string path)
{
    gps::Dictionary info{{gps::kErrorDescriptionKey, std::move(description)},
                         {gps::kErrorSuggestionKey, std::move(suggestion)}};
    if (!path.empty())
        info.set(gps::kErrorPathKey, std::move(path));
    return info;
}

} // namespace

gps::Error hostError(std::string description, std::string suggestion, std::string path)
{
    return {kHostErrorDomain, 1,
            userInfo(std::move(description), std::move(suggestion), std::move(path))};
}

gps::Error systemError(std::string_view what, std::string suggestion, std::string path, int code)
{
    return {kSystemErrorDomain, static_cast<std::int32_t>(code),
            userInfo(std::string{what} + ": " + std::generic_category().message(code),
                     std::move(suggestion), std::move(path))};
}

gps::Error lackOfMemory()
{
    return hostError(tr("There is not enough memory"), tr("Close other programs, and try again"));
}

} // namespace host
