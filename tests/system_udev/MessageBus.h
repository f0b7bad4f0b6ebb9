// SPDX-License-Identifier: MIT
// A message bus of a test's own, and mocked services on it.

#pragma once

#include <support/TemporaryFolder.h>

#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <system/Program.h>
#include <system/Running.h>

namespace support {

class MessageBus {
public:
    MessageBus()
        : bus_({"/usr/bin/dbus-daemon", "--nofork", "--print-address=1",
                "--config-file=" + folder_.put("bus.conf", configuration())}),
          address_(bus_.readUntil("\n"))
    {
        if (address_.empty())
            throw std::runtime_error{"no message bus"};
        address_.pop_back();
    }

    [[nodiscard]] const std::string& address() const { return address_; }

    /// For the environment of a program: this is both the system's bus and that of the session.
    [[nodiscard]] std::vector<std::string> environment() const
    {
        return {"DBUS_SYSTEM_BUS_ADDRESS=" + address_, "DBUS_SESSION_BUS_ADDRESS=" + address_};
    }

private:
    [[nodiscard]] std::string configuration() const
    {
        return "<busconfig><type>session</type><listen>unix:path=" + folder_.path("bus") +
               "</listen><auth>EXTERNAL</auth><policy context='default'>"
               "<allow send_destination='*' eavesdrop='true'/><allow eavesdrop='true'/>"
               "<allow own='*'/></policy></busconfig>";
    }

    TemporaryFolder folder_;
    Running bus_;
    std::string address_;
};

/// A service that dbusmock simulates. It prints each call.
class MockedService : public Running {
public:
    /// @param name        of the service on the bus
    /// @param service     the template: a name that dbusmock knows, or a file
    /// @param parameters  of the template, as JSON
    MockedService(const MessageBus& bus, const std::string& name, const std::string& service,
                  const std::string& parameters = "{}")
        : Running(words(bus, service, parameters))
    {
        for (int tries = 0; !isOwned(bus, name); ++tries) {
            if (tries == 300 || !runs())
                throw std::runtime_error{"no service " + name};
            std::this_thread::sleep_for(std::chrono::milliseconds{100});
        }
    }

private:
    static std::vector<std::string> words(const MessageBus& bus, const std::string& service,
                                          const std::string& parameters)
    {
        std::vector<std::string> all{"/usr/bin/env"};
        for (const auto& setting : bus.environment())
            all.push_back(setting);
        all.insert(all.end(), {"/usr/bin/python3", "-B", "-m", "dbusmock", "--session", "-t",
                               service, "-p", parameters});
        return all;
    }

    static bool isOwned(const MessageBus& bus, const std::string& name)
    {
        return run({"dbus-send", "--bus=" + bus.address(), "--print-reply=literal",
                    "--dest=org.freedesktop.DBus", "/", "org.freedesktop.DBus.NameHasOwner",
                    "string:" + name})
                   .out.find("true") != std::string::npos;
    }
};

} // namespace support
