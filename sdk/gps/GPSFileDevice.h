// SPDX-License-Identifier: MIT
// GPSFileDevice: optional interface of a driver whose devices store their data as files. It lets a
// host back up the device before a send, show what the send will do, and verify the result. A host
// asks a driver for it with dynamic_cast; the object is the driver itself. [host thread]

#pragma once

#include <gps/Error.h>
#include <gps/SharedText.h>
#include <gps/Value.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gps {

class GPSOutputReceiver;

/// What a send would do with one file of the device.
struct PlannedFile {
    enum class Action {
        kCreate, ///< the file does not exist yet and would be written
        kMerge,  ///< the file exists; its records and the sent ones would be written to it
        kSkip,   ///< the file would not be written, because of `error` or because there is
                 ///< nothing to write
    };

    std::string path; ///< absolute
    Action action = Action::kSkip;
    SharedText content; ///< the complete file, byte for byte; meaningless for kSkip

    /// kSkip: why the file cannot be written. kMerge: why its present content cannot be read; the
    /// send would replace that content. Empty otherwise.
    std::optional<Error> error;

    /// "tracks", "waypoints", "geocaches" or "routes". A file has records of one kind only.
    std::string_view kind{};

    /// kMerge: how many lines of the present file the merged one would not hold, because they are
    /// damaged, incomplete or of another kind, or because a later record has the same name.
    std::size_t droppedLines = 0;
};

/// A field of the sent records that the device does not store.
struct LostField {
    std::string_view kind;  ///< as in PlannedFile
    std::string_view field; ///< "name", "time", or "altitude" where it is unknown and 0 is stored

    /// How many records lose it: tracks if it is "name", otherwise waypoints, geocaches or the
    /// points of tracks and routes.
    std::size_t records = 0;
};

/// What a send would do.
struct SendPlan {
    std::vector<PlannedFile> files;      ///< in writing order
    std::vector<LostField> lostFields{}; ///< each kind and field once

    /// One sentence for the user per text, symbol or record that the device would store changed,
    /// incompletely or not at all.
    std::vector<std::string> remarks{};
};

/// Gets one record at a time: the key of its kind, "waypoint" (geocaches included), "route" or
/// "track", and the record with its point under "point", which is valid during the call.
using RecordVisitor = std::function<void(std::string_view key, const Dictionary& record)>;

/// Chooses records by the key of their kind, as for a RecordVisitor, and their name.
using RecordFilter = std::function<bool(std::string_view key, std::string_view name)>;

/// Gets one position at a time: "waypoint" (geocaches included), "route" for a route's point, or
/// "track" for a track point, and the point.
using PointVisitor = std::function<void(std::string_view key, const GPSPoint& point)>;

/// A file of a device, as it was read.
struct DeviceFile {
    std::string path;   ///< absolute
    SharedText content; ///< byte for byte; empty if the file could not be read

    /// Why the file's records are missing from a snapshot: it could not be read, or it is not text.
    std::optional<Error> error;
};

/// The waypoints, geocaches and routes of a device as they were at one time. It is a copy: it never
/// touches the device again, except that `planSend` checks whether files can be written.
class DeviceSnapshot {
public:
    virtual ~DeviceSnapshot() = default;

    /// The files that were read, each once, in the order in which a download reads them. Track
    /// files are not among them.
    [[nodiscard]] virtual const std::vector<DeviceFile>& files() const = 0;

    /// Why files may be missing from the snapshot, or belong to another receiver's folders: what
    /// describes the device, or a folder of it, exists but could not be read. Empty if the snapshot
    /// is complete. A send or a backup that is based on an incomplete one can lose data.
    [[nodiscard]] virtual const std::vector<Error>& failures() const = 0;

    /// The device's own identifier; as `GPSFileDevice::deviceIdentifier`.
    [[nodiscard]] virtual const std::optional<std::string>& identifier() const = 0;

    /// The folders that hold the device's data, those of tracks included; as
    /// `GPSFileDevice::dataFolders`.
    [[nodiscard]] virtual std::vector<std::string> dataFolders() const = 0;

    /// Visits the waypoints, geocaches and routes in the files, as a download reports them. Decodes
    /// them at each call, so that memory does not grow with the number of waypoints. A file with an
    /// error, or with a damaged sentence, contributes nothing.
    virtual void visitRecords(const RecordVisitor& visit) const = 0;

    /// Visits only those that a filter chooses, and decodes no other waypoint or geocache: a host
    /// that looks for a few names in a large file is done with it sooner.
    virtual void visitChosenRecords(const RecordFilter& isChosen,
                                    const RecordVisitor& visit) const = 0;

    /// Reads the files of tracks, which the snapshot does not hold, and reports each track as a
    /// download does. What cannot be read is skipped.
    virtual void reportTracks(GPSOutputReceiver& status) const = 0;

    /// Returns what `gpsRunSend:withStatus:andOptions:` would do with this data if the device's
    /// files still were as they are in the snapshot. If they are, that operation with the same data
    /// takes the contents from the last plan while the snapshot exists, and is sooner done.
    /// @param data  as for the send: arrays of records under "track", "waypoint" and "route"
    [[nodiscard]] virtual SendPlan planSend(const Dictionary& data) const = 0;
};

/// Operations return copies that the caller owns. None of them writes to the device or changes the
/// driver.
class GPSFileDevice {
public:
    virtual ~GPSFileDevice() = default;

    /// The selected device's own identifier, such as a serial number; read from the device at each
    /// call. Returns nullopt if no device is selected or it has no identifier.
    [[nodiscard]] virtual std::optional<std::string> deviceIdentifier() const = 0;

    /// Absolute paths of the folders that hold the selected device's data; read from the device at
    /// each call. Missing folders are left out; empty if no device is selected.
    [[nodiscard]] virtual std::vector<std::string> dataFolders() const = 0;

    /// Reads the selected device, opening each file once.
    /// @return  null if no device is selected or its folders are unknown
    [[nodiscard]] virtual std::unique_ptr<DeviceSnapshot> takeSnapshot() const = 0;

    /// The characters that a device can store. All others are removed from a text before it is
    /// written.
    [[nodiscard]] virtual std::string deviceCharacters() const = 0;

    /// The length, in characters, to which the name of a waypoint or route is cut.
    [[nodiscard]] virtual std::size_t longestName() const = 0;

    /// Decodes the content of a file and visits its records. Of several waypoints with one name,
    /// visits all. A damaged sentence ends the visit. Does not read the device.
    /// @param path  decides the kind of the records, by its extension
    virtual void visitRecordsIn(std::string_view path, std::string_view content,
                                const RecordVisitor& visit) const = 0;

    /// Does the same for only the points of the records, in the order of the file. A host that
    /// looks for a million track points then needs no record for each.
    virtual void visitPointsIn(std::string_view path, std::string_view content,
                               const PointVisitor& visit) const = 0;

    /// The code that a device stores for a symbol. Two symbols with the same code are one symbol to
    /// the device.
    /// @param symbol  a record's "symbol"; empty if it has none
    [[nodiscard]] virtual std::string deviceSymbol(std::string_view symbol) const = 0;
};

/// Optional interface of a GPSFileDevice whose files of routes can hold points that no route of the
/// file uses. A merge keeps them under their names, so that a host must not give these names to
/// other points. A host asks a driver for it with dynamic_cast; one without it has no such points.
/// [host thread]
class GPSUnusedRoutePoints {
public:
    virtual ~GPSUnusedRoutePoints() = default;

    /// Decodes the content of a file and visits the records of these points, as those under the
    /// "points" of a route. A file with a damaged sentence has none. Does not read the device.
    /// @param path   decides the kind of the file, by its extension
    /// @param visit  gets a record, which is valid during the call
    virtual void
    visitUnusedRoutePointsIn(std::string_view path, std::string_view content,
                             const std::function<void(const Dictionary& record)>& visit) const = 0;
};

} // namespace gps
