// SPDX-License-Identifier: MIT
// Detached threads: nobody joins them. [any]

#pragma once

#include <gps/Error.h>

#include <functional>
#include <optional>

namespace gps {

/// Runs `body` on a thread of its own, which keeps what the body holds until it has returned.
/// Precondition: the body lets no exception out.
/// @return  domain "NSPOSIXErrorDomain" with the errno, when the system gives no more threads; the
/// body is then not run
[[nodiscard]] std::optional<Error> detachNewThread(std::function<void()> body);

} // namespace gps
