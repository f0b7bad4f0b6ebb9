// SPDX-License-Identifier: MIT
// The program's entry.

#include "host/cli/Commands.h"

int main(int argc, char** argv)
{
    return static_cast<int>(host::runProgram(argc, argv));
}
