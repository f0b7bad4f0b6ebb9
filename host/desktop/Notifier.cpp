// SPDX-License-Identifier: MIT
// Source: Desktop Notifications Specification 1.2, "Notify". Its body text may have markup.

#include "host/desktop/Notifier.h"

#include "host/base/HostError.h"
#include "host/base/XmlText.h"
#include "host/desktop/Bus.h"

#include <fmt/format.h>

#include <cstdint>

namespace host {

Notifier::Notifier() = default;
Notifier::~Notifier() = default;

// A failure may be that the desktop has not started yet, so the next one connects again.
std::optional<gps::Error> Notifier::show(const std::string& title, const std::string& text)
{
    constexpr std::int32_t kUsualTime = -1;
    constexpr std::uint32_t kNothingReplaced = 0;
    constexpr int kNoActions = 0;
    constexpr int kNoHints = 0;
    if (bus_ == nullptr)
        bus_ = std::make_unique<Bus>(Bus::Kind::kSession);
    std::string body;
    appendXml(body, text);
    Bus::Reply reply;
    const auto failure =
        bus_->call({"org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                    "org.freedesktop.Notifications"},
                   "Notify", reply, "susssasa{sv}i", "magellangps", kNothingReplaced, "",
                   title.c_str(), body.c_str(), kNoActions, kNoHints, kUsualTime);
    if (!failure)
        return std::nullopt;
    bus_ = nullptr;
    return hostError(fmt::format("The desktop cannot be notified: {}", failure->message),
                     "Run the program inside a desktop session that shows notifications");
}

} // namespace host
