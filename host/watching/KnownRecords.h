// SPDX-License-Identifier: MIT
// KnownRecords: which records of a device were saved before, kept in a file from one run to the
// next. Used by --new-only. [host thread], but [any] thread may look records up while none
// changes the list.

#pragma once

#include <gps/Error.h>
#include <gps/GPSPlugInProtocol.h>
#include <gps/Value.h>
#include <platform/System/FileSystem.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace host {

/// What identifies the selected device of a driver: its serial number, which is the same wherever
/// it is mounted, or the last part of its location.
[[nodiscard]] std::string identifierOf(const gps::GPSPlugInProtocol& driver,
                                       const std::string& location);

/// Where the lists of all devices are kept. @return  nullopt if the user has no folder for state
[[nodiscard]] std::optional<std::string> knownRecordsFolder();

/// The list of one device in a folder of lists.
[[nodiscard]] std::string knownRecordsFile(const std::string& folder,
                                           const std::string& identifier);

/// Records with equal keys count as the same record.
using RecordKeys = std::set<std::string, std::less<>>;

/// The key of a waypoint or a geocache: everything in it counts.
[[nodiscard]] std::string wayPointKey(const gps::GPSPoint& point, const gps::Dictionary& record);

/// A hash of everything added so far, for records that arrive in pieces.
class Digest {
public:
    void add(const gps::Dictionary& record);
    void add(const gps::GPSPoint& point);

    /// Empty until something is added.
    [[nodiscard]] const std::string& text() const noexcept { return text_; }

private:
    void add(const std::string& json);

    std::string text_;
};

/// The key of a route: everything in it and in its points counts.
[[nodiscard]] std::string routeKey(const Digest& content);

/// The key of a track: its first time, its number of points and these points. Its name does not
/// count, since a device may rename a track.
/// @param content  of the points. Empty: the key by which older versions knew a track with a first
///                 time
[[nodiscard]] std::string trackKey(std::int64_t firstTime, std::size_t points,
                                   const Digest& content);

class KnownRecords {
public:
    /// @param path   the list's file; it need not exist
    /// @param files  the system to work on; must outlive this object
    explicit KnownRecords(std::string path, gps::FileSystem& files = gps::FileSystem::system());

    /// Reads the file. A damaged file is renamed, and one that cannot be read is not changed, not
    /// by add() either; the list is empty then. A missing file is an empty list.
    /// @return  what is wrong with the file, which the user should know about
    [[nodiscard]] std::optional<gps::Error> load();

    [[nodiscard]] bool contains(std::string_view key) const
    {
        return keys_.find(key) != keys_.end();
    }

    /// Whether any known track starts at this time.
    [[nodiscard]] bool hasTrackFrom(std::int64_t firstTime) const;

    /// Adds keys and replaces the file. The key of a track replaces the one without content that an
    /// older version stored. After a load() that could not read the file, does nothing: what it
    /// holds would be lost.
    /// @return  why it cannot be written; the old file is unchanged
    [[nodiscard]] std::optional<gps::Error> add(const RecordKeys& keys);

private:
    [[nodiscard]] gps::Error moveDamagedFile() const;

    gps::FileSystem& files_;
    std::string path_;
    bool isUnreadable_ = false; // the file exists, but nobody knows what it holds
    RecordKeys keys_;
};

} // namespace host
