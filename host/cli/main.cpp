// SPDX-License-Identifier: MIT
// The entry point of magellangps. Makes sure that the standard streams exist, then runs the
// program.

#include "host/cli/Commands.h"
#include "host/operations/Operation.h"

#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace {

/// Opens /dev/null, read-only, on every standard stream that is closed. Otherwise the next file
/// that the program opens would get the stream's number, and what is meant for the stream would be
/// written into that file.
void openClosedStandardStreams()
{
    int file = STDIN_FILENO;
    while (file >= 0 && file <= STDERR_FILENO) // open() returns the lowest free number
        file = ::open("/dev/null", O_RDONLY);
    if (file >= 0)
        ::close(file);
}

} // namespace

int main(int argc, char** argv)
{
    openClosedStandardStreams();
    const auto status = static_cast<int>(host::runProgram(argc, argv));
    if (host::hasAbandonedOperation()) { // its thread must not meet destroyed objects
        std::fflush(nullptr);
        std::_Exit(status);
    }
    return status;
}
