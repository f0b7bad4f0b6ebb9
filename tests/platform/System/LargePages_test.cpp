// SPDX-License-Identifier: MIT
// A request for large pages never changes the memory, whatever its size and alignment.

#include <platform/System/LargePages.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace gps {
namespace {

TEST(LargePages, AnySizeAndAlignmentIsAcceptedAndKeepsTheContent)
{
    const std::string content(std::size_t{9} << 20, 'x');
    for (const std::size_t offset : {0U, 1U, 4095U, 4096U}) {
        for (const std::size_t size :
             {std::size_t{0}, std::size_t{4096}, (std::size_t{4} << 20) - 1, std::size_t{4} << 20,
              std::size_t{8} << 20}) {
            std::string bytes = content;
            useLargePages(bytes.data() + offset, size);
            EXPECT_TRUE(bytes == content) << offset << ", " << size;
        }
    }
}

} // namespace
} // namespace gps
