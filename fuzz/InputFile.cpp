// SPDX-License-Identifier: MIT
// Inputs are written to an anonymous memory file: thousands of inputs a second then leave nothing
// behind in any folder.

#include "InputFile.h"

#include "FuzzTarget.h"

#include <sys/mman.h>
#include <unistd.h>

namespace fuzz {

std::string asFile(std::string_view text)
{
    static const int file = memfd_create("input", MFD_CLOEXEC);
    require(file >= 0 && ftruncate(file, 0) == 0, "a memory file can be created");
    require(pwrite(file, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()),
            "the file holds the whole text");
    return "/proc/self/fd/" + std::to_string(file);
}

} // namespace fuzz
