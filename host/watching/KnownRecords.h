// SPDX-License-Identifier: MIT
// KnownRecords: which records of a device have been saved already, kept in a file from one run to
// the next. [host thread], but what is known may be asked on another thread meanwhile.

#pragma once

#include <gps/Error.h>
#include <gps/Value.h>
#include <platform/System/FileSystem.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace host {

/// What tells records apart, a text each. Records with the same key are the same.
using RecordKeys = std::set<std::string, std::less<>>;

/// A waypoint or a geocache: all that it holds.
[[nodiscard]] std::string wayPointKey(const gps::GPSPoint& point, const gps::Dictionary& record);

/// A hash of everything given to it so far, for what comes in pieces.
class Digest {
public:
    void add(const gps::Dictionary& record);
    void add(const gps::GPSPoint& point);

    [[nodiscard]] const std::string& text() const noexcept { return text_; }

private:
    void add(const std::string& json);

    std::string text_;
};

/// A route: all that it and its points hold.
[[nodiscard]] std::string routeKey(const Digest& content);

/// A track: its first time and how many points it has. One that begins without a moment has no such
/// time: its content counts.
[[nodiscard]] std::string trackKey(std::int64_t firstTime, std::size_t points,
                                   const Digest& content);

class KnownRecords {
public:
    /// @param path   the file; it need not exist
    /// @param files  the system to work on; must outlive this object
    explicit KnownRecords(std::string path, gps::FileSystem& files = gps::FileSystem::system());

    /// Reads the file. One that is damaged is put aside, and nothing is known then.
    /// @return  what the user should know of that
    [[nodiscard]] std::optional<gps::Error> load();

    [[nodiscard]] bool contains(std::string_view key) const
    {
        return keys_.find(key) != keys_.end();
    }

    /// Whether any known track begins at this time.
    [[nodiscard]] bool hasTrackFrom(std::int64_t firstTime) const;

    /// Adds keys and writes the file, whole or not at all. @return  why it is not written
    [[nodiscard]] std::optional<gps::Error> add(const RecordKeys& keys);

private:
    [[nodiscard]] gps::Error putAside() const;

    gps::FileSystem& files_;
    std::string path_;
    RecordKeys keys_;
};

} // namespace host
