// SPDX-License-Identifier: MIT
// Members of MagellanGPSPlugin: identity, creation and the start of every operation.

#include "MagellanGPSPlugin.h"

#include "../codec/FieldText.h"
#include "../codec/SymbolMap.h"
#include "../common/Errors.h"
#include "../common/GuardedStatus.h"
#include "../common/PluginBundle.h"
#include "FileDevice.h"
#include "KeyValueFile.h"

#include <gps/DictionaryHelpers.h>
#include <gps/GPSOutputReceiver.h>
#include <platform/System/DetachedThread.h>
#include <platform/System/Log.h>

#include <utility>

namespace magellan {

void MagellanGPSPlugin::buildSharedTables()
{
    (void)SymbolMap::shared();
    (void)deviceCharacterSet();
}

std::shared_ptr<MagellanGPSPlugin>
MagellanGPSPlugin::getPluginForClass(std::string_view plugInClass)
{
    if (plugInClass != kPlugInClass)
        return nullptr;
    auto outlets = pluginBundle().loadView("MagellanGPS");
    if (!outlets)
        return nullptr;
    buildSharedTables(); // once for all, so not from a bundle whose resources cannot be found yet
    auto driver = std::make_shared<FileDevice>();
    driver->connect(std::move(*outlets));
    driver->initFSDeviceList();
    return driver->gpsView() != nullptr ? driver : nullptr;
}

std::string MagellanGPSPlugin::gpsCapabilities() const
{
    return "tracks,waypoints,routes,geocaches,sendtrk,sendwpt,sendrte,sendcache";
}

std::optional<std::vector<std::string>> MagellanGPSPlugin::fileTypes() const
{
    return std::vector<std::string>{"log", "rte", "upt", "gs"};
}

void MagellanGPSPlugin::setDebugLevelFromOptions(const gps::Dictionary& options)
{
    debugLevel_ = GetIntValueForKey(&options, "debug", debugLevel_);
}

std::optional<gps::Error> MagellanGPSPlugin::startAcquire(const Status& status,
                                                          const gps::Dictionary& options)
{
    return startWorker(status, "output", options, {},
                       [this](const gps::Dictionary& work) { runAcquire(work); });
}

std::optional<gps::Error> MagellanGPSPlugin::startWorker(const Status& status,
                                                         const char* statusKey,
                                                         const gps::Dictionary& options,
                                                         const gps::Dictionary& additions,
                                                         WorkerBody body)
{
    monitor_.begin();
    gps::Dictionary work;
    auto error = setUpDictionaryForThreadingFromOptions(options, work);
    if (!error) {
        for (const auto& [key, value] : additions)
            work.set(key, value);
        const auto guarded = std::make_shared<GuardedStatus>(*status);
        work.set(statusKey, Status{guarded});
        // Nobody joins the worker, so it owns a reference to everything that it uses.
        error = gps::detachNewThread([self = shared_from_this(), status, guarded,
                                      work = std::move(work), body = std::move(body)] {
            try {
                body(work);
            } catch (const StatusFailure&) {
                guarded->endAfterFailure();
            }
        });
    }
    if (error)
        status->gpsStateChange(0);
    return error;
}

std::optional<gps::Error>
MagellanGPSPlugin::setUpDictionaryForThreadingFromOptions(const gps::Dictionary& options,
                                                          gps::Dictionary& work) const
{
    const auto* const volume = location();
    if (volume == nullptr)
        return logged(makeError(ErrorCode::kNoDevice,
                                "No location was selected for Magellan device", kSuggestMounting));
    std::optional<gps::Error> unread;
    auto folders = readMagellanFolderDictionaryFromPath(*volume, &unread);
    if (unread)
        monitor_.addUnseen({"device", unread->path().value_or(*volume), *unread});
    if (!folders)
        return logged(makeError(ErrorCode::kDeviceDataMissing,
                                "Magellan device data missing or in unregonized format",
                                kSuggestMounting, *volume));
    work = options;
    work.set("folders", std::move(*folders));
    work.set("targetPath", *volume);
    return std::nullopt;
}

gps::Error MagellanGPSPlugin::logged(gps::Error error) const
{
    if (debugLevel_ != 0)
        gps::logError(className(), error);
    return error;
}

} // namespace magellan
