// SPDX-License-Identifier: MIT
// The program's entry.

#include "host/cli/Commands.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

/// Started with a standard stream closed, the program would get its next open file under that
/// stream's number, and write into it what is meant for the stream. What is put there instead can
/// be neither written nor, having no content, read.
void occupyStandardStreams()
{
    int file = STDIN_FILENO;
    while (file >= 0 && file <= STDERR_FILENO)
        file = ::open("/dev/null", O_RDONLY);
    if (file >= 0)
        ::close(file);
}

} // namespace

int main(int argc, char** argv)
{
    occupyStandardStreams();
    return static_cast<int>(host::runProgram(argc, argv));
}
