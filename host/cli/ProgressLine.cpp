// SPDX-License-Identifier: MIT
// Writes to the terminal without blocking.

#include "host/cli/ProgressLine.h"

#include "host/words/ProgressText.h"

#include <cstdlib>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

namespace host {
namespace {

// Sources: ECMA-48 for erasing; the VT100's private mode 7 for wrapping.
constexpr char kBegin[] = "\r\033[?7l";   // no wrapping: a narrow terminal cuts the line instead
constexpr char kEnd[] = "\033[K\033[?7h"; // erases what is left of a longer line
constexpr char kErase[] = "\r\033[K";

} // namespace

// With -v, the log's lines and the progress line would run into each other on standard error.
bool canShowProgress(const GlobalOptions& options, bool isStandardOutputBusy)
{
    if (options.quiet || options.verbose)
        return false;
    const char* const terminal = std::getenv("TERM");
    if (terminal != nullptr && terminal == std::string_view{"dumb"})
        return false;
    return ::isatty(STDERR_FILENO) == 1 && !(isStandardOutputBusy && ::isatty(STDOUT_FILENO) == 1);
}

// Opened again instead of duplicated: O_NONBLOCK belongs to the open file description, which other
// processes share with standard error.
ProgressLine::ProgressLine(bool isShown)
    : terminal_(isShown ? ::open("/proc/self/fd/2", O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)
                        : -1)
{}

ProgressLine::~ProgressLine()
{
    if (terminal_ >= 0)
        ::close(terminal_);
}

void ProgressLine::show(const TransferProgress& progress) const
{
    if (terminal_ < 0)
        return;
    const auto text = progress.phase == TransferPhase::kFinished
                          ? std::string{kErase}
                          : kBegin + progressText(progress) + kEnd;
    // A terminal that was stopped with Ctrl-S takes nothing. Waiting for it would hold up the
    // download, whose thread this is.
    (void)!::write(terminal_, text.data(), text.size());
}

ProgressCallback ProgressLine::callback() const
{
    if (terminal_ < 0)
        return {};
    return [this](const TransferProgress& progress) { show(progress); };
}

} // namespace host
