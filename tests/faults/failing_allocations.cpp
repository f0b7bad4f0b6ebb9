// SPDX-License-Identifier: MIT
// A library to preload: lets one allocation of a program fail, as when memory has run out. Counts
// from the start of main(), on all threads. The environment variable FAIL_ALLOCATION holds the
// allocation's number, from 1; at the end, the number of allocations is written to the file that
// COUNT_ALLOCATIONS names.

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include <dlfcn.h>

// The C library's own functions, under the names by which a replacement calls them.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

using Main = int (*)(int, char**, char**);

std::atomic<bool> isCounting{false};
std::atomic<unsigned long> count{0};
unsigned long failing = 0;
Main realMain = nullptr;

bool mustFail()
{
    if (!isCounting || ++count != failing)
        return false;
    errno = ENOMEM;
    return true;
}

/// Precondition: the text consists of digits.
unsigned long numberIn(const char* text)
{
    unsigned long number = 0;
    for (; *text != '\0'; ++text)
        number = 10 * number + static_cast<unsigned long>(*text - '0');
    return number;
}

int countingMain(int argc, char** argv, char** environment)
{
    if (const char* const number = std::getenv("FAIL_ALLOCATION"))
        failing = numberIn(number);
    isCounting = true;
    return realMain(argc, argv, environment);
}

[[gnu::destructor]] void report()
{
    isCounting = false;
    const char* const path = std::getenv("COUNT_ALLOCATIONS");
    std::FILE* const file = path != nullptr ? std::fopen(path, "w") : nullptr;
    if (file == nullptr)
        return;
    std::fprintf(file, "%lu\n", count.load());
    std::fclose(file);
}

} // namespace

extern "C" {

int __libc_start_main(Main entry, int argc, char** argv, void (*init)(), void (*fini)(),
                      void (*linkerFini)(), void* stackEnd)
{
    realMain = entry;
    const auto start =
        reinterpret_cast<decltype(&__libc_start_main)>(::dlsym(RTLD_NEXT, "__libc_start_main"));
    return start(countingMain, argc, argv, init, fini, linkerFini, stackEnd);
}

void* malloc(std::size_t size)
{
    return mustFail() ? nullptr : __libc_malloc(size);
}

void* calloc(std::size_t elements, std::size_t size)
{
    return mustFail() ? nullptr : __libc_calloc(elements, size);
}

void* realloc(void* block, std::size_t size)
{
    return mustFail() ? nullptr : __libc_realloc(block, size);
}

void* memalign(std::size_t alignment, std::size_t size)
{
    return mustFail() ? nullptr : __libc_memalign(alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size)
{
    return memalign(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size)
{
    *block = memalign(alignment, size);
    return *block != nullptr ? 0 : ENOMEM;
}
}
