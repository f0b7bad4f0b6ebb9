// SPDX-License-Identifier: MIT
// The entry point of magellangps. Makes sure that the standard streams exist and that a lack of
// memory ends the program in an orderly way, then runs it.

#include "host/cli/Commands.h"
#include "host/operations/Operation.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

namespace {

/// Opens /dev/null on every standard stream that is closed. Otherwise the next file that the
/// program opens would get the stream's number, and what is meant for the stream would be written
/// into that file. Read-only, so that writing to a closed standard output is still an error.
void openClosedStandardStreams()
{
    int file = STDIN_FILENO;
    while (file >= 0 && file <= STDERR_FILENO) // open() returns the lowest free number
        file = ::open("/dev/null", O_RDONLY);
    if (file >= 0)
        ::close(file);
}

// Whether an allocation of this thread has failed. A function that must not throw may end the
// program without catching the exception first, as some of the standard library do; then nobody can
// ask for the exception's type.
thread_local bool hasMemoryRunOut = false;

/// The program's new-handler: operator new calls it when an allocation fails.
[[noreturn]] void reportLackOfMemory()
{
    hasMemoryRunOut = true;
    throw std::bad_alloc{};
}

/// Ends the program with a message if memory has run out where no handler is: on a driver's thread,
/// or in a function that must not throw. Files get their names only when they are complete, so
/// there is nothing to undo. Any other exception is a defect, and leaves a core.
[[noreturn]] void leaveForLackOfMemory() noexcept
{
    constexpr std::string_view kText = "magellangps: There is not enough memory. Close other "
                                       "programs, and try again.\n";
    try {
        if (const auto current = std::current_exception())
            std::rethrow_exception(current);
        if (hasMemoryRunOut && std::uncaught_exceptions() > 0)
            throw std::bad_alloc{};
    } catch (const std::bad_alloc&) {
        (void)!::write(STDERR_FILENO, kText.data(), kText.size());
        std::_Exit(static_cast<int>(host::ExitStatus::kFailed));
    } catch (...) {
        std::abort();
    }
    std::abort();
}

} // namespace

int main(int argc, char** argv)
{
    openClosedStandardStreams();
    std::set_new_handler(reportLackOfMemory);
    std::set_terminate(leaveForLackOfMemory);
    const auto status = static_cast<int>(host::runProgram(argc, argv));
    if (host::hasAbandonedOperation()) { // its thread must not meet destroyed objects
        std::fflush(nullptr);
        std::_Exit(status);
    }
    return status;
}
