// SPDX-License-Identifier: MIT
// RenamedTracks: finds the tracks that a driver has written under other names than planned, because
// a name was taken in the meantime or could not be looked up. Used by performSend(). [host thread]

#pragma once

#include "host/transfer/SendCheck.h"

#include <gps/GPSFileDevice.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace host {

class RenamedTracks {
public:
    /// Lists the folders to which a plan adds tracks. Precondition: nothing has been sent yet.
    explicit RenamedTracks(const gps::SendPlan& plan);

    /// Looks for each planned track that is not in its file: a file that is new since the
    /// constructor and has exactly the track's content is that track. Each file is one track only.
    /// Finds nothing in a folder that the constructor could not list, because it is not known which
    /// of its files are new.
    /// @param files  in and out: the results, in the plan's order
    void find(const gps::SendPlan& plan, std::vector<SentFile>& files) const;

private:
    void findIn(const std::string& folder, const gps::SendPlan& plan,
                std::vector<SentFile>& files) const;

    std::map<std::string, std::set<std::string>> before_; // paths of files, by folder
};

} // namespace host
