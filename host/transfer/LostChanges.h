// SPDX-License-Identifier: MIT
// LostChanges: notices that a driver has written over another program's change of the same file. A
// driver reads a file, merges into it and renames the result over it; what another program writes
// in between is gone, and the file is as planned. Used by performSend(). [host thread]

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
    /// Begins to watch the folders of the planned files. What cannot be watched has no lost
    /// changes. Precondition: the driver has not started.
    explicit LostChanges(const gps::SendPlan& plan);

    /// Ends the watch. Call this before the files are read again.
    void end();

    /// Whether the driver has written over a change of a file.
    /// @param isAsPlanned  whether the file holds exactly what was planned, and so no change at all
    [[nodiscard]] bool has(const std::string& path, bool isAsPlanned) const;

private:
    struct File {
        bool wasChanged = false;          // by another program
        bool wasChangedSinceRead = false; // since it was last opened for reading only
        bool wasReplaced = false;         // by a file that a driver had finished writing
        bool wasLost = false;             // whether it was changed since it was read, at that time
    };

    void readEvents();
    void add(const inotify_event& event);

    gps::OpenFile watch_;
    std::map<int, std::string> folders_; // by the number of the watch
    std::map<std::string, File> files_;  // planned ones, by path
    std::uint32_t finished_ = 0;         // number of the rename of a finished file; 0: none
};

} // namespace host
