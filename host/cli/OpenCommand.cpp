// SPDX-License-Identifier: MIT
// `open`: a download into a page in the user's cache folder, which the desktop's browser then
// shows. Nobody knows when the browser has read it, so the page stays until the next one.

#include "host/base/HostError.h"
#include "host/cli/Browser.h"
#include "host/cli/Commands.h"
#include "host/files/StateFolder.h"

#include <fmt/format.h>

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include <sys/stat.h>

namespace host {
namespace {

namespace fs = std::filesystem;

// Creates the folder of the page, which shows where its user has been: nobody else may read it.
std::optional<gps::Error> prepareFolder(std::string& folder)
{
    const auto cache = cacheFolder();
    if (!cache)
        return hostError("There is no folder for the page: the user has no home folder",
                         "Name a file with \"acquire -o page.html\"");
    folder = *cache;
    std::error_code error;
    if (!fs::create_directories(folder, error) && error)
        return systemError("The folder for the page cannot be created",
                           "Name a file with \"acquire -o page.html\"", folder, error.value());
    fs::permissions(folder, fs::perms::owner_all, error);
    return std::nullopt;
}

// A page, and whether a download has replaced it. A new file has another inode than the one that it
// replaces, since there are both for a moment.
class Page {
public:
    explicit Page(fs::path path) : path_(std::move(path)), before_(inode()) {}

    [[nodiscard]] bool isNew() const { return inode() != 0 && inode() != before_; }
    [[nodiscard]] std::string path() const { return path_.string(); }

    void remove() const
    {
        std::error_code ignored;
        fs::remove(path_, ignored);
    }

private:
    // 0 without a page.
    [[nodiscard]] ino_t inode() const
    {
        struct stat present;
        return ::stat(path_.c_str(), &present) == 0 ? present.st_ino : 0;
    }

    fs::path path_;
    ino_t before_;
};

ExitStatus download(const PlugInBundle& plugIn, const OpenOptions& options, const std::string& page,
                    const Console& console)
{
    AcquireOptions acquire = static_cast<const AcquireOptions&>(options);
    acquire.output = page;
    acquire.format = findFormat("html");
    if (options.files.empty())
        return runAcquire(plugIn, acquire, console);
    return runImport(plugIn, {static_cast<const DownloadOptions&>(acquire), options.files},
                     console);
}

// @param status  of the download
ExitStatus show(const std::string& page, ExitStatus status, const Console& console)
{
    if (!hasDesktop()) {
        console.note("There is no desktop here. Copy the page to where there is a browser.");
        const auto printed = print(page + "\n", console);
        return status == ExitStatus::kSuccess ? printed : status;
    }
    if (const auto failure = openInBrowser(page)) {
        console.error(*failure);
        return status == ExitStatus::kSuccess ? ExitStatus::kFailed : status;
    }
    console.note(
        fmt::format("The browser shows the page {}, which is kept until the next one.", page));
    return status;
}

} // namespace

ExitStatus runOpen(const PlugInBundle& plugIn, const OpenOptions& options, const Console& console)
{
    std::string folder;
    if (const auto failure = prepareFolder(folder)) {
        console.error(*failure);
        return ExitStatus::kFailed;
    }
    const Page complete{fs::path{folder} / "page.html"};
    const Page partial{fs::path{folder} / "page.partial.html"}; // of a download that was cut short
    const auto status = download(plugIn, options, complete.path(), console);
    if (status >= statusAfterSignal(0))
        return status;
    if (complete.isNew()) {
        partial.remove();
        return show(complete.path(), status, console);
    }
    return partial.isNew() ? show(partial.path(), status, console) : status;
}

} // namespace host
