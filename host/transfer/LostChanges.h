// SPDX-License-Identifier: MIT
// LostChanges: notices that a driver has undone another program's change of the same file. A driver
// reads a file, merges into it and renames the result over it; what another program does to the
// file in between is gone, and the file is as planned. Used by performSend(). [host thread]

#pragma once

#include <gps/GPSFileDevice.h>
#include <platform/System/OpenFile.h>

#include <cstdint>
#include <map>
#include <string>

struct inotify_event;

namespace host {

class LostChanges {
public:
    enum class Change {
        kNone,
        kWritten,  ///< the file's content was changed
        kReplaced, ///< another file, or a link, is in its place
        kDeleted,
    };

    /// Begins to watch the folders of the planned files. What cannot be watched has no lost
    /// changes. Precondition: the driver has not started.
    explicit LostChanges(const gps::SendPlan& plan);

    /// Ends the watch. Call this before the files are read again.
    void end();

    /// The last change of a file that the driver has undone.
    /// @param isAsPlanned  whether the file holds exactly what was planned, and so no change at all
    [[nodiscard]] Change find(const std::string& path, bool isAsPlanned) const;

private:
    struct File {
        bool isNew;                             // did not exist before
        Change change = Change::kNone;          // by another program
        Change changeSinceRead = Change::kNone; // since it was last opened for reading only
        Change lost = Change::kNone;            // that one, when a driver wrote over it
        bool wasWritten = false;                // by a driver, which had finished the file
    };

    void readEvents();
    void add(const inotify_event& event);
    static Change changeBy(const inotify_event& event, const File& file) noexcept;

    gps::OpenFile watch_;
    std::map<int, std::string> folders_; // by the number of the watch
    std::map<std::string, File> files_;  // planned ones, by path
    std::uint32_t finished_ = 0;         // number of the rename of a finished file; 0: none
};

} // namespace host
