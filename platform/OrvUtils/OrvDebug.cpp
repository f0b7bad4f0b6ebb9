// SPDX-License-Identifier: MIT
// Atomic, because workers ask while the host may set the level.

#include "OrvDebug.h"

#include <atomic>

namespace gps {
namespace {

std::atomic<std::int32_t> theLevel{0};

} // namespace

void OrvSetDebugLevel(std::int32_t level)
{
    theLevel = level;
}

bool OrvDebugLevelIs(std::int32_t level)
{
    const std::int32_t present = theLevel;
    return present != 0 && present >= level;
}

} // namespace gps
