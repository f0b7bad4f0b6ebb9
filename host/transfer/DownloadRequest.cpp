// SPDX-License-Identifier: MIT
// How a request becomes the options dictionaries that drivers understand.

#include "host/transfer/DownloadRequest.h"

#include "host/operations/Operation.h"

namespace host {

gps::Dictionary operationOptions(const DownloadRequest& request, const std::string& sourceFile)
{
    const auto& kinds = request.kinds;
    auto options = request.driverOptions.value_or(gps::Dictionary{
        {"waypoints", kinds.waypoints}, {"routes", kinds.routes}, {"tracks", kinds.tracks}});
    if (request.debugLevel)
        options.set("debug", *request.debugLevel);
    // Set beside options that the user gave, too: without this key the device would be read.
    if (!sourceFile.empty())
        options.set(kSourcePathKey, sourceFile);
    return options;
}

} // namespace host
