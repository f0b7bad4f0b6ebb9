// SPDX-License-Identifier: MIT
// Creating the thread is the only step that can fail.

#include "DetachedThread.h"

#include <cstdint>
#include <system_error>
#include <thread>
#include <utility>

namespace gps {

std::optional<Error> detachNewThread(std::function<void()> body)
try {
    std::thread{std::move(body)}.detach();
    return std::nullopt;
} catch (const std::system_error& failure) {
    return Error{"NSPOSIXErrorDomain",
                 static_cast<std::int32_t>(failure.code().value()),
                 {{kErrorDescriptionKey, "The system has no further thread to give."},
                  {kErrorReasonKey, std::generic_category().message(failure.code().value())}}};
}

} // namespace gps
