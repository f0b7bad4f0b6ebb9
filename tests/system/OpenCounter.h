// SPDX-License-Identifier: MIT
// Counts how often any process opens each file below a folder, before and after it is replaced.

#pragma once

#include <array>
#include <filesystem>
#include <map>
#include <set>
#include <stdexcept>
#include <string>

#include <sys/inotify.h>
#include <unistd.h>

namespace support {

class OpenCounter {
public:
    struct Opens {
        int before = 0; ///< the total for a file that is not replaced
        int after = 0;
    };

    /// Starts to count. Folders that are made later are not watched.
    explicit OpenCounter(const std::string& folder) : queue_(::inotify_init1(IN_NONBLOCK))
    {
        watch(folder, "");
        for (const auto& entry : std::filesystem::recursive_directory_iterator{folder}) {
            if (entry.is_directory())
                watch(entry.path().string(),
                      entry.path().lexically_relative(folder).string() + '/');
        }
    }
    ~OpenCounter() { ::close(queue_); }
    OpenCounter(const OpenCounter&) = delete;
    OpenCounter& operator=(const OpenCounter&) = delete;

    /// What was counted so far, by the path below the folder. Hidden files are left out.
    [[nodiscard]] std::map<std::string, Opens> opens()
    {
        alignas(inotify_event) std::array<char, 65536> events{};
        ssize_t size = 0;
        while ((size = ::read(queue_, events.data(), events.size())) > 0) {
            for (ssize_t at = 0; at < size;) {
                const auto* const event = reinterpret_cast<const inotify_event*>(
                    &events.at(static_cast<std::size_t>(at)));
                count(*event);
                at += static_cast<ssize_t>(sizeof *event + event->len);
            }
        }
        return opens_;
    }

private:
    void watch(const std::string& folder, const std::string& prefix)
    {
        const int id = ::inotify_add_watch(queue_, folder.c_str(), IN_OPEN | IN_MOVED_TO);
        if (id < 0)
            throw std::runtime_error{"cannot watch " + folder};
        prefixes_[id] = prefix;
    }

    void count(const inotify_event& event)
    {
        if (event.mask & IN_Q_OVERFLOW)
            throw std::runtime_error{"too many opens to count"};
        if ((event.mask & IN_ISDIR) != 0 || event.len == 0 || event.name[0] == '.')
            return;
        const auto path = prefixes_.at(event.wd) + event.name;
        if (event.mask & IN_MOVED_TO)
            replaced_.insert(path);
        else
            ++(replaced_.contains(path) ? opens_[path].after : opens_[path].before);
    }

    int queue_;
    std::map<int, std::string> prefixes_; // by watch
    std::map<std::string, Opens> opens_;
    std::set<std::string> replaced_;
};

} // namespace support
