// SPDX-License-Identifier: MIT
// Members of MagellanGPSPlugin: the import of one file. Its extension and first line determine the
// kind; the kind's reader does the rest.

#include "../common/Errors.h"
#include "../common/FolderWalk.h"
#include "../common/GuardedStatus.h"
#include "../common/OperationAccount.h"
#include "DeviceFileReaders.h"
#include "MagellanGPSPlugin.h"

#include <gps/GPSOutputReceiver.h>
#include <platform/System/Ascii.h>
#include <platform/System/FileManager.h>

#include <algorithm>
#include <array>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace magellan {
namespace {

/// A kind of file that can be imported.
struct ImportKind {
    std::string_view extension; ///< matched exactly, case included
    std::string_view prefix;    ///< of the first line
    RecordKind record;
    Reader reader;
    gps::TransferKind kind;
};

constexpr std::array kImportKinds{
    ImportKind{"log", "$PMGNTRK", RecordKind::kTracks, acquireTracks, gps::TransferKind::kTracks},
    ImportKind{"upt", "$PMGNWPL", RecordKind::kWaypoints, acquireWayPoints,
               gps::TransferKind::kWaypoints},
    ImportKind{"rte", "$PMGNRTE", RecordKind::kRoutes, acquireRoutes, gps::TransferKind::kRoutes},
    ImportKind{"gs", "$PMGNGEO", RecordKind::kGeocaches, acquireGeoCaches,
               gps::TransferKind::kWaypoints},
};

constexpr char kWrongPlugIn[] = "File may be invalid or this may be the wrong plug-in";

const ImportKind* findKind(std::string_view extension)
{
    const auto found =
        std::find_if(kImportKinds.begin(), kImportKinds.end(),
                     [extension](const ImportKind& k) { return k.extension == extension; });
    return found != kImportKinds.end() ? &*found : nullptr;
}

/// Checks how the first line begins. A file that cannot be opened, or whose path is not ASCII,
/// passes: the reader meets the same problem and reports it.
std::optional<gps::Error> checkFirstLine(const std::string& path, const ImportKind& kind)
{
    std::string front;
    if (!gps::isAscii(path) || gps::FileManager{}.readFront(path, front, kind.prefix.size()))
        return std::nullopt;
    if (front.empty())
        return makeError(ErrorCode::kImportRefused, "Couldn't open file",
                         "File may be missing or this may be the wrong plug-in", path);
    if (front != kind.prefix)
        return makeError(ErrorCode::kImportRefused, "Contents of file unrecognized", kWrongPlugIn,
                         path);
    return std::nullopt;
}

/// Reads a file between the status calls of an import. What the reader itself throws passes on
/// after the last of them.
std::optional<gps::Error> readBracketed(const ImportKind& kind, gps::GPSOutputReceiver& status,
                                        const std::string& path, OperationMonitor& monitor)
{
    std::optional<gps::Error> error;
    std::exception_ptr failure;
    status.startTransfer(kind.kind);
    gps::FileAccount file{.kind = nameOf(kind.record), .path = path};
    try {
        error = kind.reader(status, path, &file);
    } catch (const std::exception& thrown) {
        failure = std::current_exception();
        file.error = makeThrownError(thrown, path);
    }
    OperationAccount{monitor}.addFile(std::move(file));
    status.endTransfer(kind.kind);
    status.gpsStateChange(0);
    if (failure)
        std::rethrow_exception(failure);
    return error;
}

} // namespace

std::optional<gps::Error> MagellanGPSPlugin::importFile(const std::optional<std::string>& path,
                                                        gps::GPSOutputReceiver& status) const
{
    monitor_.begin();
    GuardedStatus guarded{status};
    try {
        return importGuarded(path, guarded);
    } catch (const StatusFailure& failure) {
        guarded.endAfterFailure();
        std::rethrow_exception(failure.cause());
    }
}

std::optional<gps::Error> MagellanGPSPlugin::importGuarded(const std::optional<std::string>& path,
                                                           gps::GPSOutputReceiver& status) const
{
    const auto refuse = [this, &status](gps::Error error) {
        error = logged(std::move(error));
        OperationAccount{monitor_}.addFile({.path = error.path().value_or(""), .error = error});
        status.gpsStateChange(0);
        return error;
    };
    if (!path) { // the one refusal that is reported before it is logged
        status.gpsStateChange(0);
        return logged(makeError(ErrorCode::kImportRefused, "No extension exists on selected file",
                                "Make sure there's an extension"));
    }
    const auto* kind = findKind(gps::pathExtension(*path));
    if (kind == nullptr)
        return refuse(makeError(ErrorCode::kImportRefused,
                                "Unrecognized extension on selected file", kWrongPlugIn, *path));
    if (auto error = checkFirstLine(*path, *kind))
        return refuse(std::move(*error));

    return readBracketed(*kind, status, *path, monitor_);
}

} // namespace magellan
