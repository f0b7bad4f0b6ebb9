// SPDX-License-Identifier: MIT
// Constant once main() has set it, so threads may share it.

#include "host/base/FrontEnd.h"

namespace host {
namespace {

FrontEnd& current() noexcept
{
    static FrontEnd current = FrontEnd::kTerminal;
    return current;
}

} // namespace

void setFrontEnd(FrontEnd frontEnd) noexcept
{
    current() = frontEnd;
}

std::string advice(std::string_view inTerminal, std::string_view inWindow)
{
    return std::string{current() == FrontEnd::kTerminal ? inTerminal : inWindow};
}

} // namespace host
