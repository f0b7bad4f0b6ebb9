// SPDX-License-Identifier: MIT
// How the driver imports one file: its extension and its first line say what it is, the kind's
// reader does the rest.

#include "../common/Errors.h"
#include "../common/FolderWalk.h"
#include "DeviceFileReaders.h"
#include "MagellanGPSPlugin.h"

#include <gps/GPSOutputReceiver.h>
#include <platform/System/Ascii.h>
#include <platform/System/FileManager.h>

#include <algorithm>
#include <array>

namespace magellan {
namespace {

/// What a file of one extension must hold. Extensions match exactly, case included.
struct ImportKind {
    std::string_view extension;
    std::string_view prefix; ///< what the first line must begin with
    Reader reader;
    gps::TransferKind kind;
};

constexpr std::array kKinds{
    ImportKind{"log", "$PMGNTRK", acquireTracks, gps::TransferKind::kTracks},
    ImportKind{"upt", "$PMGNWPL", acquireWayPoints, gps::TransferKind::kWaypoints},
    ImportKind{"rte", "$PMGNRTE", acquireRoutes, gps::TransferKind::kRoutes},
    ImportKind{"gs", "$PMGNGEO", acquireGeoCaches, gps::TransferKind::kWaypoints},
};

constexpr char kWrongPlugIn[] = "File may be invalid or this may be the wrong plug-in";

const ImportKind* kindOf(std::string_view extension)
{
    const auto at = std::find_if(kKinds.begin(), kKinds.end(), [extension](const ImportKind& k) {
        return k.extension == extension;
    });
    return at != kKinds.end() ? &*at : nullptr;
}

/// Looks at the first line. A file that cannot be opened here, or whose path is not ASCII, is not
/// refused: the reader meets the same trouble and says so.
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

/// The status calls around an import's reader; the closing ones are made also when it throws.
class TransferBracket {
public:
    TransferBracket(gps::GPSOutputReceiver& status, gps::TransferKind kind)
        : status_(status), kind_(kind)
    {
        status_.startTransfer(kind_);
    }
    ~TransferBracket()
    {
        status_.endTransfer(kind_);
        status_.gpsStateChange(0);
    }
    TransferBracket(const TransferBracket&) = delete;
    TransferBracket& operator=(const TransferBracket&) = delete;

private:
    gps::GPSOutputReceiver& status_;
    gps::TransferKind kind_;
};

} // namespace

std::optional<gps::Error> MagellanGPSPlugin::importFile(const std::optional<std::string>& path,
                                                        gps::GPSOutputReceiver& status) const
{
    const auto refuse = [this, &status](gps::Error error) {
        error = logged(std::move(error));
        status.gpsStateChange(0);
        return error;
    };
    if (!path) { // the one refusal of which the host hears before the log does
        status.gpsStateChange(0);
        return logged(makeError(ErrorCode::kImportRefused, "No extension exists on selected file",
                                "Make sure there's an extension"));
    }
    const auto* kind = kindOf(gps::pathExtension(*path));
    if (kind == nullptr)
        return refuse(makeError(ErrorCode::kImportRefused,
                                "Unrecognized extension on selected file", kWrongPlugIn, *path));
    if (auto error = checkFirstLine(*path, *kind))
        return refuse(std::move(*error));

    const TransferBracket bracket{status, kind->kind};
    return kind->reader(status, *path);
}

} // namespace magellan
