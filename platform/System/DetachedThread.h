// SPDX-License-Identifier: MIT
// Detached threads: they run on their own, and nobody joins them. [any]

#pragma once

#include <gps/Error.h>

#include <functional>
#include <optional>

namespace gps {

/// Runs `body` on a new thread, which owns it until it has returned. [any]
///
/// Precondition: the body throws no exception.
/// @return  domain "NSPOSIXErrorDomain" with the errno if the system cannot create a thread; the
///          body is not run then
[[nodiscard]] std::optional<Error> detachNewThread(std::function<void()> body);

} // namespace gps
