// SPDX-License-Identifier: MIT
// LargePages: memory for the text of a large file or for a million records. [any]

#pragma once

#include <cstddef>

namespace gps {

/// Asks for large pages for memory that is about to be filled, if it is large enough for that to
/// matter. They spare the kernel most of its work when the memory is first touched, which is a
/// tenth of the time of reading and writing a track. [any]
/// @param size  in bytes; may be 0
void useLargePages(void* memory, std::size_t size) noexcept;

} // namespace gps
