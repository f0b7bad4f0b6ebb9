// SPDX-License-Identifier: MIT
// Linked into every target: what it replaces in other libraries, so that its time goes into the
// code under test. A hidden function would replace nothing in a shared library.

#include "FuzzTarget.h"

#include <dlfcn.h>
#include <syslog.h>

extern "C" {

/// The code under test logs a line for each sentence that it cannot use, and where no system log
/// runs, each line costs three system calls: more than all the rest of a small input.
void syslog(int /*priority*/, const char* /*format*/, ...) {}

/// Settings of AddressSanitizer. It holds back 16 MiB of freed memory instead of 256, because no
/// input uses more, and records no callers of allocations. To see these in a report, run the input
/// again with ASAN_OPTIONS=malloc_context_size=30.
const char* __asan_default_options()
{
    return "quarantine_size_mb=16:malloc_context_size=1";
}

/// Called by the fuzzer before the first input.
int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    fuzz::require(dlsym(RTLD_DEFAULT, "syslog") == reinterpret_cast<void*>(&syslog),
                  "nothing is sent to the system log");
    return 0;
}
}
