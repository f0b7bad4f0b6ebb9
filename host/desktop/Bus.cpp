// SPDX-License-Identifier: MIT
// The library stays loaded: unloading it would gain nothing.

#include "host/desktop/Bus.h"

#include <cstdint>
#include <string_view>
#include <system_error>

#include <dlfcn.h>

namespace host {
namespace {

constexpr char kBusLibrary[] = "libsystemd.so.0";

template <typename Function> bool find(void* library, const char* name, Function& function)
{
    function = reinterpret_cast<Function>(::dlsym(library, name));
    return function != nullptr;
}

} // namespace

// Source: sd_bus_call_method(3) and D-Bus Specification, "Standard error names".
bool BusFailure::isUnavailable() const
{
    constexpr std::string_view kStandard = "org.freedesktop.DBus.Error.";
    if (name.empty())
        return true;
    const auto error = std::string_view{name};
    return error == "org.freedesktop.systemd1.NoSuchUnit" ||
           (error.substr(0, kStandard.size()) == kStandard &&
            (error.find(".ServiceUnknown") != std::string_view::npos ||
             error.find(".NameHasNoOwner") != std::string_view::npos ||
             error.find(".Spawn.") != std::string_view::npos));
}

const std::optional<Bus::Functions>& Bus::load()
{
    static const auto functions = []() -> std::optional<Functions> {
        void* const library = ::dlopen(kBusLibrary, RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
        Functions found{};
        if (library != nullptr && find(library, "sd_bus_open_system", found.openSystem) &&
            find(library, "sd_bus_open_user", found.openSession) &&
            find(library, "sd_bus_flush_close_unref", found.close) &&
            find(library, "sd_bus_set_method_call_timeout", found.setTimeout) &&
            find(library, "sd_bus_call_method", found.callMethod) &&
            find(library, "sd_bus_message_read", found.read) &&
            find(library, "sd_bus_message_unref", found.unrefMessage) &&
            find(library, "sd_bus_error_free", found.freeError))
            return found;
        return std::nullopt;
    }();
    return functions;
}

Bus::Bus(Kind kind)
{
    constexpr std::uint64_t kPatience = 120'000'000; // microseconds
    if (!load()) {
        failure_ = BusFailure{{}, std::string{"the library "} + kBusLibrary + " is missing"};
        return;
    }
    sd_bus* bus = nullptr;
    const int result =
        kind == Kind::kSystem ? functions().openSystem(&bus) : functions().openSession(&bus);
    if (result < 0) {
        failure_ = BusFailure{{}, "no message bus: " + std::generic_category().message(-result)};
        return;
    }
    bus_.reset(bus);
    functions().setTimeout(bus, kPatience);
}

BusFailure Bus::failureOf(sd_bus_error& error, int result)
{
    BusFailure failure{error.name != nullptr ? error.name : "",
                       error.message != nullptr ? error.message
                                                : std::generic_category().message(-result)};
    functions().freeError(&error);
    return failure;
}

void Bus::Close::operator()(sd_bus* bus) const
{
    functions().close(bus);
}

void Bus::Reply::Release::operator()(sd_bus_message* message) const
{
    functions().unrefMessage(message);
}

} // namespace host
