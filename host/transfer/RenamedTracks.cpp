// SPDX-License-Identifier: MIT
// One look-up that fails can move several tracks: the next one gets the name that was skipped. So a
// file with a planned name can hold another planned track.

#include "host/transfer/RenamedTracks.h"

#include <platform/System/FileManager.h>
#include <platform/System/Paths.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <utility>

namespace host {
namespace {

using Result = SentFile::Result;

std::string trackFolderOf(const std::string& path)
{
    return std::filesystem::path{path}.parent_path().string();
}

bool isNewTrack(const gps::PlannedFile& file)
{
    return file.kind == "tracks" && file.action == gps::PlannedFile::Action::kCreate;
}

bool isMissed(const gps::PlannedFile& planned, const SentFile& file)
{
    return isNewTrack(planned) &&
           (file.result == Result::kMissing || file.result == Result::kDifferent ||
            file.result == Result::kUnreadable);
}

// The paths of the files in a folder. Hidden ones are left out: a device does not list them.
// @param isWhole  out: whether the folder could be listed to its end
std::set<std::string> filesIn(const std::string& folder, bool& isWhole)
{
    std::set<std::string> paths;
    auto entries = gps::FileManager{}.enumerator(folder);
    while (const auto entry = entries.next()) {
        entries.skipDescendants();
        if (!entry->isFolder && !entry->relativePath.starts_with('.'))
            paths.insert(gps::joinPath(folder, entry->relativePath));
    }
    isWhole = entries.failure() == 0;
    return paths;
}

} // namespace

RenamedTracks::RenamedTracks(const gps::SendPlan& plan)
{
    std::set<std::string> folders;
    for (const auto& file : plan.files) {
        if (isNewTrack(file))
            folders.insert(trackFolderOf(file.path));
    }
    for (const auto& folder : folders) {
        bool isWhole = false;
        auto paths = filesIn(folder, isWhole);
        if (isWhole)
            before_.emplace(folder, std::move(paths));
    }
}

void RenamedTracks::find(const gps::SendPlan& plan, std::vector<SentFile>& files) const
{
    std::set<std::string> folders;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (isMissed(plan.files[i], files[i]))
            folders.insert(trackFolderOf(files[i].path));
    }
    for (const auto& folder : folders) {
        if (before_.contains(folder))
            findIn(folder, plan, files);
    }
}

void RenamedTracks::findIn(const std::string& folder, const gps::SendPlan& plan,
                           std::vector<SentFile>& files) const
{
    std::vector<std::size_t> missed; // indices
    std::set<std::string> written;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (isMissed(plan.files[i], files[i]) && trackFolderOf(files[i].path) == folder)
            missed.push_back(i);
        else if (files[i].result == Result::kWritten)
            written.insert(files[i].path);
    }
    bool isWhole = false; // a file that was listed is there in any case
    const auto& before = before_.at(folder);
    for (const auto& path : filesIn(folder, isWhole)) {
        std::string content;
        if (before.contains(path) || written.contains(path) ||
            gps::FileManager{}.readFile(path, content))
            continue;
        const auto found = std::find_if(missed.begin(), missed.end(), [&](std::size_t index) {
            return plan.files[index].content == content &&
                   gps::pathExtension(path) == gps::pathExtension(plan.files[index].path);
        });
        if (found == missed.end())
            continue;
        files[*found].result = Result::kRenamed;
        files[*found].writtenPath = path;
        missed.erase(found);
    }
}

} // namespace host
