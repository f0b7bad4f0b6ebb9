// SPDX-License-Identifier: MIT
// A driver's own write is recognised by the name of its unfinished file. Every other change is
// another program's, if there was such a write at all: a driver may also write into the file
// itself.

#include "host/transfer/LostChanges.h"

#include "host/files/TemporaryName.h"

#include <platform/System/FileSystem.h>
#include <platform/System/Paths.h>

#include <array>
#include <cstddef>
#include <filesystem>

#include <sys/inotify.h>
#include <unistd.h>

namespace host {
namespace {

constexpr std::uint32_t kEvents =
    IN_MODIFY | IN_MOVED_FROM | IN_MOVED_TO | IN_CREATE | IN_DELETE | IN_CLOSE_NOWRITE;

bool isAny(const inotify_event& event, std::uint32_t kind) noexcept
{
    return (event.mask & kind) != 0;
}

} // namespace

LostChanges::LostChanges(const gps::SendPlan& plan)
    : watch_(gps::FileSystem::system(), ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
    for (const auto& file : plan.files) {
        if (!watch_ || file.action == gps::PlannedFile::Action::kSkip)
            continue;
        const auto folder = std::filesystem::path{file.path}.parent_path().string();
        const int number = ::inotify_add_watch(watch_.get(), folder.c_str(), kEvents);
        if (number < 0)
            continue;
        folders_[number] = folder; // a folder keeps its number when it is added again
        files_.try_emplace(file.path,
                           File{.isNew = file.action == gps::PlannedFile::Action::kCreate});
    }
}

void LostChanges::end()
{
    if (watch_)
        readEvents();
    (void)watch_.close();
}

LostChanges::Change LostChanges::find(const std::string& path, bool isAsPlanned) const
{
    const auto found = files_.find(path);
    if (found == files_.end() || !found->second.wasWritten)
        return Change::kNone;
    return isAsPlanned ? found->second.change : found->second.lost;
}

void LostChanges::readEvents()
{
    constexpr std::size_t kRoom = 65536;
    alignas(inotify_event) std::array<char, kRoom> events;
    for (;;) {
        const auto size = ::read(watch_.get(), events.data(), events.size());
        if (size <= 0)
            return;
        for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
            const auto& event = *reinterpret_cast<const inotify_event*>(&events[at]);
            at += sizeof event + event.len;
            add(event);
        }
    }
}

void LostChanges::add(const inotify_event& event)
{
    const auto folder = folders_.find(event.wd);
    if (folder == folders_.end() || event.len == 0)
        return;
    const std::string name{static_cast<const char*>(event.name)};
    if (isAny(event, IN_MOVED_FROM) && isTemporaryName(name))
        finished_ = event.cookie;
    const auto found = files_.find(gps::joinPath(folder->second, name));
    if (found == files_.end())
        return;
    auto& file = found->second;
    if (isAny(event, IN_MOVED_TO) && event.cookie == finished_) {
        file.wasWritten = true;
        file.lost = file.changeSinceRead;
    } else if (isAny(event, IN_CLOSE_NOWRITE)) {
        file.changeSinceRead = Change::kNone;
    } else {
        file.change = file.changeSinceRead = changeBy(event, file);
    }
}

LostChanges::Change LostChanges::changeBy(const inotify_event& event, const File& file) noexcept
{
    if (isAny(event, IN_DELETE | IN_MOVED_FROM))
        return file.isNew ? Change::kNone : Change::kDeleted;
    return isAny(event, IN_CREATE) ? Change::kReplaced : Change::kWritten;
}

} // namespace host
