// SPDX-License-Identifier: MIT
// Only a request: a kernel without large pages ignores it.

#include "LargePages.h"

#include <cstdint>

#include <sys/mman.h>

namespace gps {

void useLargePages(void* memory, std::size_t size) noexcept
{
    constexpr std::size_t kPage = 4096;
    constexpr std::size_t kWorthIt = std::size_t{4} << 20;
    if (size < kWorthIt)
        return;
    const auto beforePage = kPage - reinterpret_cast<std::uintptr_t>(memory) % kPage;
    (void)::madvise(static_cast<char*>(memory) + beforePage, size - beforePage, MADV_HUGEPAGE);
}

} // namespace gps
